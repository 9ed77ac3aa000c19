// A way between a desktop and its server that breaks on demand, as networks do.
#pragma once

#include <QByteArray>

#include <atomic>
#include <mutex>
#include <thread>

namespace tradewick::test
{

class CuttingProxy
{
public:
    // Listens on a port of its own on loopback and passes everything on to that port.
    explicit CuttingProxy(int serverPort);
    ~CuttingProxy();
    CuttingProxy(const CuttingProxy &) = delete;
    CuttingProxy &operator=(const CuttingProxy &) = delete;

    int port() const { return m_port; }
    // Cuts all connections once this many further bytes have come from the server.
    void cutAfter(int bytesOfAnswer);
    // Cuts all connections once the server was sent these words and has answered: the answer is kept back.
    void cutAnswerTo(const QByteArray &words);
    // Whether what was demanded happened.
    bool hasCut() const { return m_hasCut; }

private:
    void run();
    bool pass(int from, int to, bool isAnswer);

    int m_serverPort, m_port = 0, m_listener = -1;
    std::atomic<bool> m_ends = false, m_hasCut = false;
    std::atomic<int> m_bytesLeft = -1; // negative: any number
    std::mutex m_mutex;
    QByteArray m_words; // whose answer is kept back
    bool m_keepsBack = false;
    std::thread m_thread;
};

} // namespace tradewick::test
