// The order of a column's values, as the database would give it.
#pragma once

#include "data/statement.h"

namespace tradewick
{

// What a value is ordered by, made ready once for many comparisons. kind: of its column; Number and Date take texts for
// what they say: "9" before "10", 2026-3-5 before 2026-11-24.
class OrderKey
{
public:
    OrderKey(const QVariant &value, ColumnKind kind);
    // Below, at or above zero: Null comes first, then empty texts, numbers by value, texts regardless of case and
    // trailing blanks, Chinese by pinyin.
    int compare(const OrderKey &other) const;

private:
    enum Class { Null, EmptyText, Number, Text } m_class = Null;
    double m_number = 0;
    QString m_text; // folded
};

// Positions of the values, sorted; equal values keep the order they stand in, upwards and downwards.
//   values: of one column, stored or typed.
QVector<int> sortedPositions(const QVariantList &values, ColumnKind kind, Qt::SortOrder order);

} // namespace tradewick
