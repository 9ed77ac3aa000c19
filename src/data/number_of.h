// The one reader of numbers that clerks type.
#pragma once

#include <QString>

#include <optional>

namespace tradewick
{

// Reads a number as people write it: 1,234.50, 12, .5, -3, 1.5e3, with full-width digits, signs, points and commas too,
// and with blanks around it. Commas part groups of three digits before the point. Nothing for the empty text, for any
// other text ("abc", "12abc", "1,2"), and for a number too large to be stored.
std::optional<double> numberOf(const QString &text);

} // namespace tradewick
