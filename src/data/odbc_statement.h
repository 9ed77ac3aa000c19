// Statements through ODBC. The toolkit's own way puts a NUL behind every text that it sends, and keeps no SQLSTATE.
#pragma once

#include "data/statement.h"

#include <vector>

class QSqlDatabase;

namespace tradewick
{

// What a statement gave, whole: SQL Server answers nothing else over a connection while rows wait to be fetched, and
// locks what they come from.
struct OdbcResult {
    QStringList columns;
    std::vector<QVariantList> rows; // texts, numbers, dates as ISO text, flags as 0 or 1; Null is an invalid QVariant
    qint64 changed = 0;             // rows, of a statement without a result
};

// Runs a statement over an open database of the driver QODBC, inside its transaction if there is one. Throws DataError.
OdbcResult runOdbc(const QSqlDatabase &database, const BoundStatement &statement);

} // namespace tradewick
