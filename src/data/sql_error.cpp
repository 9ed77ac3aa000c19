#include "data/sql_error.h"

#include "data/watch.h"

#include <QList>
#include <QRegularExpression>
#include <QSqlError>

#include <algorithm>

namespace tradewick
{

namespace
{

// What an error means to a clerk, by the engines' own numbers (MariaDB, SQL Server), beginnings of SQLSTATEs (ODBC) or
// words (SQLite, drivers).
struct Meaning {
    const char *sentence; // the first one that fits; without its full stop
    Refusal refusal;
    QList<int> numbers;
    QList<const char *> states, words;
    int number; // of the DataError; 0: the engine's own
};

const QList<Meaning> &meanings()
{
    static const QList<Meaning> all{
        {"编号重复，数据库中已有相同的记录",
         Refusal::Duplicate,
         {1062, 2601, 2627},
         {},
         {"UNIQUE constraint failed"},
         0},
        {"录入的内容不是该栏所要求的数字或日期",
         Refusal::NotANumber,
         {1264, 1265, 1292, 1366, 8114, 8115, 241, 242, 245},
         {"22003", "22007", "22008", "22018"},
         {"CHECK constraint failed"},
         0},
        {"录入的内容太长", Refusal::TooLong, {1406, 8152, 2628}, {"22001"}, {"string or blob too big"}, 0},
        {"该栏不能为空", Refusal::Missing, {1048, 1364, 515}, {}, {"NOT NULL constraint failed"}, 0},
        {"其他用户正在保存，请稍后再试", Refusal::None, {1205, 1213, 1222}, {"40001"}, {"database is locked"}, 0},
        {"文件不是数据库，或已损坏", Refusal::None, {}, {}, {"file is not a database"}, 0},
        {"数据库服务器不接受这个用户名、口令或数据库名",
         Refusal::None,
         {1044, 1045, 1049, 4060, 18452, 18456},
         {"28000"},
         {},
         0},
        {"与数据库服务器的连接已中断，请稍后再试；已录入的内容仍然保留",
         Refusal::None,
         {2002, 2003, 2005, 2006, 2013, 2055, 1053, 1077, 1079, 1927, 4031, 10054, 10060, 20003, 20004, 20006, 20009,
          20017, 20047},
         {"08", "HYT", "S1T"},
         {"Communication link failure", "Login timeout expired", "TCP Provider: Error code",
          "Unable to connect to data source"},
         DataError::connectionLost},
        {"已停止", Refusal::None, {1317}, {"HY008"}, {"interrupted"}, Watch::stopped},
        // A rule or a trigger of the database's own, whose words are for the clerk.
        {"", Refusal::Other, {19, 1811, 547, 1644, 4025, 50000}, {"45000"}, {}, 0},
    };
    return all;
}

// The column in an engine's words; values may stand in them too, so that the last place counts. Indexes are named
// ix_TABLE_COLUMN, and no key column has that sign in its own name.
QString columnIn(const QString &text)
{
    static const QRegularExpression places[] = {
        QRegularExpression(QStringLiteral(R"(.*\bix_\w+_([^\W_]+))"), QRegularExpression::DotMatchesEverythingOption),
        QRegularExpression(QStringLiteral(R"(CHECK constraint failed: (?:\w+\()?(\w+))")),
        QRegularExpression(QStringLiteral(R"((?:UNIQUE|NOT NULL) constraint failed: \w+\.(\w+))")),
        QRegularExpression(QStringLiteral(R"(.*\b(?:[Cc]olumn|Field) (?:`\w+`\.)*['`"](\w+)['`"])"),
                           QRegularExpression::DotMatchesEverythingOption),
        QRegularExpression(QStringLiteral(R"(CONSTRAINT `(?:\w+\.)?(\w+)` failed)")),
    };
    for (const QRegularExpression &place : places)
        if (const QRegularExpressionMatch match = place.match(text); match.hasMatch())
            return match.captured(1).toLower();
    return {};
}

// What the engine says itself is for the clerk where the program has no words for it.
QString worded(const QString &sentence, const QString &column, const QString &text)
{
    if (sentence.isEmpty())
        return text;
    return sentence + (column.isEmpty() ? QStringLiteral("。\n") + text : QStringLiteral("（%1）。").arg(column));
}

template <typename List, typename Predicate> bool anyOf(const List &list, Predicate predicate)
{
    return std::any_of(list.begin(), list.end(), predicate);
}

} // namespace

DataError errorOf(const DriverError &error)
{
    const QString text = error.texts.join(u' ');
    const int number = error.numbers.isEmpty() ? 0 : error.numbers.first();
    for (const Meaning &meaning : meanings())
        if (anyOf(error.numbers, [&](int each) { return meaning.numbers.contains(each); }) ||
            anyOf(meaning.states,
                  [&](const char *state) {
                      return anyOf(error.states,
                                   [&](const QString &each) { return each.startsWith(QLatin1String(state)); });
                  }) ||
            anyOf(meaning.words, [&](const char *words) { return text.contains(QLatin1String(words)); })) {
            const QString column = meaning.refusal == Refusal::None ? QString() : columnIn(text);
            return {meaning.number ? meaning.number : number, worded(QString::fromUtf8(meaning.sentence), column, text),
                    meaning.refusal, column};
        }
    return {number, text};
}

DataError errorOf(const QSqlError &error)
{
    QList<int> numbers;
    for (const QString &code : error.nativeErrorCode().split(u';'))
        numbers.append(code.toInt());
    return errorOf({{}, numbers, {error.databaseText().isEmpty() ? error.driverText() : error.databaseText()}});
}

DataError refused(Refusal refusal, const QString &column)
{
    for (const Meaning &meaning : meanings())
        if (meaning.refusal == refusal)
            return {0, worded(QString::fromUtf8(meaning.sentence), column, {}), refusal, column};
    return {0, {}, refusal, column};
}

} // namespace tradewick
