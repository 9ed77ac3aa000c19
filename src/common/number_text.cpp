#include "common/number_text.h"

#include "data/data_error.h"

#include <QLocale>

#include <cmath>

namespace tradewick
{

namespace
{

constexpr int significantDigits = 15;
constexpr int smallestExponent = -15;
constexpr int largestExponent = 20;
constexpr int overflow = 6;

// 0.digits times ten to the power of point; digits have no zeros at either end.
struct Decimal {
    bool negative = false;
    QString digits;
    int point = 0;
};

Decimal decimalOf(double number, int precision)
{
    const QString text = QString::number(std::abs(number), 'e', precision);
    const qsizetype e = text.indexOf(u'e');
    Decimal decimal{number < 0, text.left(e).remove(u'.'), text.mid(e + 1).toInt() + 1};
    while (decimal.digits.endsWith(u'0'))
        decimal.digits.chop(1);
    return decimal;
}

} // namespace

QString numberText(double number)
{
    if (number == 0)
        return QStringLiteral("0");
    if (!std::isfinite(number))
        return QString::number(number);
    const auto [negative, digits, point] = decimalOf(number, significantDigits - 1);
    const QString sign = negative ? QStringLiteral("-") : QString();
    const int exponent = point - 1;
    if (exponent < smallestExponent || exponent > largestExponent) {
        const QString fraction = digits.size() > 1 ? u'.' + digits.mid(1) : QString();
        return sign + digits.left(1) + fraction + (exponent < 0 ? QStringLiteral("E-") : QStringLiteral("E+")) +
               QString::number(std::abs(exponent)).rightJustified(2, u'0');
    }
    if (point <= 0)
        return sign + u'.' + QString(-point, u'0') + digits;
    if (digits.size() <= point)
        return sign + digits.leftJustified(point, u'0');
    return sign + digits.left(point) + u'.' + digits.mid(point);
}

double numberFromText(const QString &text)
{
    QString number;
    bool point = false;
    bool exponent = false;
    bool digit = false; // the mantissa, then the exponent, has one
    qsizetype complete = 0;
    for (const QChar c : text) {
        if (c.isSpace())
            continue;
        const QChar last = number.isEmpty() ? QChar() : number.back();
        if (c >= u'0' && c <= u'9')
            digit = true;
        else if (c == u'.' && !point && !exponent)
            point = true;
        else if ((c == u'+' || c == u'-') && (last.isNull() || last == u'e'))
            ;
        else if (QStringView(u"eEdD").contains(c) && digit && !exponent) {
            exponent = true;
            digit = false;
            number += u'e';
            continue;
        } else
            break;
        number += c;
        if (digit)
            complete = number.size();
    }
    if (complete == 0)
        return 0;
    bool fits = false;
    const double value = QLocale::c().toDouble(number.left(complete), &fits);
    if (!fits && std::isinf(value))
        throw DataError(overflow, QStringLiteral("溢出"));
    return value;
}

double roundHalfEven(double number, int places)
{
    if (number == 0 || !std::isfinite(number))
        return number;
    auto [negative, digits, point] = decimalOf(number, significantDigits - 1);
    const qsizetype kept = point + places;
    if (kept >= digits.size())
        return number;
    if (kept < 0)
        return 0;
    // Without zeros at its end, what is cut off is a half only when it is the digit 5 alone.
    const QStringView cut = QStringView(digits).mid(kept);
    const bool lastIsOdd = kept > 0 && digits[kept - 1].digitValue() % 2 == 1;
    const bool up = cut[0] > u'5' || (cut[0] == u'5' && (cut.size() > 1 || lastIsOdd));
    digits.truncate(kept);
    if (up) {
        qsizetype at = kept - 1;
        for (; at >= 0 && digits[at] == u'9'; --at)
            digits[at] = u'0';
        if (at >= 0)
            digits[at] = QChar(digits[at].unicode() + 1);
        else {
            digits.prepend(u'1');
            ++point;
        }
    }
    if (digits.isEmpty())
        return 0;
    return QLocale::c().toDouble(QString(negative ? "-0." : "0.") + digits + u'e' + QString::number(point));
}

} // namespace tradewick
