#include "server_database.h"

#include "data/connection.h"
#include "support/test_server.h"

#include <QCoreApplication>
#include <QFile>
#include <QUrl>
#include <QUrlQuery>

namespace tradewick::test
{

namespace
{

QString serverSource(const QString &database)
{
    if (!qEnvironmentVariableIsSet("TRADEWICK_TEST_SERVER")) {
        static const TestServer own;
        return own.source(database);
    }
    QFile shared(qEnvironmentVariable("TRADEWICK_TEST_SERVER"));
    shared.open(QIODevice::ReadOnly);
    return QString::fromUtf8(shared.readLine()).trimmed().replace("/?", u'/' + database + u'?');
}

} // namespace

ServerDatabase::ServerDatabase() : m_name(QStringLiteral("tradewick_data_%1").arg(QCoreApplication::applicationPid()))
{
    run("drop database if exists " + m_name);
    run("create database " + m_name);
}

ServerDatabase::~ServerDatabase()
{
    run("drop database " + m_name);
}

QString ServerDatabase::source() const
{
    return serverSource(m_name);
}

QString ServerDatabase::socket() const
{
    return QUrlQuery(QUrl(source())).queryItemValue("socket", QUrl::FullyDecoded);
}

void ServerDatabase::run(const QString &statement) const
{
    Connection connection;
    connection.Open(connectionStringOf(serverSource({})));
    connection.executeBound({statement, {}});
}

} // namespace tradewick::test
