#include "sql_server_stand_in.h"

#include "support/test_database.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

namespace tradewick::test
{

namespace
{

constexpr int patience = 20000; // milliseconds

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(patience) && process.exitCode() == 0)
        << process.readAllStandardError().toStdString();
}

QByteArray line(QProcess &process)
{
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patience))
            return {};
    return process.readLine();
}

} // namespace

SqlServerStandIn::SqlServerStandIn(const QString &certifiedName)
{
    const QString database = m_folder.filePath("server.db"), key = m_folder.filePath("key.pem");
    run(binFolder() + "/tradewick-database", {"create", database});
    QStringList arguments{SQL_SERVER_SCRIPT, database};
    if (!certifiedName.isEmpty()) {
        run("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=" + certifiedName,
                        "-addext", "subjectAltName=DNS:" + certifiedName, "-keyout", key, "-out", certificate()});
        arguments.append({certificate(), key});
    }
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start("python3", arguments);
    m_port = line(m_server).trimmed().toInt();
    EXPECT_GT(m_port, 0);
}

SqlServerStandIn::~SqlServerStandIn()
{
    kill();
}

void SqlServerStandIn::kill()
{
    m_server.kill();
    m_server.waitForFinished(patience);
}

QString SqlServerStandIn::source(const QString &host, const QString &query) const
{
    return QStringLiteral("Provider=SQLOLEDB.1;password=secret;User ID=sa;Initial Catalog=trade;Data Source=%1,%2?%3")
        .arg(host)
        .arg(m_port)
        .arg(query);
}

QJsonObject SqlServerStandIn::login()
{
    return QJsonDocument::fromJson(line(m_server)).object();
}

} // namespace tradewick::test
