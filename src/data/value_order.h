// The order of a column's values, as the database would give it.
#pragma once

#include "data/statement.h"

namespace tradewick
{

// Positions of the values, sorted; equal values keep the order they stand in, upwards and downwards.
//   values: of one column, stored or typed; Null comes first, then empty texts, numbers by value, texts.
//   kind: Number and Date take texts for what they say: "9" before "10", 2026-3-5 before 2026-11-24.
// Texts are compared regardless of case and trailing blanks, Chinese by pinyin.
QVector<int> sortedPositions(const QVariantList &values, ColumnKind kind, Qt::SortOrder order);

} // namespace tradewick
