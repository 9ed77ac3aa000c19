// Where a report's rows come from: read forwards once.
#pragma once

#include <QStringList>
#include <QVariantList>

#include <memory>

namespace tradewick
{

class RowSource
{
public:
    virtual ~RowSource() = default;
    // The columns' names, known before the first row.
    virtual QStringList columns() const = 0;
    // Steps onto the next row; false behind the last. Throws DataError when the rows break off.
    virtual bool next() = 0;
    // Value of the current row by index of columns(); Null is an invalid QVariant.
    virtual QVariant value(int column) const = 0;
};

} // namespace tradewick
