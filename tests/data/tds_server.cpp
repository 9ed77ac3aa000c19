#include "tds_server.h"

#include <QSemaphore>
#include <QtEndian>

namespace tradewick::test
{

namespace
{

constexpr int waitMilliseconds = 10000;
constexpr int headerSize = 8;

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

template <typename Number> QByteArray little(Number number)
{
    QByteArray bytes(sizeof(Number), Qt::Uninitialized);
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray big(quint16 number)
{
    QByteArray bytes(2, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

void answer(QTcpSocket &socket, const QByteArray &body)
{
    socket.write(QByteArray("\x04\x01") + big(static_cast<quint16>(body.size() + headerSize)) + QByteArray(4, 0) +
                 body);
    socket.waitForBytesWritten(waitMilliseconds);
}

// Option 1 of the greeting, each of which is told by its number and where it stands.
TdsServer::Encryption encryptionOf(const QByteArray &greeting)
{
    for (int at = 0; at + 5 <= greeting.size() && greeting[at] != '\xff'; at += 5)
        if (greeting[at] == 1)
            return TdsServer::Encryption{greeting.at(qFromBigEndian<quint16>(greeting.constData() + at + 1))};
    return TdsServer::Encryption::Unheard;
}

// A text of the login record: where it stands and how many characters it has, at `at`.
QByteArray field(const QByteArray &login, int at)
{
    const auto number = [&](int offset) { return qFromLittleEndian<quint16>(login.constData() + offset); };
    return login.mid(number(at), number(at + 2) * 2);
}

QString text(const QByteArray &bytes)
{
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2);
}

// Passwords are turned round, which hides them from nobody.
QByteArray plain(QByteArray hidden)
{
    for (char &c : hidden) {
        const auto byte = static_cast<quint8>(static_cast<quint8>(c) ^ 0xa5U);
        c = static_cast<char>(byte << 4U | byte >> 4U);
    }
    return hidden;
}

QByteArray refusal()
{
    const QString message = QStringLiteral("Login failed for user");
    const QByteArray error = little<qint32>(18456) + QByteArray("\x01\x0e") +
                             little(static_cast<quint16>(message.size())) + utf16(message) + QByteArray(2, 0) +
                             little<qint32>(1);
    return '\xaa' + little(static_cast<quint16>(error.size())) + error + '\xfd' + little<quint16>(2) +
           QByteArray(10, 0);
}

} // namespace

TdsServer::TdsServer()
{
    QSemaphore listening;
    m_thread = std::jthread([&] {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        m_port = server.serverPort();
        listening.release();
        serve(server);
    });
    listening.acquire();
}

TdsServer::Login TdsServer::login()
{
    m_thread.join();
    return m_login;
}

QByteArray TdsServer::packet(QTcpSocket &socket)
{
    while (socket.bytesAvailable() < headerSize)
        if (!socket.waitForReadyRead(waitMilliseconds))
            return {};
    const QByteArray header = socket.read(headerSize);
    const int size = qFromBigEndian<quint16>(header.constData() + 2) - headerSize;
    while (socket.bytesAvailable() < size)
        if (!socket.waitForReadyRead(waitMilliseconds))
            return {};
    return socket.read(size);
}

void TdsServer::serve(QTcpServer &server)
{
    if (!server.waitForNewConnection(waitMilliseconds))
        return;
    QTcpSocket &socket = *server.nextPendingConnection();
    m_login.encryption = encryptionOf(packet(socket));
    // It has version 12 and cannot encrypt.
    answer(socket, QByteArray("\x00\x00\x0b\x00\x06\x01\x00\x11\x00\x01\xff\x0c\x00\x00\x00\x00\x00\x02", 18));
    const QByteArray login = packet(socket);
    if (login.isEmpty())
        return;
    m_login.user = text(field(login, 40));
    m_login.password = text(plain(field(login, 44)));
    m_login.application = text(field(login, 48));
    m_login.database = text(field(login, 68));
    answer(socket, refusal());
    socket.waitForDisconnected(waitMilliseconds);
}

} // namespace tradewick::test
