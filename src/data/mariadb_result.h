// What Qt's driver does not tell of a prepared statement on MariaDB: the driver makes room for the values of a result
// when the statement is prepared, and the tables may be altered before it is run again.
#pragma once

#include <QByteArray>
#include <QSqlError>
#include <QSqlQuery>

namespace tradewick
{

// Types and lengths of the result's columns as the server described them when the query, which is prepared, was run
// last. Empty for a statement without a result, and with any other driver.
QByteArray shapeOfResult(const QSqlQuery &query);

// Whether a prepared statement failed because its result has another number of columns than when it was prepared.
bool isOtherShape(const QSqlError &error);

} // namespace tradewick
