// A temporary database of the whole schema, shared connection set as start-up sets it.
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
    QString path() const { return m_folder.filePath("test.db"); }
    QString connectionString() const;

    // First column of the first row, invalid without a row.
    QVariant value(const QString &statement, const Values &values = {});
    int count(const QString &table);
    // One statement through another connection, as another desktop would run it.
    void elsewhere(const QString &statement, const Values &values = {});

private:
    QTemporaryDir m_folder;
    std::shared_ptr<Connection> m_connection;
};

// The folder of the built programs.
QString binFolder();

} // namespace tradewick::test
