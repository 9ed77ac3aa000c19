#pragma once
#include "data/recordset.h"
namespace tradewick {
struct ColumnPair { QString to, from; };
using Copies = QVector<ColumnPair>;
using Row = Values;
inline Values toValues(const Row &row) { return row; }
inline void copyColumns(const Row &from, Recordset &to, const Copies &pairs, bool trimmed)
{
    for (const auto &p : pairs) to.Fields(p.to).setValue(trimmed ? QVariant(from[p.from].toString().trimmed()) : from[p.from]);
}
}
