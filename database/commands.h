// What the program does with a database file; main.cpp reads the command line.
#pragma once

#include <QString>

#include <stdexcept>

class QTextStream;

namespace tradewick
{

// A command that could not be carried out; what() is the sentence for the user.
class CommandError : public std::runtime_error
{
public:
    explicit CommandError(const QString &sentence) : std::runtime_error(sentence.toStdString()) {}
};

// Each throws CommandError, and then has left the file as it was, or has made none.

// Makes a new SQLite database of all tables and views. The name has to end in .db, by which the program knows such a
// file; a file of that name must not exist.
void createDatabase(const QString &file);

// Writes one line for every table, view and column of the system, "present" or "missing", and a summary. Gives whether
// nothing is missing.
bool checkDatabase(const QString &file, QTextStream &out);

// Fills the database, made first where it does not exist, with demonstration data and puts the company's logo beside
// it. A database with a contract in it is refused.
void fillWithDemonstration(const QString &file);

// Writes the local settings: one row with the data source, user, password and database left Null. Only the owner can
// read the file, since a password may follow. An existing file is refused.
void writeSettings(const QString &file, const QString &dataSource);

} // namespace tradewick
