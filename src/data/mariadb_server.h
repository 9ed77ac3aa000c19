// Where a MariaDB server is, how a connection to it is guarded, and what a session on it has to be told first.
#pragma once

#include "data/connection_string.h"
#include "data/server_source.h"

class QSqlDatabase;

namespace tradewick
{

// mariadb://[user[:password]@]host[:port][/database][?socket=PATH&tls=verify|encrypt|off&ca=FILE]
struct MariaDbSource : Guard {
    QString host, user, password, database, socket;
    int port = 3306;
};

// Reads the data source of a connection string; user, password and catalog of the string win over what stands in the
// data source. A socket is on this machine, whatever the host. Throws DataError for a source that cannot be read.
MariaDbSource mariaDbSource(const ConnectionParts &parts);

// Opens the database, which is of the driver QMYSQL, and readies its session: character set, comparison, strictness,
// isolation. Throws DataError, also for a connection that is less guarded than the source asks for; the caller then
// closes the database.
void openMariaDb(QSqlDatabase &database, const MariaDbSource &source);

} // namespace tradewick
