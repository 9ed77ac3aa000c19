#include "support/cutting_proxy.h"

#include <QList>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tradewick::test
{

namespace
{

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    return address;
}

} // namespace

CuttingProxy::CuttingProxy(int serverPort) : m_serverPort(serverPort)
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    if (::bind(m_listener, generic, length) == 0 && ::listen(m_listener, 16) == 0 &&
        ::getsockname(m_listener, generic, &length) == 0)
        m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

CuttingProxy::~CuttingProxy()
{
    m_ends = true;
    m_thread.join();
    ::close(m_listener);
}

void CuttingProxy::cutAfter(int bytesOfAnswer)
{
    m_hasCut = false;
    m_bytesLeft = bytesOfAnswer;
}

void CuttingProxy::cutAnswerTo(const QByteArray &words)
{
    const std::lock_guard guard(m_mutex);
    m_hasCut = false;
    m_words = words;
}

// False when the connection ends here.
bool CuttingProxy::pass(int from, int to, bool isAnswer)
{
    char buffer[65536];
    ssize_t got = ::recv(from, buffer, sizeof buffer, 0);
    if (got <= 0)
        return false;
    const std::lock_guard guard(m_mutex);
    if (!isAnswer && !m_words.isEmpty() && QByteArray(buffer, got).contains(m_words)) {
        m_words.clear();
        m_keepsBack = true;
    } else if (isAnswer && m_keepsBack) {
        m_keepsBack = false;
        m_hasCut = true;
        return false;
    }
    bool goesOn = true;
    if (isAnswer && m_bytesLeft >= 0) {
        got = qMin<ssize_t>(got, m_bytesLeft);
        m_bytesLeft -= static_cast<int>(got);
        if (m_bytesLeft == 0) {
            m_bytesLeft = -1;
            m_hasCut = true;
            goesOn = false;
        }
    }
    return ::send(to, buffer, static_cast<size_t>(got), MSG_NOSIGNAL) == got && goesOn;
}

void CuttingProxy::run()
{
    struct Pair {
        int desktop, server;
    };
    QList<Pair> pairs;
    const auto close = [&pairs](qsizetype i) {
        ::close(pairs[i].desktop);
        ::close(pairs[i].server);
        pairs.removeAt(i);
    };
    while (!m_ends) {
        QList<pollfd> waits{{m_listener, POLLIN, 0}};
        for (const Pair &pair : std::as_const(pairs))
            waits << pollfd{pair.desktop, POLLIN, 0} << pollfd{pair.server, POLLIN, 0};
        if (::poll(waits.data(), static_cast<nfds_t>(waits.size()), 50) <= 0)
            continue;
        for (qsizetype i = pairs.size() - 1; i >= 0; --i) {
            const bool asks = waits[1 + 2 * i].revents != 0, answers = waits[2 + 2 * i].revents != 0;
            if ((answers && !pass(pairs[i].server, pairs[i].desktop, true)) ||
                (asks && !pass(pairs[i].desktop, pairs[i].server, false)))
                close(i);
        }
        if (waits[0].revents == 0)
            continue;
        const Pair pair{::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC),
                        ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
        const sockaddr_in address = loopback(m_serverPort);
        pairs.append(pair);
        if (::connect(pair.server, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            close(pairs.size() - 1);
    }
    while (!pairs.isEmpty())
        close(0);
}

} // namespace tradewick::test
