// A data control: a connection string, a statement, and the record set that both give.
#pragma once

#include "data/recordset.h"

namespace tradewick
{

class DataControl : public QObject
{
    Q_OBJECT

public:
    explicit DataControl(QObject *parent = nullptr) : QObject(parent) {}

    QString ConnectionString;

    // Sets the statement that the next Refresh runs; values fill its placeholders.
    void setRecordSource(const QString &statement, const Values &values = {});
    const QString &RecordSource() const { return m_statement; }
    const Values &values() const { return m_values; }

    // Runs the statement anew over the shared connection of ConnectionString. Throws DataError.
    void Refresh();

    // One object as long as the control lives; Refresh fills it anew.
    class Recordset &Recordset() { return m_recordset; }

private:
    QString m_statement;
    Values m_values;
    class Recordset m_recordset;
};

} // namespace tradewick
