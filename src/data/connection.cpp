#include "data/connection.h"

#include "data/collation.h"
#include "data/date_text.h"
#include "data/mariadb_server.h"
#include "data/odbc_statement.h"
#include "data/sql_error.h"
#include "data/sql_server.h"
#include "data/sqlite_functions.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

#include <algorithm>

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

ConnectionParts connectionParts(const QString &connectionString)
{
    static const QStringList keys{
        "provider=", "persist security info=", "password=", "user id=", "initial catalog=", "data source="};
    QStringList found(keys.size());
    qsizetype open = -1; // key whose value is being read
    qsizetype start = 0;
    const auto keyAt = [&](qsizetype at) -> qsizetype {
        for (qsizetype key = 0; key < keys.size(); ++key)
            if (QStringView(connectionString).mid(at).startsWith(keys[key], Qt::CaseInsensitive))
                return key;
        return -1;
    };
    for (qsizetype at = 0; at <= connectionString.size(); ++at) {
        const bool end = at == connectionString.size();
        const bool boundary = at == 0 || end || connectionString[at - 1] == u';';
        const qsizetype key = boundary && !end ? keyAt(at) : -1;
        if (key < 0 && !end)
            continue;
        if (open >= 0)
            found[open] = connectionString.mid(start, at - start - (end ? 0 : 1));
        if (key < 0)
            break;
        open = key;
        start = at + keys[key].size();
    }
    return {found[0], found[5], found[3], found[2], found[4]};
}

namespace
{

// What a value is ordered by, made ready once: nulls first, numbers by value, texts by the one order.
struct OrderKey {
    enum Kind { Null, Number, Text } kind = Null;
    double number = 0;
    QString text;

    explicit OrderKey(const QVariant &value)
    {
        if (value.isNull())
            return;
        kind = value.typeId() == QMetaType::QString ? Text : Number;
        if (kind == Text)
            text = foldedForOrder(value.toString());
        else
            number = value.toDouble();
    }
};

int compare(const OrderKey &a, const OrderKey &b)
{
    if (a.kind != b.kind)
        return a.kind < b.kind ? -1 : 1;
    return a.kind == OrderKey::Text ? compareFolded(a.text, b.text) : a.number < b.number ? -1 : a.number > b.number;
}

} // namespace

RowCursor::RowCursor(const QSqlDatabase &database, const BoundStatement &statement, PreparedStatements &statements)
    : m_hiddenColumns(statement.hiddenColumns)
{
    if (database.driverName() == QLatin1String("QODBC")) {
        OdbcResult result = runOdbc(database, statement);
        m_columns = std::move(result.columns);
        m_fetched = std::move(result.rows);
        m_isFetched = true;
        return;
    }
    m_query = statements.run(database, statement);
    if (!statement.order.isEmpty())
        sort(statement);
}

const QStringList &RowCursor::columns()
{
    if (m_columns.isEmpty() && m_query) {
        const QSqlRecord record = m_query->record();
        for (int i = 0; i < record.count() - m_hiddenColumns; ++i)
            m_columns.append(record.fieldName(i));
    }
    return m_columns;
}

void RowCursor::sort(const BoundStatement &statement)
{
    struct Row {
        QVariantList values;
        std::vector<OrderKey> keys;
    };
    const qsizetype count = columns().size() + m_hiddenColumns;
    std::vector<Row> rows;
    while (m_query->next()) {
        Row &row = rows.emplace_back();
        for (int i = 0; i < count; ++i)
            row.values.append(read(i));
        for (const OrderItem &item : statement.order)
            row.keys.emplace_back(row.values[item.column < 0 ? count + item.column : item.column]);
    }
    std::stable_sort(rows.begin(), rows.end(), [&](const Row &a, const Row &b) {
        for (size_t i = 0; i < a.keys.size(); ++i)
            if (const int order = compare(a.keys[i], b.keys[i]))
                return (order < 0) != statement.order[static_cast<qsizetype>(i)].descending;
        return false;
    });
    m_fetched.reserve(rows.size());
    for (Row &row : rows)
        m_fetched.push_back(std::move(row.values));
    m_isFetched = true;
}

void RowCursor::readAll(qsizetype columns, const std::function<bool(const QVariantList &)> &row)
{
    QVariantList line(columns);
    while (next()) {
        for (int i = 0; i < line.size(); ++i)
            line[i] = value(i);
        if (!row(line))
            return;
    }
}

bool RowCursor::next()
{
    if (m_isFetched)
        return ++m_at < static_cast<qsizetype>(m_fetched.size());
    if (m_query->next())
        return true;
    if (m_query->lastError().isValid())
        throw errorOf(m_query->lastError());
    return false;
}

QVariant RowCursor::value(int column) const
{
    return m_isFetched ? m_fetched[m_at][column] : read(column);
}

QVariant RowCursor::read(int column) const
{
    if (m_query->isNull(column))
        return {};
    QVariant value = m_query->value(column);
    switch (value.typeId()) {
    case QMetaType::QDate:
    case QMetaType::QDateTime:
        return dateText(value);
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
        return value.toInt();
    default:
        return value;
    }
}

Connection::Connection() : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces)) {}

Connection::~Connection()
{
    Close();
}

bool Connection::isOpen() const
{
    return m_isOpen;
}

QString Connection::identityColumn() const
{
    return m_engine == Engine::Sqlite    ? QStringLiteral("rowid")
           : m_engine == Engine::MariaDb ? QStringLiteral("tradewick_id")
                                         : QString();
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
        m_database = QSqlDatabase::addDatabase("QSQLITE", m_name);
        m_database.setDatabaseName(path);
        m_database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=10000");
        if (!m_database.open())
            throw errorOf(m_database.lastError());
        addSqliteFunctions(m_database.driver()->handle());
    } else if (isMariaDb) {
        const MariaDbSource source = mariaDbSource(parts);
        m_engine = Engine::MariaDb;
        m_database = QSqlDatabase::addDatabase("QMYSQL", m_name);
        openMariaDb(m_database, source);
    } else {
        const SqlServerSource source = sqlServerSource(parts);
        if (!QSqlDatabase::isDriverAvailable("QODBC"))
            throw DataError(0, QStringLiteral("无法连接“%1”：请安装软件包 libqt6sql6-odbc。").arg(parts.dataSource));
        m_engine = Engine::SqlServer;
        m_database = QSqlDatabase::addDatabase("QODBC", m_name);
        openSqlServer(m_database, source);
    }
}

void Connection::overLink(bool repeatable, const std::function<void()> &action)
{
    if (m_depth > 0) {
        action();
        return;
    }
    for (bool again = false;; again = true) {
        try {
            if (m_isLost) {
                m_statements.clear();
                m_database.close();
                m_database = QSqlDatabase();
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
    m_statements.clear();
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
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
        if (m_engine == Engine::SqlServer) {
            rows = runOdbc(m_database, statement).changed;
            return;
        }
        rows = m_statements.run(m_database, statement)->numRowsAffected();
    });
    return rows;
}

qint64 Connection::insertBound(const BoundStatement &statement)
{
    qint64 identity = 0;
    if (identityColumn().isEmpty())
        executeBound(statement);
    else
        overLink(false, [&] { identity = m_statements.run(m_database, statement)->lastInsertId().toLongLong(); });
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
    overLink(true, [&] { cursor = std::make_unique<RowCursor>(m_database, statement, m_statements); });
    return cursor;
}

QVector<Values> Connection::rows(const QString &statement, const Values &values)
{
    QVector<Values> rows;
    QStringList names;
    read(
        statement, values,
        [&](const QStringList &columns) {
            for (const QString &column : columns)
                names.append(column.toLower());
        },
        [&](const QVariantList &line) {
            Values row;
            for (int i = 0; i < names.size(); ++i)
                row.insert(names[i], line[i]);
            rows.append(row);
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
    // Immediate: two desktops that both mean to write wait for each other here, not in the middle. A link that broke
    // while nothing was asked of it is made anew here; in the middle it ends the work. A driver of ODBC has
    // transactions of its own, which start without a word to the server: it is asked something first.
    overLink(true, [&] {
        control(m_engine == Engine::Sqlite ? "begin immediate" : m_engine == Engine::SqlServer ? "select 1" : "begin");
        if (m_engine == Engine::SqlServer && !m_database.transaction())
            throw errorOf(m_database.lastError());
    });
    m_depth = 1;
    ++m_transaction;
    std::vector<std::function<void()>> actions;
    try {
        work();
        if (m_engine != Engine::SqlServer)
            control("commit");
        else if (!m_database.commit())
            throw errorOf(m_database.lastError());
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
    if (m_engine == Engine::SqlServer)
        m_database.rollback();
    else
        QSqlQuery(m_database).exec("rollback");
}

void Connection::control(const char *word)
{
    if (m_engine == Engine::SqlServer) {
        runOdbc(m_database, {QLatin1String(word), {}});
        return;
    }
    QSqlQuery query(m_database);
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
    static const QHash<Engine, QString> columnsOfEngine{
        {Engine::Sqlite, "select name, type from pragma_table_info(?)"},
        {Engine::MariaDb,
         "select column_name, data_type from information_schema.columns where table_schema = database() "
         "and table_name = ? and extra not like '%INVISIBLE%' order by ordinal_position"},
        {Engine::SqlServer, columnsOfSqlServer},
    };
    Table table;
    readBound({columnsOfEngine[m_engine], {key}}, 2, [&table](const QVariantList &row) {
        const QString column = row[0].toString().toLower();
        table.columns.append(column);
        table.kinds.insert(column, kindOfDeclaredType(row[1].toString()));
        return true;
    });
    return *m_tables.insert(key, table);
}

QString Connection::uniqueColumnOf(const QString &name)
{
    if (m_engine != Engine::SqlServer)
        return {};
    const QString key = name.toLower();
    if (const auto found = m_uniqueColumns.constFind(key); found != m_uniqueColumns.constEnd())
        return *found;
    QString column;
    readBound({uniqueColumnOfSqlServer, {key}}, 1, [&column](const QVariantList &row) {
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
