#include "data/row.h"

#include "data/data_error.h"

namespace tradewick
{

QVariant Row::value(const QString &column) const
{
    const qsizetype at = m_columns.indexOf(column.toLower());
    if (at < 0)
        throw DataError(DataError::noSuchColumn, QStringLiteral("记录中没有“%1”列").arg(column));
    return m_values[at];
}

Values Row::named() const
{
    Values values;
    for (qsizetype i = 0; i < m_columns.size(); ++i)
        values.insert(m_columns[i], m_values[i]);
    return values;
}

} // namespace tradewick
