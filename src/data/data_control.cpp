#include "data/data_control.h"

namespace tradewick
{

void DataControl::setRecordSource(const QString &statement, const Values &values)
{
    m_statement = statement;
    m_values = values;
}

void DataControl::Refresh()
{
    m_recordset.Open(m_statement, m_values, Connection::shared(ConnectionString));
}

} // namespace tradewick
