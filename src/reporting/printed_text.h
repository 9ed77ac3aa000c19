// Values as the texts that stand on paper.
#pragma once

#include <QString>
#include <QVariant>

namespace tradewick
{

// Whether a value is a number, and not a text that looks like one.
bool isNumberValue(const QVariant &value);

// A value as a field prints it: by its format, without one numbers in their shortest decimal form and dates as ISO. Two
// places are rounded as the words of an amount are, an exact half to the even neighbour.
QString printedText(const QVariant &value, const QString &format);
QString printedNumber(double number, const QString &format);

} // namespace tradewick
