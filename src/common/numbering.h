// Numbers of new records: each follows from the highest key in the table, nothing is counted or reserved elsewhere.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace tradewick
{

class Connection;

// Year, month and day of the last document number and its sequence, padded and unpadded. They keep their values between
// numbers: a lookup that fails leaves the sequence of the last one.
extern QString gNumYY, gNumMM, gNumDD, gNumSeq, gNumRaw;

// How a form numbers its new records.
struct NumberRule {
    QString prefix;
    const char *lookup = nullptr; // its last row has the highest key; none: the form's own last record has it
    int tail = 0;                 // characters of that key that are read
    int digits = 0;               // the shortest sequence, filled with zeros in front
    bool monthly = false;         // year and month stand before the sequence; {year} and {month} are the lookup's
    bool keepsTooLong = true;     // a sequence of more digits than there are places is taken as it stands
};

// Document numbers, year and month behind the prefix: "X240300001".
NumberRule monthly(const QString &prefix, const char *lookup);
// Code numbers: "B0001".
enum class TooLong { Stands, IsDropped };
NumberRule running(const QString &prefix, int tail, const char *lookup, TooLong tooLong = TooLong::Stands);

// The padded sequence that follows a key.
//   lastKey: key that sorts last; its rightmost `tail` characters are read as a number, letters reading as 0.
//   digits: the shortest sequence, filled with zeros in front; a longer one stays as it is.
// Sets gNumRaw. Throws DataError for a Null key.
QString nextSequence(const QVariant &lastKey, int tail, int digits);

// The key that a form offers for a new record.
//   lastKey: of the form's own last record, no value where it has none; read only by rules without a lookup.
//   today: the desktop's date.
//   waiting: keys of records that wait to be stored; they are passed over.
// A document number skips errors of its lookup, a lost connection apart; a code number throws DataError.
QString proposeNumber(const NumberRule &rule, Connection &connection, const std::optional<QVariant> &lastKey,
                      const QDate &today, const QStringList &waiting = {});

} // namespace tradewick
