// The rows of all tables from one database into another, whatever the engines.
#pragma once

#include "database/description.h"
#include "database/source.h"

#include <QVector>

#include <functional>

namespace tradewick
{

struct TableCount {
    QString table;
    qint64 rows = 0;
    bool operator==(const TableCount &) const = default;
};

// Takes the rows of a table in their order, some at a time.
using TakeRows = std::function<void(const TableDescription &table, const QVector<ColumnDescription> &columns,
                                    const QVector<QVariantList> &rows)>;

// Reads every table of the system as it stands at one moment and hands its rows over, then calls `done` with their
// number. Throws CommandError for a table that is missing or has a column that no description knows, and when another
// number of rows was read than the table counts; DataError.
void readAllRows(const QString &source, const TakeRows &take, const std::function<void(const TableCount &)> &done);

// Copies all rows in one transaction into a database whose tables are empty, or are made when there are none, and
// gives how many. Identities of rows belong to the engines and are made anew. Throws CommandError or DataError, also
// when a table does not count the same rows afterwards; nothing then is copied.
QVector<TableCount> copyDatabase(const QString &from, const QString &to);

} // namespace tradewick
