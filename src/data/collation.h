// The order of texts, one for every engine: regardless of case and trailing blanks, signs before digits before letters,
// Chinese by pinyin behind them.
#pragma once

#include <QString>

namespace tradewick
{

// Compares two UTF-8 texts of the given numbers of bytes; below, above or at zero.
int compareText(const char *a, int lengthA, const char *b, int lengthB);

// The same for texts that are compared many times: made ready once, then compared.
QString foldedForOrder(const QString &text);
int compareFolded(QStringView a, QStringView b);

} // namespace tradewick
