#include "support/test_database.h"

#include "common/globals.h"
#include "database/description.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace tradewick::test
{

namespace
{

QString runDatabaseProgram(const QStringList &arguments)
{
    QProcess process;
    process.start(binFolder() + "/tradewick-database", arguments);
    process.waitForFinished(60000);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

// Made once a test program by the very command that users run.
QString original(TestDatabase::Content content)
{
    static QTemporaryDir folder;
    const bool demonstration = content == TestDatabase::Demonstration;
    const QString path = folder.filePath(demonstration ? "demo.db" : "empty.db");
    if (QFile::exists(path))
        return path;
    runDatabaseProgram({demonstration ? "demo" : "create", path});
    return path;
}

QString sharedServer()
{
    QFile file(qEnvironmentVariable("TRADEWICK_TEST_SERVER"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
}

QString databaseOf(const QString &server, const QString &name)
{
    return QString(server).replace("/?", u'/' + name + u'?');
}

bool takeLock(Connection &connection, const QString &name, int seconds)
{
    return connection.rows("select get_lock('{name}', {seconds}) as taken", {{"name", name}, {"seconds", seconds}})
               .first()["taken"]
               .toInt() == 1;
}

bool hasTables(Connection &connection, const QString &name)
{
    return !connection.rows("select table_name from information_schema.tables where table_schema='{n}'", {{"n", name}})
                .isEmpty();
}

// The schema, made where the database has none; it outlives the test.
void makeSchema(Connection &connection, const QString &name)
{
    connection.executeBound({"create database if not exists " + name, {}});
    connection.executeBound({"use " + name, {}});
    if (!hasTables(connection, name))
        for (const QString &statement : ddl(Engine::MariaDb))
            connection.executeBound({statement, {}});
}

// All rows of the demonstration, in a database that later tests copy.
void makeDemonstration(Connection &connection, const QString &server)
{
    const QString name = QStringLiteral("tradewick_demonstration");
    ASSERT_TRUE(takeLock(connection, name, 60));
    connection.executeBound({"create database if not exists " + name, {}});
    if (!hasTables(connection, name)) {
        // made where the server is, for its rows name a picture beside it that has to outlive this test program
        const QDir folder = QFileInfo(qEnvironmentVariable("TRADEWICK_TEST_SERVER")).absoluteDir();
        const QString file = folder.filePath(name + ".db");
        QFile::remove(file);
        runDatabaseProgram({"demo", file});
        runDatabaseProgram({"copy", file, databaseOf(server, name)});
    }
    connection.rows("select release_lock('{name}') as done", {{"name", name}});
}

} // namespace

QString binFolder()
{
    const QString folder = qEnvironmentVariable("TRADEWICK_BIN");
    return folder.isEmpty() ? QCoreApplication::applicationDirPath() : folder;
}

QString findingsIn(const QString &dataSource)
{
    return runDatabaseProgram({"verify", dataSource});
}

TestDatabase::TestDatabase(Content content) : m_server(sharedServer())
{
    if (m_server.isEmpty()) {
        EXPECT_FALSE(qEnvironmentVariableIsSet("TRADEWICK_TEST_SERVER")) << "the server was not started";
        EXPECT_TRUE(QFile::copy(original(content), m_folder.filePath("test.db")));
    } else {
        useServer(content);
    }
    m_connection = std::make_shared<Connection>();
    m_connection->Open(connectionString());
    Connection::share(m_connection);
    gConnStr = connectionString();
    gConn = m_connection;
}

// Tests that run side by side take different databases of the server; making one is slow, emptying it is not.
void TestDatabase::useServer(Content content)
{
    m_reservation = std::make_unique<Connection>();
    m_reservation->Open(connectionStringOf(m_server));
    for (int number = 1; m_serverDatabase.isEmpty(); ++number)
        if (const QString name = QStringLiteral("tradewick_test_%1").arg(number); takeLock(*m_reservation, name, 0))
            m_serverDatabase = name;
    if (content == Demonstration) {
        makeDemonstration(*m_reservation, m_server);
        EXPECT_TRUE(takeLock(*m_reservation, m_serverDatabase, 0));
    }
    makeSchema(*m_reservation, m_serverDatabase);
    for (const Row &trigger : m_reservation->rows("select trigger_name as name from information_schema.triggers where "
                                                  "trigger_schema='{n}'",
                                                  {{"n", m_serverDatabase}}))
        m_reservation->executeBound({"drop trigger " + trigger["name"].toString(), {}});
    m_reservation->transaction([&] {
        for (const TableDescription &table : tableDescriptions()) {
            m_reservation->executeBound({"delete from " + table.name, {}});
            if (content == Demonstration)
                m_reservation->executeBound({"insert into " + table.name + " select * from tradewick_demonstration." +
                                                 table.name + " order by tradewick_id",
                                             {}});
        }
    });
}

TestDatabase::~TestDatabase()
{
    if (m_isRuined && isOnServer())
        m_reservation->executeBound({"drop database " + m_serverDatabase, {}});
    gConn.reset();
    gConnStr.clear();
}

QString TestDatabase::dataSource(const QString &user) const
{
    return isOnServer() ? databaseOf(m_server, m_serverDatabase).replace("root@", user + u'@')
                        : m_folder.filePath("test.db");
}

QString TestDatabase::connectionString() const
{
    return connectionStringOf(dataSource());
}

QVariant TestDatabase::value(const QString &statement, const Values &values)
{
    QVariant first;
    m_connection->read(
        statement, values, [](const QStringList &) {},
        [&](const QVariantList &row) {
            first = row.first();
            return false;
        });
    return first;
}

int TestDatabase::count(const QString &table)
{
    return value("select count(*) from " + table).toInt();
}

void TestDatabase::elsewhere(const QString &statement, const Values &values)
{
    Connection other;
    other.Open(connectionString());
    other.Execute(statement, values);
}

void TestDatabase::refuse(const QString &table, const QString &column, const QString &value)
{
    const QString name = "refuse_" + table + '_' + column;
    for (const char *when : {"insert", "update"})
        m_connection->executeBound(
            {QString(isOnServer() ? "create trigger %1_%2 before %2 on %3 for each row begin if new.%4 = '%5' then "
                                    "signal sqlstate '45000' set message_text = 'refused'; end if; end"
                                  : "create trigger %1_%2 before %2 on %3 when cast(new.%4 as text) in ('%5', '%5.0') "
                                    "begin select raise(abort, 'refused'); end")
                 .arg(name, when, table, column, value),
             {}});
}

void TestDatabase::refuseDeletion(const QString &table)
{
    m_connection->executeBound(
        {QString(isOnServer() ? "create trigger keep_%1 before delete on %1 for each row signal sqlstate '45000' set "
                                "message_text = 'refused'"
                              : "create trigger keep_%1 before delete on %1 begin select raise(abort, 'refused'); end")
             .arg(table),
         {}});
}

void TestDatabase::allowDeletion(const QString &table)
{
    m_connection->executeBound({"drop trigger keep_" + table, {}});
}

void TestDatabase::drop(const QString &table)
{
    m_isRuined = true;
    m_connection->executeBound({"drop table " + table, {}});
}

} // namespace tradewick::test
