// The server of sql_server.py over an empty database of the whole schema, as long as it lives.
#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace tradewick::test
{

class SqlServerStandIn
{
public:
    // certifiedName: of the host in the certificate that the server shows; empty: it cannot encrypt.
    explicit SqlServerStandIn(const QString &certifiedName = {});
    ~SqlServerStandIn();
    SqlServerStandIn(const SqlServerStandIn &) = delete;
    SqlServerStandIn &operator=(const SqlServerStandIn &) = delete;

    // The connection string; query: "tls=verify", say.
    QString source(const QString &host = "127.0.0.1", const QString &query = {}) const;
    int port() const { return m_port; }
    QString certificate() const { return m_folder.filePath("certificate.pem"); }
    // What the next link told of itself: encryption as the protocol numbers it, user, password, database, application.
    QJsonObject login();
    void kill(); // every link breaks

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    int m_port = 0;
};

} // namespace tradewick::test
