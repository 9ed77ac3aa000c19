// A whole database as a script for SQL Server's own shell.
#pragma once

#include "database/copy.h"

namespace tradewick
{

// Writes a script of all rows to the character and the digit, which the server's shell stores in one transaction or not
// at all: it makes the tables, indexes and views that are missing, ends at a table that holds rows, and counts them all
// at the end. An existing file is refused; the file is its owner's alone. Throws CommandError or DataError and then
// leaves no file.
QVector<TableCount> writeSqlServerScript(const QString &from, const QString &file);

} // namespace tradewick
