#include "database/source.h"

#include "database/description.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace tradewick
{

namespace
{

const QLatin1String serverScheme("mariadb://");

// A server keeps tables whatever becomes of the transaction.
void dropMade(Connection &connection, const QStringList &made) noexcept
{
    try {
        for (auto statement = made.crbegin(); statement != made.crend(); ++statement)
            connection.executeBound({"DROP " + statement->section(QRegularExpression("\\s"), 1, 2), {}});
    } catch (const DataError &) {
        return; // what led here is told, not this
    }
}

void requireTables(Connection &connection, const QString &source)
{
    const QStringList tables = tablesOf(connection);
    for (const TableDescription &table : tableDescriptions())
        if (!tables.contains(table.name))
            throw CommandError(QStringLiteral("%1: the table %2 is missing").arg(shownName(source), table.name));
}

QStringList namesOf(Connection &connection, const BoundStatement &statement)
{
    QStringList names;
    connection.readBound(statement, 1, [&names](const QVariantList &row) {
        names.append(row.first().toString().toLower());
        return true;
    });
    return names;
}

// The database's own tables, or its views.
QStringList namesOf(Connection &connection, bool views)
{
    if (connection.engine() == Engine::Sqlite)
        return namesOf(connection, {QStringLiteral("select name from sqlite_master where type = ?"
                                                   " and name not like 'sqlite!_%' escape '!' order by name"),
                                    {views ? "view" : "table"}});
    return namesOf(connection, {QStringLiteral("select table_name from information_schema.tables"
                                               " where table_schema = database() and table_type = ? order by 1"),
                                {views ? "VIEW" : "BASE TABLE"}});
}

// A view whose table is gone cannot be read: it then has no columns, which is what is to be told.
QStringList columnsOf(Connection &connection, const QString &name)
{
    try {
        return connection.columnsOf(name);
    } catch (const DataError &) {
        return {};
    }
}

} // namespace

bool isFile(const QString &source)
{
    if (source.startsWith(serverScheme, Qt::CaseInsensitive))
        return false;
    if (!source.endsWith(QLatin1String(".db"), Qt::CaseInsensitive))
        throw CommandError(QStringLiteral("%1: the name of a database file ends in .db, that of a server's database "
                                          "begins with %2")
                               .arg(source, serverScheme));
    return true;
}

QString shownName(const QString &source)
{
    return source.startsWith(serverScheme, Qt::CaseInsensitive) ? QUrl(source).toString(QUrl::RemovePassword) : source;
}

void refuseExisting(const QString &file)
{
    if (QFileInfo::exists(file))
        throw CommandError(QStringLiteral("%1 exists already").arg(file));
}

void openSource(Connection &connection, const QString &source)
{
    if (isFile(source) && !QFileInfo(source).isFile())
        throw CommandError(QStringLiteral("%1 does not exist").arg(source));
    connection.Open(
        QStringLiteral("Password=%1;Data Source=%2").arg(qEnvironmentVariable("TRADEWICK_PASSWORD"), source));
}

QStringList tablesOf(Connection &connection)
{
    return namesOf(connection, false);
}

QStringList viewsOf(Connection &connection)
{
    return namesOf(connection, true);
}

QVector<Part> partsOf(Connection &connection)
{
    QVector<Part> parts;
    const auto addAll = [&](const QString &kind, const QStringList &names, const auto &descriptions) {
        for (const auto &description : descriptions) {
            parts.append({kind + description.name, names.contains(description.name)});
            const QStringList columns = columnsOf(connection, description.name);
            for (const ColumnDescription &column : description.columns)
                parts.append({"column " + description.name + u'.' + column.name, columns.contains(column.name)});
        }
    };
    addAll(QStringLiteral("table "), tablesOf(connection), tableDescriptions());
    addAll(QStringLiteral("view "), viewsOf(connection), viewDescriptions());
    // Out of sight of "select *", and yet the program tells the rows apart by it.
    if (connection.engine() == Engine::MariaDb) {
        const QStringList tables = namesOf(
            connection, {QStringLiteral("select table_name from information_schema.columns"
                                        " where table_schema = database() and column_name = ? and column_key = 'PRI'"),
                         {connection.identityColumn()}});
        for (const TableDescription &table : tableDescriptions())
            parts.append({"identity " + table.name + u'.' + connection.identityColumn(), tables.contains(table.name)});
    }
    return parts;
}

void writeSource(const QString &source, const std::function<void(Connection &)> &work)
{
    const bool isNewFile = isFile(source) && !QFileInfo::exists(source);
    if (QFile file(source); isNewFile && !file.open(QFile::WriteOnly | QFile::NewOnly))
        throw CommandError(QStringLiteral("%1 cannot be made: %2").arg(source, file.errorString()));
    Connection connection;
    QStringList made;
    const auto makeTables = [&] {
        if (!tablesOf(connection).isEmpty())
            requireTables(connection, source);
        else
            for (const QString &statement : ddl(connection.engine())) {
                connection.executeBound({statement, {}});
                made.append(statement);
            }
    };
    try {
        openSource(connection, source);
        if (!isFile(source))
            makeTables();
        connection.transaction([&] {
            if (isFile(source))
                makeTables();
            work(connection);
        });
    } catch (...) {
        if (isNewFile) {
            connection.Close();
            QFile::remove(source);
        } else if (!isFile(source)) {
            dropMade(connection, made);
        }
        throw;
    }
}

void readSnapshot(Connection &connection, const std::function<void()> &work)
{
    const auto say = [&connection](const char *statement) {
        connection.executeBound({QString::fromLatin1(statement), {}});
    };
    if (connection.engine() == Engine::Sqlite) {
        // A read needs no right to write, which Connection::transaction would ask for.
        say("begin");
        work();
        say("commit");
        return;
    }
    // Inside of a transaction no broken link is made anew behind the reader's back.
    connection.transaction([&] {
        say("set session transaction isolation level repeatable read");
        say("start transaction with consistent snapshot");
        work();
    });
}

QString quotedName(QString name)
{
    return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"';
}

qint64 countRows(Connection &connection, const QString &table)
{
    qint64 count = 0;
    connection.readBound({"select count(*) from " + quotedName(table), {}}, 1, [&count](const QVariantList &row) {
        count = row.first().toLongLong();
        return false;
    });
    return count;
}

} // namespace tradewick
