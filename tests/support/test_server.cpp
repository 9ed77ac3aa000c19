#include "support/test_server.h"

#include "data/connection.h"
#include "data/mariadb_server.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tradewick::test
{

namespace
{

// A port that nobody listens on at this moment.
int freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    const bool found = bind(socket, generic, length) == 0 && getsockname(socket, generic, &length) == 0;
    ::close(socket);
    return found ? ntohs(address.sin_port) : 0;
}

bool runs(qint64 process)
{
    QFile state(QStringLiteral("/proc/%1/stat").arg(process));
    return state.open(QIODevice::ReadOnly) && !state.readAll().contains(") Z ");
}

void end(qint64 process, int signal)
{
    if (process <= 0)
        return;
    ::kill(static_cast<pid_t>(process), signal);
    for (QDeadlineTimer patience(30000); runs(process) && !patience.hasExpired();)
        QThread::msleep(5);
}

// Only root has to be told, for the server would not run as root by itself.
QStringList ownUser()
{
    return geteuid() == 0 ? QStringList{"--user=root"} : QStringList();
}

} // namespace

QString connectionStringOf(const QString &dataSource)
{
    return "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" +
           dataSource;
}

TestServer::TestServer(const QStringList &options) : m_options(options), m_port(freePort())
{
    QTemporaryDir folder(QDir::tempPath() + "/tradewick-server-XXXXXX");
    folder.setAutoRemove(false);
    m_folder = folder.path();
    QProcess install;
    install.setProcessChannelMode(QProcess::MergedChannels);
    install.start("mariadb-install-db", QStringList{"--no-defaults", "--datadir=" + m_folder + "/data",
                                                    "--skip-test-db", "--auth-root-authentication-method=normal",
                                                    "--innodb-log-file-size=8M", "--tmpdir=" + m_folder} +
                                            ownUser());
    install.waitForFinished(120000);
    EXPECT_EQ(install.exitCode(), 0) << install.readAll().toStdString();
    start();
    // Users as an office has them, one with a password.
    run({"create user sa@localhost", "grant all on *.* to sa@localhost",
         "create user clerk@localhost identified by 'pw'", "grant all on *.* to clerk@localhost"});
}

TestServer::~TestServer()
{
    if (m_process > 0)
        stop(detach());
}

void TestServer::start()
{
    QProcess server;
    server.setProgram("mariadbd");
    server.setArguments(QStringList{"--no-defaults", "--datadir=" + m_folder + "/data", "--tmpdir=" + m_folder,
                                    "--socket=" + m_folder + "/socket", "--pid-file=" + m_folder + "/pid",
                                    QStringLiteral("--port=%1").arg(m_port), "--bind-address=127.0.0.1",
                                    "--innodb-log-file-size=8M", "--innodb-buffer-pool-size=64M",
                                    // what a killed process wrote is there all the same
                                    "--innodb-flush-method=nosync", "--innodb-flush-log-at-trx-commit=2",
                                    "--skip-name-resolve", "--loose-innodb-fast-shutdown=2"} +
                        ownUser() + m_options);
    server.setStandardOutputFile(m_folder + "/log", QIODevice::Append);
    server.setStandardErrorFile(m_folder + "/log", QIODevice::Append);
    ASSERT_TRUE(server.startDetached(&m_process));
    for (QDeadlineTimer patience(60000);;) {
        try {
            Connection().Open(connectionStringOf(source()));
            return;
        } catch (const DataError &error) {
            QFile log(m_folder + "/log");
            log.open(QIODevice::ReadOnly);
            ASSERT_TRUE(runs(m_process) && !patience.hasExpired()) << error.what() << log.readAll().toStdString();
            QThread::msleep(20);
        }
    }
}

void TestServer::kill()
{
    end(m_process, SIGKILL);
    m_process = 0;
}

QString TestServer::detach()
{
    const QString detached = QStringLiteral("%1\n%2\n").arg(m_process).arg(m_folder);
    m_process = 0;
    return detached;
}

void TestServer::stop(const QString &detached)
{
    const QStringList lines = detached.split(u'\n');
    end(lines.value(0).toLongLong(), SIGTERM);
    if (lines.value(1).contains("tradewick-server-"))
        QDir(lines.value(1)).removeRecursively();
}

QString TestServer::source(const QString &database) const
{
    return "mariadb://root@localhost/" + database + "?socket=" + m_folder + "/socket";
}

QString TestServer::tcpSource(const QString &database, const QString &query, const QString &user) const
{
    return QStringLiteral("mariadb://%1@127.0.0.1:%2/%3?%4").arg(user).arg(m_port).arg(database, query);
}

void TestServer::run(const QStringList &statements) const
{
    Connection connection;
    connection.Open(connectionStringOf(source()));
    for (const QString &statement : statements)
        connection.executeBound({statement, {}});
}

} // namespace tradewick::test
