#include "common/numbering.h"

#include "common/number_text.h"
#include "data/connection.h"

namespace tradewick
{

QString gNumYY, gNumMM, gNumDD, gNumSeq, gNumRaw;

namespace
{

constexpr int documentDigits = 5;
constexpr int codeDigits = 4;

QString twoDigits(int number)
{
    return QString::number(number % 100).rightJustified(2, u'0');
}

// key: of the last row; no value for a table without rows.
void setSequence(const NumberRule &rule, const std::optional<QVariant> &key)
{
    const QString sequence =
        key ? nextSequence(*key, rule.tail, rule.digits) : QStringLiteral("1").rightJustified(rule.digits, u'0');
    if (rule.keepsTooLong || sequence.size() <= rule.digits)
        gNumSeq = sequence;
}

std::optional<QVariant> highestKey(const NumberRule &rule, Connection &connection, const QDate &today)
{
    std::optional<QVariant> last;
    const Values values = rule.monthly ? Values{{"year", today.year()}, {"month", today.month()}} : Values();
    connection.read(
        QString::fromUtf8(rule.lookup), values, [](const QStringList &) {},
        [&](const QVariantList &row) {
            last = row.first();
            return true;
        });
    return last;
}

} // namespace

NumberRule monthly(const QString &prefix, const char *lookup)
{
    return {prefix, lookup, documentDigits, documentDigits, true};
}

NumberRule running(const QString &prefix, int tail, const char *lookup, TooLong tooLong)
{
    return {prefix, lookup, tail, codeDigits, false, tooLong == TooLong::Stands};
}

QString nextSequence(const QVariant &lastKey, int tail, int digits)
{
    if (!lastKey.isValid())
        throw DataError(DataError::invalidUseOfNull, QStringLiteral("无效使用 Null"));
    gNumRaw = numberText(numberFromText(lastKey.toString().right(tail)) + 1);
    return gNumRaw.rightJustified(digits, u'0');
}

QString proposeNumber(const NumberRule &rule, Connection &connection, const std::optional<QVariant> &lastKey,
                      const QDate &today, const QStringList &waiting)
{
    if (rule.prefix.isEmpty())
        return {};
    QString start = rule.prefix;
    if (rule.monthly) {
        gNumYY = twoDigits(today.year());
        gNumMM = twoDigits(today.month());
        gNumDD = twoDigits(today.day());
        start += gNumYY + gNumMM;
        try {
            setSequence(rule, highestKey(rule, connection, today));
        } catch (const DataError &error) {
            if (error.number() == DataError::connectionLost)
                throw;
            // The clerk types the number when the one of the last document does not do.
        }
    } else {
        setSequence(rule, rule.lookup ? highestKey(rule, connection, today) : lastKey);
    }
    for (qsizetype tries = 0; tries < waiting.size() && waiting.contains(start + gNumSeq, Qt::CaseInsensitive); ++tries)
        setSequence(rule, start + gNumSeq);
    return start + gNumSeq;
}

} // namespace tradewick
