// One row that a lookup read: values by the names of their columns, and by no other name.
#pragma once

#include "data/statement.h"

#include <QStringList>

namespace tradewick
{

class Row
{
public:
    Row() = default; // without a column
    // columns: lower case, one for each value.
    Row(QStringList columns, QVariantList values) : m_columns(std::move(columns)), m_values(std::move(values)) {}

    // The value of a column, its name in any case; Null is an invalid QVariant. Throws DataError 3265, which names the
    // column, where the row has none of that name.
    QVariant value(const QString &column) const;
    QVariant operator[](const QString &column) const { return value(column); }
    bool contains(const QString &column) const { return m_columns.contains(column, Qt::CaseInsensitive); }
    const QStringList &columns() const { return m_columns; }
    const QVariantList &values() const { return m_values; }
    Values named() const; // for the placeholders of another statement

private:
    QStringList m_columns;
    QVariantList m_values;
};

} // namespace tradewick
