#include "data/sql_server.h"

#include "data/odbc_statement.h"
#include "data/sql_error.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QTemporaryFile>
#include <QUrlQuery>

#include <optional>

namespace tradewick
{

namespace
{

const QLatin1String freeTds("FreeTDS");

// What the texts of the program mean, whatever the login is set to: a date reads year, month, day; "x" is a name; an
// index on a part of the rows can be written, which needs all of the first; a row that another desktop is just writing
// is waited for as long as an SQLite file is; a failed statement leaves no half transaction.
const char *const sessionSettings =
    "set quoted_identifier on set ansi_nulls on set ansi_padding on set ansi_warnings on set arithabort on "
    "set concat_null_yields_null on "
    "set numeric_roundabort off "
    "set dateformat ymd "
    "set lock_timeout 10000 "
    "set xact_abort on "
    "set transaction isolation level read committed";

// A server that does not answer must not stop a clerk's screen for good.
const char *const driverOptions = "SQL_ATTR_LOGIN_TIMEOUT=10;SQL_ATTR_CONNECTION_TIMEOUT=120";
// Sets a variable of the environment as long as it lives.
class Environment
{
public:
    Environment(const char *name, const QByteArray &value)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Environment()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

private:
    const char *m_name;
    bool m_wasSet;
    QByteArray m_before;
};

QString freeTdsConfiguration(const SqlServerSource &source)
{
    QStringList lines{"[tradewick]",
                      "host = " + source.host,
                      "tds version = 7.4",
                      "client charset = UTF-8",
                      "connect timeout = 10",
                      "timeout = 120",
                      "text size = 2147483647",
                      QStringLiteral("encryption = ") + (source.tls == Guard::Tls::Off ? "request" : "require")};
    if (source.port)
        lines.append("port = " + QString::number(source.port));
    else if (!source.instance.isEmpty())
        lines.append("instance = " + source.instance);
    else
        lines.append("port = 1433");
    if (source.tls == Guard::Tls::Verify)
        lines.append({"ca file = " + source.ca, "check certificate hostname = yes"});
    return lines.join(u'\n') + u'\n';
}

} // namespace

SqlServerSource sqlServerSource(const ConnectionParts &parts)
{
    SqlServerSource source;
    source.user = parts.userId;
    source.password = parts.password;
    source.database = parts.catalog;
    const QString text = parts.dataSource.trimmed();
    if (text.startsWith("odbc:", Qt::CaseInsensitive)) {
        source.odbc = text.mid(5);
        return source;
    }
    static const QRegularExpression form(
        QStringLiteral(R"(^(?:tcp:)?([\w.-]+|[0-9a-f:]+|\(local\))(?:\\([\w$#]+))?(?:,(\d{1,5}))?(?:\?(.*))?$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        throw unreadableSource(parts.dataSource);
    source.host = match.captured(1);
    if (source.host == QLatin1String(".") || source.host.compare("(local)", Qt::CaseInsensitive) == 0)
        source.host = QStringLiteral("localhost");
    source.instance = match.captured(2);
    source.port = match.captured(3).toInt();
    static_cast<Guard &>(source) = guardOf(QUrlQuery(match.captured(4)), isThisMachine(source.host), parts.dataSource);
    return source;
}

QString sqlServerDriver(const QStringList &installed)
{
    for (const char *driver : {"ODBC Driver 18 for SQL Server", "ODBC Driver 17 for SQL Server", "FreeTDS"})
        if (installed.contains(QLatin1String(driver), Qt::CaseInsensitive))
            return QLatin1String(driver);
    throw DataError(0, QStringLiteral("没有连接 SQL Server 的 ODBC 驱动程序。请安装软件包 tdsodbc（FreeTDS），"
                                      "或“ODBC Driver 18 for SQL Server”。"));
}

QStringList installedOdbcDrivers()
{
    const QString system = qEnvironmentVariable("ODBCSYSINI", QStringLiteral("/etc"));
    const QString name = qEnvironmentVariable("ODBCINSTINI", QStringLiteral("odbcinst.ini"));
    QStringList drivers;
    for (const QString &path : {QDir(system).filePath(name), QDir::home().filePath(".odbcinst.ini")}) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &raw : file.readAll().split('\n'))
            if (const QString line = QString::fromUtf8(raw).trimmed(); line.startsWith(u'[') && line.endsWith(u']'))
                drivers.append(line.mid(1, line.size() - 2).trimmed());
    }
    return drivers;
}

QString odbcValue(const QString &value, const QString &driver)
{
    // FreeTDS knows no doubled brace: to it a value ends where a brace and a semicolon meet.
    if (driver != freeTds)
        return u'{' + QString(value).replace(u'}', QStringLiteral("}}")) + u'}';
    if (value.contains(QLatin1String("};")))
        throw DataError(0, QStringLiteral("FreeTDS 不能使用含有“};”的用户名、口令或数据库名。"));
    return u'{' + value + u'}';
}

OdbcText odbcText(const SqlServerSource &source, const QString &driver)
{
    const QString database = source.database.isEmpty() ? QString() : ";Database=" + odbcValue(source.database, driver);
    const QString start = "Driver=" + odbcValue(driver, driver);
    if (driver == freeTds)
        return {start + ";Servername=tradewick" + database + ";APP=Tradewick", freeTdsConfiguration(source)};
    // The vendor's driver trusts what the system trusts and has no word for another file.
    if (source.tls == Guard::Tls::Verify && source.ca != Guard::systemCertificates())
        throw DataError(0, QStringLiteral("“%1”只认系统所信任的证书，不能使用证书文件“%2”。").arg(driver, source.ca));
    const QString instance = source.instance.isEmpty() ? QString() : u'\\' + source.instance;
    const QString port = source.port ? u',' + QString::number(source.port) : QString();
    return {start + ";Server=" + odbcValue("tcp:" + source.host + instance + port, driver) + database +
                ";Encrypt=" + (source.tls == Guard::Tls::Off ? "no" : "yes") +
                ";TrustServerCertificate=" + (source.tls == Guard::Tls::Verify ? "no" : "yes") + ";APP=Tradewick",
            {}};
}

void openSqlServer(QSqlDatabase &database, const SqlServerSource &source)
{
    const bool direct = !source.odbc.isEmpty();
    const QString driver = direct ? QString() : sqlServerDriver(installedOdbcDrivers());
    const OdbcText text = direct ? OdbcText{source.odbc, {}} : odbcText(source, driver);
    QTemporaryFile configuration;
    if (!configuration.open() || configuration.write(text.configuration.toUtf8()) < 0 || !configuration.flush())
        throw DataError(0, configuration.errorString());
    // The driver of the toolkit takes a text that names no driver for the name of a source.
    static const QRegularExpression dsn(QStringLiteral("^DSN="), QRegularExpression::CaseInsensitiveOption);
    database.setDatabaseName(QString(text.keywords).remove(dsn));
    // A brace at the very end of the text is none to FreeTDS.
    const QString end = driver == freeTds ? QStringLiteral(";") : QString();
    if (!source.user.isEmpty())
        database.setUserName(odbcValue(source.user, driver) + end);
    if (!source.password.isEmpty())
        database.setPassword(odbcValue(source.password, driver) + end);
    if (!direct && text.configuration.isEmpty())
        database.setConnectOptions(QLatin1String(driverOptions));
    {
        std::optional<Environment> environment;
        if (!text.configuration.isEmpty())
            environment.emplace("FREETDSCONF", configuration.fileName().toLocal8Bit());
        if (!database.open())
            throw errorOf(database.lastError());
    }
    // odbc: may lead to any other server, which speaks for itself.
    if (database.driver()->dbmsType() == QSqlDriver::MSSqlServer)
        runOdbc(database, {QLatin1String(sessionSettings), {}});
}

} // namespace tradewick
