#include "support/test_database.h"

#include "common/globals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

namespace tradewick::test
{

namespace
{

// Made once a test program by the very command that users run.
QString original(TestDatabase::Content content)
{
    static QTemporaryDir folder;
    const bool demonstration = content == TestDatabase::Demonstration;
    const QString path = folder.filePath(demonstration ? "demo.db" : "empty.db");
    if (QFile::exists(path))
        return path;
    QProcess process;
    process.start(binFolder() + "/tradewick-database", {demonstration ? "demo" : "create", path});
    process.waitForFinished(60000);
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return path;
}

} // namespace

QString binFolder()
{
    const QString folder = qEnvironmentVariable("TRADEWICK_BIN");
    return folder.isEmpty() ? QCoreApplication::applicationDirPath() : folder;
}

TestDatabase::TestDatabase(Content content)
{
    EXPECT_TRUE(QFile::copy(original(content), path()));
    m_connection = std::make_shared<Connection>();
    m_connection->Open(connectionString());
    Connection::share(m_connection);
    gConnStr = connectionString();
    gConn = m_connection;
}

TestDatabase::~TestDatabase()
{
    gConn.reset();
    gConnStr.clear();
}

QString TestDatabase::connectionString() const
{
    return "Provider=SQLOLEDB.1;Persist Security Info=True;password=;User ID=;Initial Catalog=;Data Source=" + path();
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

} // namespace tradewick::test
