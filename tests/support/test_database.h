// A temporary database of the whole schema, shared connection set as start-up sets it. It is an SQLite file, or, where
// the environment's TRADEWICK_TEST_SERVER names a file with a server in it, a database of that server.
#pragma once

#include "data/connection.h"

#include <QTemporaryDir>

#include <memory>

namespace tradewick::test
{

class TestDatabase
{
public:
    enum Content { Empty, Demonstration };
    explicit TestDatabase(Content content = Empty);
    ~TestDatabase();

    Connection &connection() { return *m_connection; }
    bool isOnServer() const { return !m_serverDatabase.isEmpty(); }
    // What the settings name the database by: data source, optionally with a user of the server, and catalog.
    QString dataSource(const QString &user = "root") const;
    QString catalog() const { return isOnServer() ? m_serverDatabase : QStringLiteral("trade"); }
    QString connectionString() const;

    // First column of the first row, invalid without a row.
    QVariant value(const QString &statement, const Values &values = {});
    int count(const QString &table);
    // One statement through another connection, as another desktop would run it.
    void elsewhere(const QString &statement, const Values &values = {});
    // The database refuses any row of the table in which the column has that value, with "refused".
    void refuse(const QString &table, const QString &column, const QString &value);
    // The database refuses to delete any row of the table, with "refused", or does so again.
    void refuseDeletion(const QString &table);
    void allowDeletion(const QString &table);
    // The database goes on without the table.
    void drop(const QString &table);

private:
    void useServer(Content content);

    QTemporaryDir m_folder;
    std::unique_ptr<Connection> m_reservation; // holds the database of the server for this test
    QString m_server, m_serverDatabase;
    bool m_isRuined = false;
    std::shared_ptr<Connection> m_connection;
};

// The folder of the built programs.
QString binFolder();

// What "tradewick-database verify" says of a database; empty for a sound one.
QString findingsIn(const QString &dataSource);

} // namespace tradewick::test
