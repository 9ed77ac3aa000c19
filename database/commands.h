// What the program does with one database; main.cpp reads the command line.
#pragma once

#include "database/source.h"

class QTextStream;

namespace tradewick
{

// Each throws CommandError or DataError, and then has left the database as it was, or has made none.

// Makes all tables and views: of a file, which must not exist yet, or in the empty database of a server.
void createDatabase(const QString &source);

// Writes one line for every table, view and column of the system, "present" or "missing", and a summary. Gives whether
// nothing is missing.
bool checkDatabase(const QString &source, QTextStream &out);

// Fills the database, made first where it does not exist, with demonstration data; one that holds rows is refused. Puts
// the company's logo beside a file, or for a server's database into the current folder, and gives its path.
QString fillWithDemonstration(const QString &source);

// Adds a user of the program with all rights, without whom nobody could log in and make the others. A name that is
// taken is refused, regardless of case, and so are an empty name or password and a name with blanks around it.
void addUser(const QString &source, const QString &name, const QString &password);

// Writes the local settings: one row with the data source, user, password and database left Null. Only the owner can
// read the file, since a password may follow. An existing file is refused.
void writeSettings(const QString &file, const QString &dataSource);

} // namespace tradewick
