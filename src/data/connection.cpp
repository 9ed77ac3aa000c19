#include "data/connection.h"

#include "data/sqlite_functions.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

namespace tradewick
{

namespace
{

DataError errorOf(const QSqlError &error)
{
    QString text = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    // What a clerk can put right is said in words first.
    if (text.startsWith("UNIQUE constraint failed"))
        text.prepend(QStringLiteral("编号重复，数据库中已有相同的记录。\n"));
    else if (text.startsWith("CHECK constraint failed"))
        text.prepend(QStringLiteral("录入的内容不是该栏所要求的数字或日期。\n"));
    return {error.nativeErrorCode().toInt(), text};
}

void run(QSqlQuery &query, const BoundStatement &statement)
{
    if (!query.prepare(statement.text))
        throw errorOf(query.lastError());
    // A null QString would be stored as Null; Null is an invalid QVariant and nothing else.
    for (const QVariant &value : statement.parameters)
        query.addBindValue(value.typeId() == QMetaType::QString && value.toString().isNull() ? QVariant(QString(""))
                                                                                             : value);
    if (!query.exec())
        throw errorOf(query.lastError());
}

ColumnKind kindOfDeclaredType(const QString &type)
{
    static const QHash<QString, ColumnKind> kinds{
        {"text", ColumnKind::Text},       {"varchar", ColumnKind::Text},  {"longtext", ColumnKind::Text},
        {"mediumtext", ColumnKind::Text}, {"real", ColumnKind::Number},   {"double", ColumnKind::Number},
        {"integer", ColumnKind::Number},  {"int", ColumnKind::Number},    {"numeric", ColumnKind::Number},
        {"date", ColumnKind::Date},       {"datetime", ColumnKind::Date}, {"boolean", ColumnKind::Flag},
        {"tinyint", ColumnKind::Flag},    {"nvarchar", ColumnKind::Text}, {"float", ColumnKind::Number},
        {"bit", ColumnKind::Flag},
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

RowCursor::RowCursor(const QSqlDatabase &database, const BoundStatement &statement) : m_query(database)
{
    m_query.setForwardOnly(true);
    run(m_query, statement);
    const QSqlRecord record = m_query.record();
    for (int i = 0; i < record.count(); ++i)
        m_columns.append(record.fieldName(i));
}

bool RowCursor::next()
{
    if (m_query.next())
        return true;
    if (m_query.lastError().isValid())
        throw errorOf(m_query.lastError());
    return false;
}

QVariant RowCursor::value(int column) const
{
    return m_query.isNull(column) ? QVariant() : m_query.value(column);
}

Connection::Connection() : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces)) {}

Connection::~Connection()
{
    Close();
}

bool Connection::isOpen() const
{
    return m_database.isOpen();
}

void Connection::Open(const QString &connectionString, const QString &, const QString &, int)
{
    Close();
    m_connectionString = connectionString;
    const ConnectionParts parts = connectionParts(connectionString);
    const QString path = QDir::fromNativeSeparators(QString(parts.dataSource).replace(u'\\', u'/'));
    if (parts.provider.startsWith("Microsoft.Jet", Qt::CaseInsensitive) || path.endsWith(".db", Qt::CaseInsensitive))
        openSqlite(path);
    else
        throw DataError(0, QStringLiteral("无法连接“%1”：没有该服务器的驱动程序").arg(parts.dataSource));
}

void Connection::openSqlite(const QString &path)
{
    if (!QFileInfo(path).isFile())
        throw DataError(0, QStringLiteral("数据库文件“%1”不存在").arg(path));
    m_engine = Engine::Sqlite;
    m_database = QSqlDatabase::addDatabase("QSQLITE", m_name);
    m_database.setDatabaseName(path);
    m_database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=10000");
    if (!m_database.open()) {
        const DataError error = errorOf(m_database.lastError());
        Close();
        throw error;
    }
    addSqliteFunctions(m_database.driver()->handle());
}

void Connection::Close()
{
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
    m_tables.clear();
    m_onCommit.clear();
    m_depth = 0;
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
    QSqlQuery query(m_database);
    run(query, statement);
    return query.numRowsAffected();
}

qint64 Connection::insertBound(const BoundStatement &statement)
{
    QSqlQuery query(m_database);
    run(query, statement);
    return query.lastInsertId().toLongLong();
}

void Connection::readKeys(const BoundStatement &statement, QVector<qint64> &keys)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    run(query, statement);
    while (query.next())
        keys.append(query.value(0).toLongLong());
    if (query.lastError().isValid())
        throw errorOf(query.lastError());
}

void Connection::read(const QString &statement, const Values &values,
                      const std::function<void(const QStringList &)> &columns,
                      const std::function<bool(const QVariantList &)> &row)
{
    readBound(bound(statement, values), columns, row);
}

void Connection::readBound(const BoundStatement &statement, const std::function<void(const QStringList &)> &columns,
                           const std::function<bool(const QVariantList &)> &row)
{
    RowCursor rows(m_database, statement);
    columns(rows.columns());
    QVariantList line(rows.columns().size());
    while (rows.next()) {
        for (int i = 0; i < line.size(); ++i)
            line[i] = rows.value(i);
        if (!row(line))
            return;
    }
}

std::unique_ptr<RowCursor> Connection::cursor(const QString &statement, const Values &values)
{
    return std::make_unique<RowCursor>(m_database, bound(statement, values));
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
    const auto control = [this](const char *word) {
        QSqlQuery query(m_database);
        if (!query.exec(QLatin1String(word)))
            throw errorOf(query.lastError());
    };
    // Immediate: two desktops that both mean to write wait for each other here, not in the middle.
    control(m_engine == Engine::Sqlite ? "begin immediate" : "begin");
    m_depth = 1;
    std::vector<std::function<void()>> actions;
    try {
        work();
        control("commit");
        m_depth = 0;
        actions.swap(m_onCommit);
    } catch (...) {
        m_depth = 0;
        m_onCommit.clear();
        QSqlQuery(m_database).exec("rollback");
        throw;
    }
    for (const auto &action : actions)
        action();
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
    QSqlQuery query(m_database);
    run(query, {"select name, type from pragma_table_info(?)", {key}});
    while (query.next()) {
        const QString column = query.value(0).toString().toLower();
        table.columns.append(column);
        table.kinds.insert(column, kindOfDeclaredType(query.value(1).toString()));
    }
    return *m_tables.insert(key, table);
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
