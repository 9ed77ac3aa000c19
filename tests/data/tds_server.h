// A server on this machine that speaks the first words of SQL Server's protocol, so that a real driver shows what it
// sends: how it wants the link guarded, and who logs in with what password. It lets nobody in.
#pragma once

#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <thread>

namespace tradewick::test
{

class TdsServer
{
public:
    // What the driver says about the link before anything else.
    enum class Encryption { LoginOnly = 0, All = 1, None = 2, Unheard = -1 };
    struct Login {
        Encryption encryption = Encryption::Unheard;
        QString user, password, database, application;
    };

    TdsServer();
    int port() const { return m_port; }
    // Waits until the one connection has ended.
    Login login();

private:
    void serve(QTcpServer &server);
    static QByteArray packet(QTcpSocket &socket);

    std::jthread m_thread;
    int m_port = 0;
    Login m_login;
};

} // namespace tradewick::test
