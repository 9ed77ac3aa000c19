// Numbers as the text that stands in keys, words and labels, and back.
#pragma once

#include <QString>

namespace tradewick
{

// The number in decimal form with at most 15 significant digits, no trailing zeros, no zero before the point below 1
// (".5", "-.5") and no blank in front. Below 1E-15 and from 1E+21 on it has an exponent.
QString numberText(double number);

// The number that a text begins with: blanks count for nothing, sign, digits, point, and an exponent after e or d.
// What follows is ignored, a text that begins with no number gives 0. Throws DataError 6 for a number too large.
double numberFromText(const QString &text);

// Rounds to decimal places; an exact half of the number's decimal form goes to the even neighbour. That form has at
// most 15 significant digits, so that a sum of 3.1349999999999998 is the 3.135 that its figures make.
double roundHalfEven(double number, int places);

} // namespace tradewick
