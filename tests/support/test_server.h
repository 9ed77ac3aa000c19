// A MariaDB server of the tests' own: in a temporary folder, on a socket and on loopback, stopped by its process id.
#pragma once

#include <QString>
#include <QStringList>

namespace tradewick::test
{

class TestServer
{
public:
    // Makes the folder and starts the server, root without a password.
    //   options: further ones of the server, "--ssl-cert=..." say.
    explicit TestServer(const QStringList &options = {});
    // Stops the server and removes the folder.
    ~TestServer();
    TestServer(const TestServer &) = delete;
    TestServer &operator=(const TestServer &) = delete;

    void kill();  // at once, by SIGKILL
    void start(); // again, on the same folder and port

    // Leaves the server running behind the process; stop() ends it by what toText() told.
    QString detach();
    static void stop(const QString &detached);

    // Data sources: over the socket, and over loopback with further items of the query.
    QString source(const QString &database = {}) const;
    QString tcpSource(const QString &database, const QString &query = {}, const QString &user = "root") const;
    int port() const { return m_port; }

    // Statements of an administrator, in the server's own SQL.
    void run(const QStringList &statements) const;

private:
    QString m_folder;
    QStringList m_options;
    int m_port = 0;
    qint64 m_process = 0;
};

// The connection string of a data source, as start-up makes it.
QString connectionStringOf(const QString &dataSource);

} // namespace tradewick::test
