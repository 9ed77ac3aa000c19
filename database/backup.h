// Backups: one SQLite file that holds a database as it stood at one moment.
#pragma once

#include "database/copy.h"

namespace tradewick
{

// Writes the database, which others may go on using, into a new file of a name ending in .db. The file appears under
// its name only when it is whole, checked and on the disk; it is its owner's alone. Gives how many rows it holds.
// Throws CommandError or DataError and then leaves no file.
QVector<TableCount> backUp(const QString &source, const QString &file);

// Copies a backup, checked first, into a database that is new or whose tables are empty, and gives how many rows.
// Throws CommandError or DataError; the target then is as it was.
QVector<TableCount> restore(const QString &file, const QString &target);

} // namespace tradewick
