// The one reader and the one form of dates.
#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

namespace tradewick
{

// Reads a date in any form that clerks type: 2026-11-24, 2026-3-5, 2026/3/5, 11-24-2026, 20261124, each with or
// without a time of day behind a blank. Takes text with blanks around it. Gives an invalid QDate for anything else,
// for days that no month has, and for the empty text.
QDate dateFromText(const QString &text);

// The form in which every date is shown and stored: 2026-11-24. An invalid date gives the empty text.
QString dateText(const QDate &date);

// dateText() of a value of a date column, which may be a QDate, a QDateTime or text; text that is no date stays as it
// stands, Null gives the empty text.
QString dateText(const QVariant &value);

} // namespace tradewick
