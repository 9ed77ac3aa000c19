// Which columns are copied from where, as a table of pairs.
#pragma once

#include <QString>
#include <QVector>

namespace tradewick
{

struct ColumnPair {
    QString to, from;
};
using Copies = QVector<ColumnPair>;

} // namespace tradewick
