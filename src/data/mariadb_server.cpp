#include "data/mariadb_server.h"

#include "data/mariadb_wait.h"
#include "data/sql_error.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUrlQuery>

namespace tradewick
{

namespace
{

// A server that does not answer must not stop a clerk's screen for good.
const QLatin1String driverOptions("CLIENT_FOUND_ROWS=1;MYSQL_OPT_CONNECT_TIMEOUT=10;MYSQL_OPT_READ_TIMEOUT=120;"
                                  "MYSQL_OPT_WRITE_TIMEOUT=120");

// What the texts of the program mean, whatever the server is set to. A date or number that is none is refused, a
// backslash is a character, "x" is a name; each statement sees what is stored at its moment; a row that another
// desktop is just writing is waited for as long as an SQLite file is.
const char *const sessionSettings[] = {
    "set names utf8mb4 collate utf8mb4_uca1400_as_ci",
    "set session sql_mode = 'ANSI_QUOTES,NO_BACKSLASH_ESCAPES,STRICT_ALL_TABLES,NO_ZERO_DATE,NO_ZERO_IN_DATE,"
    "NO_ENGINE_SUBSTITUTION', innodb_lock_wait_timeout = 10",
    "set session transaction isolation level read committed",
};

// The driver cannot ask for the check of a certificate, its library can: by a connection string in place of the host.
QString hostOf(const MariaDbSource &source)
{
    if (source.tls == MariaDbSource::Tls::Off || !source.socket.isEmpty())
        return source.host;
    const QString enforced = QStringLiteral("host=%1;ssl-enforce=1").arg(source.host);
    return source.tls == MariaDbSource::Tls::Encrypt
               ? enforced
               : QStringLiteral("%1;ssl-verify-server-cert=1;ssl-ca=%2").arg(enforced, source.ca);
}

} // namespace

MariaDbSource mariaDbSource(const ConnectionParts &parts)
{
    const QUrl url(parts.dataSource, QUrl::StrictMode);
    const QUrlQuery query(url);
    MariaDbSource source;
    source.socket = query.queryItemValue("socket", QUrl::FullyDecoded);
    source.host = url.host(QUrl::FullyDecoded);
    if (source.host.isEmpty() && !source.socket.isEmpty())
        source.host = QStringLiteral("localhost");
    if (!url.isValid() || source.host.isEmpty())
        throw unreadableSource(parts.dataSource);
    source.port = url.port(source.port);
    const auto given = [](const QString &setting, const QString &inSource) {
        return setting.isEmpty() ? inSource : setting;
    };
    source.user = given(parts.userId, url.userName(QUrl::FullyDecoded));
    source.password = given(parts.password, url.password(QUrl::FullyDecoded));
    source.database = given(parts.catalog, url.path(QUrl::FullyDecoded).mid(1));

    static_cast<Guard &>(source) =
        guardOf(query, !source.socket.isEmpty() || isThisMachine(source.host), parts.dataSource);
    return source;
}

void openMariaDb(QSqlDatabase &database, const MariaDbSource &source)
{
    database.setHostName(hostOf(source));
    database.setPort(source.port);
    database.setUserName(source.user);
    database.setPassword(source.password);
    database.setDatabaseName(source.database);
    database.setConnectOptions(source.socket.isEmpty() ? QString(driverOptions)
                                                       : driverOptions + ";UNIX_SOCKET=" + source.socket);
    if (!database.open())
        throw errorOf(database.lastError());
    watchAnswers(database.driver()->handle(), source);
    QSqlQuery query(database);
    for (const char *setting : sessionSettings)
        if (!query.exec(QLatin1String(setting)))
            throw DataError(0, QStringLiteral("服务器不支持所需的设置（需要 MariaDB 10.10 以上版本）。\n") +
                                   query.lastError().databaseText());
    if (source.tls == MariaDbSource::Tls::Off)
        return;
    if (!query.exec("show session status like 'Ssl_cipher'") || !query.next() || query.value(1).toString().isEmpty())
        throw DataError(0, QStringLiteral("与服务器“%1”的连接没有加密，已断开。").arg(source.host));
}

} // namespace tradewick
