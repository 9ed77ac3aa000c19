#include "database/copy.h"

#include <algorithm>
#include <limits>

namespace tradewick
{

namespace
{

// Values of one statement: on a server enough to wait for few answers; SQLite answers at once, and finds each value by
// a search through those before.
constexpr qsizetype valuesOnServer = 2000, valuesInFile = 100;

CommandError inTable(const QString &table, const QString &fault)
{
    return CommandError(QStringLiteral("table %1: %2").arg(table, fault));
}

QString columnList(const QVector<ColumnDescription> &columns)
{
    QStringList names;
    std::transform(columns.begin(), columns.end(), std::back_inserter(names),
                   [](const ColumnDescription &column) { return quotedName(column.name); });
    return names.join(QStringLiteral(", "));
}

// Those of the table's columns that this database has; a column of an older or of a newer system is told apart.
QVector<ColumnDescription> columnsIn(Connection &connection, const TableDescription &table)
{
    QStringList there = connection.columnsOf(table.name);
    QVector<ColumnDescription> columns;
    for (const ColumnDescription &column : table.columns)
        if (there.removeOne(column.name))
            columns.append(column);
    if (columns.isEmpty())
        throw inTable(table.name, QStringLiteral("is missing"));
    if (!there.isEmpty())
        throw inTable(table.name, QStringLiteral("the column %1 is not of the system").arg(there.first()));
    return columns;
}

// In blocks by identity, since a server's driver holds all of a result in memory.
qint64 readRows(Connection &connection, const TableDescription &table, const TakeRows &take)
{
    const QVector<ColumnDescription> columns = columnsIn(connection, table);
    const qsizetype atOnce = std::max<qsizetype>(1, valuesOnServer / columns.size());
    const QString statement = QStringLiteral("select %1, %2 from %3 where %1 > ? order by %1 limit %4")
                                  .arg(connection.identityColumn(), columnList(columns), quotedName(table.name))
                                  .arg(atOnce);
    qint64 last = std::numeric_limits<qint64>::min(), count = 0;
    QVector<QVariantList> rows;
    do {
        rows.clear();
        connection.readBound({statement, {last}}, columns.size() + 1, [&](const QVariantList &row) {
            last = row.first().toLongLong();
            rows.append(row.mid(1));
            return true;
        });
        if (!rows.isEmpty())
            take(table, columns, rows);
        count += rows.size();
    } while (rows.size() == atOnce);
    return count;
}

void insertRows(Connection &connection, const TableDescription &table, const QVector<ColumnDescription> &columns,
                const QVector<QVariantList> &rows)
{
    const qsizetype atOnce = std::max<qsizetype>(
        1, (connection.engine() == Engine::Sqlite ? valuesInFile : valuesOnServer) / columns.size());
    const QString row = u'(' + QStringList(columns.size(), QStringLiteral("?")).join(u',') + u')';
    const QString insert =
        QStringLiteral("insert into %1 (%2) values ").arg(quotedName(table.name), columnList(columns));
    for (qsizetype at = 0; at < rows.size(); at += atOnce) {
        QVariantList values;
        for (const QVariantList &line : rows.mid(at, atOnce))
            values.append(line);
        connection.executeBound({insert + QStringList(values.size() / columns.size(), row).join(u','), values});
    }
}

} // namespace

void readAllRows(const QString &source, const TakeRows &take, const std::function<void(const TableCount &)> &done)
{
    Connection connection;
    openSource(connection, source);
    readSnapshot(connection, [&] {
        for (const TableDescription &table : tableDescriptions()) {
            try {
                const qint64 read = readRows(connection, table, take), counted = countRows(connection, table.name);
                if (read != counted)
                    throw inTable(table.name, QStringLiteral("%1 rows read, %2 counted").arg(read).arg(counted));
                done({table.name, read});
            } catch (const DataError &error) {
                throw inTable(table.name, error.text());
            }
        }
    });
}

QVector<TableCount> copyDatabase(const QString &from, const QString &to)
{
    QVector<TableCount> copied;
    writeSource(to, [&](Connection &target) {
        for (const TableDescription &table : tableDescriptions())
            if (countRows(target, table.name) > 0)
                throw CommandError(QStringLiteral("%1 holds rows already, in table %2").arg(shownName(to), table.name));
        readAllRows(
            from,
            [&target](const TableDescription &table, const QVector<ColumnDescription> &columns,
                      const QVector<QVariantList> &rows) { insertRows(target, table, columns, rows); },
            [&](const TableCount &table) {
                if (const qint64 stored = countRows(target, table.table); stored != table.rows)
                    throw inTable(table.table, QStringLiteral("%1 rows read, %2 stored").arg(table.rows).arg(stored));
                copied.append(table);
            });
    });
    return copied;
}

} // namespace tradewick
