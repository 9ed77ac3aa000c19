#include "data/connection.h"

#include "data/connection_string.h"
#include "data/dialect.h"
#include "data/mariadb_server.h"
#include "data/odbc_statement.h"
#include "data/row_cursor.h"
#include "data/sql_error.h"
#include "data/sql_server.h"
#include "data/sqlite_functions.h"
#include "data/watch.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace tradewick
{

namespace
{

ColumnKind kindOfDeclaredType(const QString &type)
{
    static const QHash<QString, ColumnKind> kinds{
        {"text", ColumnKind::Text},       {"varchar", ColumnKind::Text},  {"longtext", ColumnKind::Text},
        {"mediumtext", ColumnKind::Text}, {"real", ColumnKind::Number},   {"double", ColumnKind::Number},
        {"integer", ColumnKind::Number},  {"int", ColumnKind::Number},    {"numeric", ColumnKind::Number},
        {"date", ColumnKind::Date},       {"datetime", ColumnKind::Date}, {"boolean", ColumnKind::Flag},
        {"tinyint", ColumnKind::Flag},    {"nvarchar", ColumnKind::Text}, {"float", ColumnKind::Number},
        {"bit", ColumnKind::Flag},        {"bigint", ColumnKind::Number}, {"decimal", ColumnKind::Number},
    };
    return kinds.value(type.section(u'(', 0, 0).trimmed().toLower(), ColumnKind::Unknown);
}

QList<std::weak_ptr<Connection>> &sharedConnections()
{
    static QList<std::weak_ptr<Connection>> connections;
    return connections;
}

} // namespace

struct Connection::Link {
    QSqlDatabase database;
    PreparedStatements statements;
};

Connection::Connection() : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces)), m_link(std::make_unique<Link>())
{
}

Connection::~Connection()
{
    Close();
}

bool Connection::isOpen() const
{
    return m_isOpen;
}

const Dialect &Connection::dialect() const
{
    return dialectOf(m_engine);
}

QString Connection::identityColumn() const
{
    return QLatin1String(dialect().identity);
}

void Connection::Open(const QString &connectionString, const QString &, const QString &, int)
{
    Close();
    m_connectionString = connectionString;
    try {
        openDatabase();
    } catch (const DataError &) {
        Close();
        throw;
    }
    m_isOpen = true;
}

void Connection::openDatabase()
{
    const ConnectionParts parts = connectionParts(m_connectionString);
    const QString path = QDir::fromNativeSeparators(QString(parts.dataSource).replace(u'\\', u'/'));
    const bool isMariaDb = path.startsWith("mariadb://", Qt::CaseInsensitive);
    const bool isServer = isMariaDb || path.startsWith("odbc:", Qt::CaseInsensitive);
    if (parts.provider.startsWith("Microsoft.Jet", Qt::CaseInsensitive) ||
        (!isServer && path.endsWith(".db", Qt::CaseInsensitive))) {
        if (!QFileInfo(path).isFile())
            throw DataError(0, QStringLiteral("数据库文件“%1”不存在").arg(path));
        m_engine = Engine::Sqlite;
        m_link->database = QSqlDatabase::addDatabase("QSQLITE", m_name);
        m_link->database.setDatabaseName(path);
        m_link->database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=10000");
        if (!m_link->database.open())
            throw errorOf(m_link->database.lastError());
        addSqliteFunctions(m_link->database.driver()->handle());
    } else if (isMariaDb) {
        const MariaDbSource source = mariaDbSource(parts);
        m_engine = Engine::MariaDb;
        m_link->database = QSqlDatabase::addDatabase("QMYSQL", m_name);
        openMariaDb(m_link->database, source);
    } else {
        const SqlServerSource source = sqlServerSource(parts);
        if (!QSqlDatabase::isDriverAvailable("QODBC"))
            throw DataError(0, QStringLiteral("无法连接“%1”：请安装软件包 libqt6sql6-odbc。").arg(parts.dataSource));
        m_engine = Engine::SqlServer;
        m_link->database = QSqlDatabase::addDatabase("QODBC", m_name);
        openSqlServer(m_link->database, source);
    }
}

void Connection::overLink(bool repeatable, const std::function<void()> &action)
{
    if (Watch::isAsking()) // in the middle of another statement
        throw DataError(Watch::stopped, QStringLiteral("正在查询，请稍候"));
    if (m_depth > 0) {
        action();
        return;
    }
    for (bool again = false;; again = true) {
        try {
            if (m_isLost) {
                m_link->statements.clear();
                m_link->database.close();
                m_link->database = QSqlDatabase();
                QSqlDatabase::removeDatabase(m_name);
                openDatabase();
                m_isLost = false;
            }
            action();
            return;
        } catch (const DataError &error) {
            if (error.number() != DataError::connectionLost)
                throw;
            m_isLost = true;
            if (again || !repeatable)
                throw;
        }
    }
}

void Connection::Close()
{
    m_link->statements.clear();
    if (m_link->database.isValid()) {
        m_link->database.close();
        m_link->database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    m_tables.clear();
    m_uniqueColumns.clear();
    m_onCommit.clear();
    m_depth = 0;
    m_isOpen = m_isLost = false;
}

BoundStatement Connection::bound(const QString &statement, const Values &values)
{
    return bindStatement(statement, values, m_engine, [this](const QString &name) { return kindsOf(name); });
}

qint64 Connection::Execute(const QString &statement, const Values &values)
{
    return executeBound(bound(statement, values));
}

qint64 Connection::executeBound(const BoundStatement &statement)
{
    qint64 rows = 0;
    overLink(false, [&] {
        if (dialect().isOdbc) {
            rows = runOdbc(m_link->database, statement).changed;
            return;
        }
        rows = m_link->statements.run(m_link->database, statement)->numRowsAffected();
    });
    return rows;
}

qint64 Connection::insertBound(const BoundStatement &statement)
{
    qint64 identity = 0;
    if (identityColumn().isEmpty())
        executeBound(statement);
    else
        overLink(false,
                 [&] { identity = m_link->statements.run(m_link->database, statement)->lastInsertId().toLongLong(); });
    return identity;
}

void Connection::readKeys(const BoundStatement &statement, QVector<qint64> &keys)
{
    readBound(statement, 1, [&keys](const QVariantList &row) {
        keys.append(row.first().toLongLong());
        return true;
    });
}

void Connection::read(const QString &statement, const Values &values,
                      const std::function<void(const QStringList &)> &columns,
                      const std::function<bool(const QVariantList &)> &row)
{
    const auto rows = cursor(statement, values);
    columns(rows->columns());
    rows->readAll(rows->columns().size(), row);
}

void Connection::readBound(const BoundStatement &statement, qsizetype columns,
                           const std::function<bool(const QVariantList &)> &row)
{
    cursorBound(statement)->readAll(columns, row);
}

std::unique_ptr<RowCursor> Connection::cursor(const QString &statement, const Values &values)
{
    return cursorBound(bound(statement, values));
}

std::unique_ptr<RowCursor> Connection::cursorBound(const BoundStatement &statement)
{
    std::unique_ptr<RowCursor> cursor;
    overLink(true, [&] { cursor = std::make_unique<RowCursor>(m_link->database, statement, m_link->statements); });
    return cursor;
}

QVector<Row> Connection::rows(const QString &statement, const Values &values)
{
    QVector<Row> rows;
    QStringList names;
    read(
        statement, values,
        [&](const QStringList &columns) {
            for (const QString &column : columns)
                names.append(column.toLower());
        },
        [&](const QVariantList &line) {
            rows.append(Row(names, line));
            return true;
        });
    return rows;
}

void Connection::transaction(const std::function<void()> &work)
{
    if (m_depth > 0) {
        work();
        return;
    }
    // A link that broke while nothing was asked of it is made anew here; in the middle it ends the work.
    overLink(true, [&] {
        control(dialect().begin);
        if (dialect().isOdbc && !m_link->database.transaction())
            throw errorOf(m_link->database.lastError());
    });
    m_depth = 1;
    ++m_transaction;
    std::vector<std::function<void()>> actions;
    try {
        work();
        if (!dialect().isOdbc)
            control("commit");
        else if (!m_link->database.commit())
            throw errorOf(m_link->database.lastError());
        m_depth = 0;
        actions.swap(m_onCommit);
    } catch (const DataError &error) {
        m_isLost = error.number() == DataError::connectionLost;
        undo();
        throw;
    } catch (...) {
        undo();
        throw;
    }
    for (const auto &action : actions)
        action();
}

void Connection::undo()
{
    m_depth = 0;
    m_onCommit.clear();
    if (m_isLost)
        return;
    if (dialect().isOdbc)
        m_link->database.rollback();
    else
        QSqlQuery(m_link->database).exec("rollback");
}

void Connection::control(const char *word)
{
    if (dialect().isOdbc) {
        runOdbc(m_link->database, {QLatin1String(word), {}});
        return;
    }
    QSqlQuery query(m_link->database);
    if (!query.exec(QLatin1String(word)))
        throw errorOf(query.lastError());
}

void Connection::onCommit(std::function<void()> action)
{
    if (m_depth == 0)
        action();
    else
        m_onCommit.push_back(std::move(action));
}

const Connection::Table &Connection::table(const QString &name)
{
    const QString key = name.toLower();
    if (const auto found = m_tables.constFind(key); found != m_tables.constEnd())
        return *found;
    Table table;
    const QString statement = QLatin1String(dialect().columns);
    readBound({statement, QVariantList(statement.count(u'?'), key)}, 3, [&table](const QVariantList &row) {
        const QString column = row[0].toString().toLower();
        table.columns.append(column);
        table.kinds.insert(column, kindOfDeclaredType(row[1].toString()));
        table.isBase = row[2].toInt() == 1;
        return true;
    });
    return *m_tables.insert(key, table);
}

bool Connection::isBaseTable(const QString &name)
{
    return table(name).isBase;
}

QString Connection::uniqueColumnOf(const QString &name)
{
    const QString key = name.toLower(), statement = QLatin1String(dialect().uniqueColumn);
    if (statement.isEmpty())
        return {};
    if (const auto found = m_uniqueColumns.constFind(key); found != m_uniqueColumns.constEnd())
        return *found;
    QString column;
    readBound({statement, {key}}, 1, [&column](const QVariantList &row) {
        column = row[0].toString().toLower();
        return false;
    });
    return *m_uniqueColumns.insert(key, column);
}

ColumnKinds Connection::kindsOf(const QString &name)
{
    return table(name).kinds;
}

QStringList Connection::columnsOf(const QString &name)
{
    return table(name).columns;
}

std::shared_ptr<Connection> Connection::shared(const QString &connectionString)
{
    auto &connections = sharedConnections();
    connections.removeIf([](const auto &connection) { return connection.expired(); });
    for (const auto &weak : connections)
        if (const auto connection = weak.lock();
            connection && connection->isOpen() && connection->m_connectionString == connectionString)
            return connection;
    auto connection = std::make_shared<Connection>();
    connection->Open(connectionString);
    share(connection);
    return connection;
}

void Connection::share(const std::shared_ptr<Connection> &connection)
{
    sharedConnections().append(connection);
}

} // namespace tradewick
