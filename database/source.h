// The databases that the commands work on, named as the local settings name them: an SQLite file or a database on a
// MariaDB server.
#pragma once

#include "data/connection.h"

#include <QStringList>

#include <functional>
#include <stdexcept>

namespace tradewick
{

// A command that could not be carried out; what() is the sentence for the user.
class CommandError : public std::runtime_error
{
public:
    explicit CommandError(const QString &sentence) : std::runtime_error(sentence.toStdString()) {}
};

// Whether the source is a file, and not a server. Throws CommandError for a text that is neither.
bool isFile(const QString &source);

// The source as a message names it: without its password.
QString shownName(const QString &source);

// Throws CommandError when there is a file of that name.
void refuseExisting(const QString &file);

// Opens a database that exists. A server's password may stand in the environment, where no other user sees it, instead
// of in the source. Throws CommandError for a file that does not exist, else DataError.
void openSource(Connection &connection, const QString &source);

// Names, lower case, of the database's own tables or views.
QStringList tablesOf(Connection &connection);
QStringList viewsOf(Connection &connection);

// A table, view or column that the system needs, "column yy_bzdj.cpbh".
struct Part {
    QString name;
    bool isPresent = false;
};
QVector<Part> partsOf(Connection &connection);

// Opens the database, a file made first where there is none, and hands it to `work` in one transaction, with all tables
// and views made first where it has no table at all. Throws CommandError for a database that has other tables, and what
// `work` throws; the database then is as it was.
void writeSource(const QString &source, const std::function<void(Connection &)> &work);

// Hands the opened database to `work`, which sees it all as it stands at one moment, whoever writes meanwhile.
void readSnapshot(Connection &connection, const std::function<void()> &work);

// A table or column name as SQL text.
QString quotedName(QString name);

qint64 countRows(Connection &connection, const QString &table);

} // namespace tradewick
