#include "common/amount_words.h"

#include "common/number_text.h"
#include "data/data_error.h"

#include <QStringList>

#include <algorithm>
#include <array>

using namespace tradewick;

namespace
{

constexpr int typeMismatch = 13;
constexpr qsizetype longestAmount = 15;

int digitAt(const QString &text, qsizetype at)
{
    const QChar c = at < text.size() ? text[at] : QChar();
    if (c < u'0' || c > u'9')
        throw DataError(typeMismatch, QStringLiteral("类型不匹配"));
    return c.digitValue();
}

QString digitWord(int digit)
{
    static const QStringList words{"", "ONE", "TWO", "THREE", "FOUR", "FIVE", "SIX", "SEVEN", "EIGHT", "NINE"};
    return words[digit];
}

QString reversed(QString text)
{
    std::reverse(text.begin(), text.end());
    return text;
}

} // namespace

QString DigitWord1(const QString &group)
{
    return digitWord(digitAt(group, 0));
}

QString DigitWord3(const QString &group)
{
    return digitWord(digitAt(group, 2));
}

QString TeenWord(const QString &group)
{
    static const QStringList words{"TEN",     "ELEVEN",  "TWELVE",    "THIRTEEN", "FOURTEEN",
                                   "FIFTEEN", "SIXTEEN", "SEVENTEEN", "EIGHTEEN", "NINETEEN"};
    return words[digitAt(group, 2)];
}

QString TensWord(const QString &group)
{
    static const QStringList words{"",      "TEN",   "TWENTY",  "THIRTY", "FORTY",
                                   "FIFTY", "SIXTY", "SEVENTY", "EIGHTY", "NINETY"};
    return words[digitAt(group, 1)];
}

QString ScaleWord(int index)
{
    static const QStringList words{"", "THOUSAND", "MILLION", "BILLION"};
    return words.value(index);
}

QString TwoDigitWords(const QString &group)
{
    switch (digitAt(group, 1)) {
    case 0:
        return DigitWord3(group);
    case 1:
        return TeenWord(group);
    default:
        return digitAt(group, 2) == 0 ? TensWord(group) : TensWord(group) + u' ' + DigitWord3(group);
    }
}

QString GroupWords(const QString &group)
{
    if (digitAt(group, 0) == 0)
        return TwoDigitWords(group);
    const QString hundreds = DigitWord1(group) + QStringLiteral(" HUNDRED");
    return group.endsWith(QStringLiteral("00")) ? hundreds : hundreds + QStringLiteral(" AND ") + TwoDigitWords(group);
}

QString amountTooLong()
{
    return QStringLiteral("位数超过16位，计算溢出！");
}

QString AmountInEnglish(QString &amount, bool *tooLong)
{
    amount = numberText(roundHalfEven(numberFromText(amount), 2));
    if (tooLong && amount.size() > longestAmount)
        *tooLong = true;

    const QString whole = amount.section(u'.', 0, 0);
    const QString fraction = amount.section(u'.', 1, 1).left(2);
    const QString places = reversed(whole) + QString((3 - whole.size() % 3) % 3, u'0');
    QString words;
    for (int i = 0; i < places.size() / 3; ++i) {
        const QString group = reversed(places.mid(i * 3, 3));
        if (i == 0 || group == u"000")
            words = GroupWords(group) + words;
        else
            words = GroupWords(group) + u' ' + ScaleWord(i) + u' ' + words;
    }
    QString cents;
    if (amount.contains(u'.'))
        cents = (words.trimmed().isEmpty() ? QStringLiteral("CENTS ") : QStringLiteral("AND CENTS ")) +
                TwoDigitWords(u'$' + fraction + u'0') + u' ';
    return words + u' ' + cents + QStringLiteral("ONLY");
}

QString AmountInChinese(double &amount)
{
    static const QString capitals = QStringLiteral("零壹贰叁肆伍陆柒捌玖");
    static const QString positions = QStringLiteral("分角圆拾佰仟万拾佰仟亿拾佰仟");
    constexpr QChar zero = u'零';

    amount = roundHalfEven(amount, 2);
    const QString fen = numberText(amount * 100);
    QString row; // row[k] is the capital at position k, the fen at 0
    for (qsizetype i = fen.size() - 1; i >= 0; --i) {
        const int digit = fen[i].digitValue();
        if (digit >= 0)
            row += capitals[digit];
        else if (!row.isEmpty())
            row += row.back();
    }

    QString words;
    for (qsizetype k = 0; k < std::min(row.size(), positions.size()); ++k) {
        const bool after = k > 0 && row[k - 1] != zero; // a zero is read aloud before a digit only
        QString piece;
        if (row[k] != zero)
            piece = QString(row[k]) + positions[k];
        else if (k == 1)
            piece = after ? zero : u'整';
        else if (k == 2 || k == 6 || k == 10)
            piece = positions[k];
        else if (after)
            piece = zero;
        // Four zeros before the yuan's thousands: no ten-thousands to name, only the gap.
        if (k == 6 && row.size() >= 10 && row.mid(6, 4) == QString(4, zero))
            piece = after ? QString(zero) : QString();
        words.prepend(piece);
    }
    return words;
}
