// Where an SQL Server is, what its ODBC driver has to be told to reach it, and what a session on it is told first.
#pragma once

#include "data/connection_string.h"
#include "data/server_source.h"

#include <QStringList>

class QSqlDatabase;

namespace tradewick
{

// HOST, HOST\INSTANCE or HOST,PORT, with or without tcp: before it and ?tls=verify|encrypt|off&ca=FILE behind it; or
// odbc:TEXT, whose text goes to the driver manager as it stands.
struct SqlServerSource : Guard {
    QString host, instance, user, password, database;
    int port = 0; // 0: the server's usual one, or the one that its instance has
    QString odbc; // of odbc:TEXT
};

// What the driver is given: a text of keywords without the user and the password, and for FreeTDS the file of settings
// that such a text has no words for.
struct OdbcText {
    QString keywords;
    QString configuration; // of the server [tradewick] in freetds.conf; empty where the driver needs none
};

// Reads the data source of a connection string. A dot or (local) is this machine. Throws DataError for a source that
// cannot be read, names and files of settings must not break out of.
SqlServerSource sqlServerSource(const ConnectionParts &parts);

// The best of the installed drivers: the vendor's newest, else FreeTDS. Throws DataError, which names the packages,
// when there is none.
QString sqlServerDriver(const QStringList &installed);

// The drivers that the driver manager's odbcinst.ini files name.
QStringList installedOdbcDrivers();

// Throws DataError for what the driver has no way to do.
OdbcText odbcText(const SqlServerSource &source, const QString &driver);

// A value in braces, in which no character ends it. Throws DataError where the driver has no way to say that.
QString odbcValue(const QString &value, const QString &driver);

// Opens the database, which is of the driver QODBC, and readies its session: quoting, form of dates, waiting for locks.
// Throws DataError; the caller then closes the database.
void openSqlServer(QSqlDatabase &database, const SqlServerSource &source);

} // namespace tradewick
