// Where a MariaDB server is, how a connection to it is guarded, and what a session on it has to be told first.
#pragma once

#include "data/connection.h"

namespace tradewick
{

// mariadb://[user[:password]@]host[:port][/database][?socket=PATH&tls=verify|encrypt|off&ca=FILE]
struct MariaDbSource {
    enum class Tls {
        Verify,  // encrypted, and the server's certificate is valid for the name it was called by
        Encrypt, // encrypted, whoever answers
        Off,     // as the server likes
    };
    QString host, user, password, database, socket;
    int port = 3306;
    Tls tls = Tls::Verify;
    QString ca; // file of the certificates that are trusted
};

// Reads the data source of a connection string; user, password and catalog of the string win over what stands in the
// data source. A server on this machine (a socket, localhost, 127.x, ::1) needs no TLS unless the source asks for it,
// any other is verified unless the source says otherwise. Throws DataError for a source that cannot be read.
MariaDbSource mariaDbSource(const ConnectionParts &parts);

// Opens the database, which is of the driver QMYSQL, and readies its session: character set, comparison, strictness,
// isolation. Throws DataError, also for a connection that is less guarded than the source asks for; the caller then
// closes the database.
void openMariaDb(QSqlDatabase &database, const MariaDbSource &source);

} // namespace tradewick
