// What a failed database action throws. Forms decide what becomes of it: a message, silence, or the end.
#pragma once

#include <QString>

#include <stdexcept>

namespace tradewick
{

class Recordset;

// Why a database did not take a row.
enum class Refusal {
    None,       // it refused none: the link broke, the row is locked, the statement cannot be read
    Duplicate,  // the key is another row's
    NotANumber, // a text where the column takes a number, or a date
    TooLong,
    Missing, // Null where the column takes none
    Other,   // a rule of the database's own
};

class DataError : public std::runtime_error
{
public:
    // The number of "invalid use of Null": a Null met where a value is wanted.
    static constexpr int invalidUseOfNull = 94;
    // A column that a record set or a row does not have was asked for.
    static constexpr int noSuchColumn = 3265;
    // Another desktop changed or deleted the row since it was read: the number that OLE DB has for it.
    static constexpr int changedSinceRead = -2147217864;
    // The connection to the server broke, or could not be made again.
    static constexpr int connectionLost = 3709;

    // number: the engine's own error number, or one of the constants here; text: for the user, as the engine words it.
    DataError(int number, const QString &text, Refusal refusal = Refusal::None, const QString &column = {})
        : std::runtime_error(text.toStdString()), m_number(number), m_text(text), m_refusal(refusal), m_column(column)
    {
    }

    int number() const { return m_number; }
    const QString &text() const { return m_text; }
    Refusal refusal() const { return m_refusal; }
    // The column that was refused, lower case; empty where the engine does not tell.
    const QString &column() const { return m_column; }
    // The record set that was storing, and the position of the row in it; null and -1 where none was.
    Recordset *set() const { return m_set; }
    int row() const { return m_row; }
    void locate(Recordset *set, int row)
    {
        m_set = set;
        m_row = row;
    }

private:
    int m_number;
    QString m_text;
    Refusal m_refusal;
    QString m_column;
    Recordset *m_set = nullptr;
    int m_row = -1;
};

} // namespace tradewick
