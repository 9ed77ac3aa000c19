// Numbers of new records: each follows from the highest key in the table, nothing is counted or reserved elsewhere.
#pragma once

#include "data/connection.h"

#include <QDate>
#include <QString>
#include <QVariant>

namespace tradewick
{

// Year, month and day of the last document number and its sequence, padded and unpadded. They keep their values between
// numbers: a lookup that fails leaves the sequence of the last one.
extern QString gNumYY, gNumMM, gNumDD, gNumSeq, gNumRaw;

// The padded sequence that follows a key.
//   lastKey: key that sorts last; its rightmost `tail` characters are read as a number, letters reading as 0.
//   digits: the shortest sequence, filled with zeros in front; a longer one stays as it is.
// Sets gNumRaw. Throws DataError for a Null key.
QString nextSequence(const QVariant &lastKey, int tail, int digits);

// The key that a form offers for a new record: document numbers with year and month ("X240300001"), code numbers
// without ("B0001").
//   form: name of the form in the table of numbers; one that numbers nothing gives the empty text.
//   today: the desktop's date.
// A document number skips errors of its lookup; a code number throws DataError.
QString proposeNumber(const QString &form, Connection &connection, const QDate &today);

// The key that follows lastKey on a form of code numbers that knows its last row itself; an invalid QVariant stands for
// a Null key, noRows for a table without rows.
QString proposeCode(const QString &form, const QVariant &lastKey, bool noRows);

} // namespace tradewick
