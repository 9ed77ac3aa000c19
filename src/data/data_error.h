// What a failed database action throws. Forms decide what becomes of it: a message, silence, or the end.
#pragma once

#include <QString>

#include <stdexcept>

namespace tradewick
{

class DataError : public std::runtime_error
{
public:
    // The number of "invalid use of Null": a Null met where a value is wanted.
    static constexpr int invalidUseOfNull = 94;
    // Another desktop changed or deleted the row since it was read: the number that OLE DB has for it.
    static constexpr int changedSinceRead = -2147217864;
    // The connection to the server broke, or could not be made again.
    static constexpr int connectionLost = 3709;

    // number: the engine's own error number, or one of the constants here; text: for the user, as the engine words it.
    DataError(int number, const QString &text) : std::runtime_error(text.toStdString()), m_number(number), m_text(text)
    {
    }

    int number() const { return m_number; }
    const QString &text() const { return m_text; }

private:
    int m_number;
    QString m_text;
};

} // namespace tradewick
