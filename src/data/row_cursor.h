// The rows of a select as they are pulled from the database.
#pragma once

#include "data/prepared_statements.h"

#include <functional>
#include <vector>

namespace tradewick
{

// The rows of a select, read forwards once as they are asked for. Lives no longer than its connection is open.
// Whatever the engine, a date is ISO text, a flag a whole number, and texts that the statement orders by are ordered.
class RowCursor
{
public:
    // Throws DataError.
    RowCursor(const QSqlDatabase &database, const BoundStatement &statement, PreparedStatements &statements);
    const QStringList &columns(); // asked for only where they are wanted: the driver describes each at length
    // Steps onto the next row; false behind the last. Throws DataError when the rows break off or are stopped (Watch).
    bool next();
    QVariant value(int column) const; // Null is an invalid QVariant
    // Hands the first `columns` values of each row that is left to `row` until it gives false.
    void readAll(qsizetype columns, const std::function<bool(const QVariantList &values)> &row);

private:
    QVariant read(int column) const;
    void sort(const BoundStatement &statement);

    PreparedStatements::Query m_query; // none over ODBC
    QStringList m_columns;
    int m_hiddenColumns;
    std::vector<QVariantList> m_fetched; // all rows, where they are not read as they are asked for
    qsizetype m_at = -1;                 // in m_fetched
    bool m_isFetched = false;
};

} // namespace tradewick
