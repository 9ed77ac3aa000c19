#include "database/password.h"

#include "database/source.h"

#include <QFile>

#include <cstdio>
#include <termios.h>
#include <unistd.h>

namespace tradewick
{

namespace
{

// Stops the terminal from showing what is typed, for as long as it lives.
class HiddenTyping
{
public:
    HiddenTyping()
    {
        m_isTerminal = ::tcgetattr(STDIN_FILENO, &m_before) == 0;
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (m_isTerminal)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~HiddenTyping()
    {
        if (m_isTerminal)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    HiddenTyping(const HiddenTyping &) = delete;
    HiddenTyping &operator=(const HiddenTyping &) = delete;
    bool isTerminal() const { return m_isTerminal; }

private:
    termios m_before{};
    bool m_isTerminal = false;
};

} // namespace

QString newPassword()
{
    if (qEnvironmentVariableIsSet("TRADEWICK_USER_PASSWORD"))
        return qEnvironmentVariable("TRADEWICK_USER_PASSWORD");
    const HiddenTyping terminal;
    QFile input;
    input.open(stdin, QFile::ReadOnly);
    const auto line = [&](const char *prompt) {
        if (terminal.isTerminal())
            std::fputs(prompt, stderr);
        QByteArray text = input.readLine();
        if (terminal.isTerminal())
            std::fputc('\n', stderr);
        if (text.endsWith('\n'))
            text.chop(1);
        return QString::fromLocal8Bit(text);
    };
    QString password = line("Password: ");
    if (terminal.isTerminal() && line("Once more: ") != password)
        throw CommandError(QStringLiteral("the two passwords differ"));
    return password;
}

} // namespace tradewick
