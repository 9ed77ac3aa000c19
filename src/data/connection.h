// A database connection, opened with an OLE DB connection string whatever engine stands behind it.
#pragma once

#include "data/data_error.h"
#include "data/row.h"
#include "data/statement.h"

#include <functional>
#include <memory>
#include <vector>

namespace tradewick
{

struct Dialect;
class RowCursor;

class Connection
{
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    // 3, client side, is the only location there is; kept because start-up sets it.
    int CursorLocation = 3;

    // Opens the database the string names: a provider of Jet, or a data source ending in .db, is an SQLite file that
    // must exist; mariadb://... is a MariaDB server; anything else is SQL Server through ODBC (see data/sql_server.h).
    // The remaining arguments are those of the interface and may stay empty. Throws DataError, the connection then is
    // closed. A link to a server that breaks later is made anew by the next action outside of a transaction; what only
    // reads is then repeated without a word, anything else throws DataError::connectionLost.
    void Open(const QString &connectionString, const QString &userId = {}, const QString &password = {},
              int options = -1);
    void Close();
    bool isOpen() const;
    Engine engine() const { return m_engine; }
    const Dialect &dialect() const;
    // The column, out of sight of "select *", that tells a row of a table from all others; empty where there is none.
    QString identityColumn() const;
    const QString &connectionString() const { return m_connectionString; }

    // Runs a statement without a result and gives the number of rows it changed. Throws DataError.
    qint64 Execute(const QString &statement, const Values &values = {});

    // Hands the rows of a select to `row` one by one, unbuffered, until it gives false; `columns` is called once before
    // the first, with a result of no rows too. Throws DataError.
    void read(const QString &statement, const Values &values,
              const std::function<void(const QStringList &columns)> &columns,
              const std::function<bool(const QVariantList &values)> &row);

    // The rows of a select, pulled instead of handed over (data/row_cursor.h). Throws DataError.
    std::unique_ptr<RowCursor> cursor(const QString &statement, const Values &values);

    // The rows of a select, whole; for lookups of a few rows. Throws DataError.
    QVector<Row> rows(const QString &statement, const Values &values = {});

    // Runs `work` as one transaction: all of it is stored, or, when it throws, nothing. Inside another transaction it
    // joins that one.
    void transaction(const std::function<void()> &work);
    // The running transaction's number, another for each that this connection runs; 0 outside of one.
    qint64 runningTransaction() const { return m_depth > 0 ? m_transaction : 0; }
    // Calls `action` when the running transaction is stored, never when it is undone; at once outside of one.
    void onCommit(std::function<void()> action);

    // Kinds of a table's or view's columns, read from the database once.
    ColumnKinds kindsOf(const QString &table);
    // Column names of a table or view in their order, lower case.
    QStringList columnsOf(const QString &table);
    // Whether rows can be written there: no view, and none of another name.
    bool isBaseTable(const QString &name);
    // The key column, lower case, that tells a record from another where the engine has no identities or gives one
    // away again; empty where there is none.
    QString uniqueColumnOf(const QString &table);

    // The statement as this engine gets it, and the same actions on statements that are bound already.
    BoundStatement bound(const QString &statement, const Values &values);
    qint64 executeBound(const BoundStatement &statement);
    qint64 insertBound(const BoundStatement &statement); // gives the new row's identity, if any
    // columns: how many of the result's columns are handed over, from the first.
    void readBound(const BoundStatement &statement, qsizetype columns,
                   const std::function<bool(const QVariantList &values)> &row);
    std::unique_ptr<RowCursor> cursorBound(const BoundStatement &statement);
    // Appends the first column of each row, whole numbers.
    void readKeys(const BoundStatement &statement, QVector<qint64> &keys);

    // The open connection of that string: the one that was opened with it and still lives, otherwise a new one.
    // Throws DataError.
    static std::shared_ptr<Connection> shared(const QString &connectionString);
    // Makes shared() find this connection under its string.
    static void share(const std::shared_ptr<Connection> &connection);

private:
    void openDatabase();
    // Runs `action` over a link that stands, made anew first where it broke. An action that is repeatable and finds
    // the link broken runs once more.
    void overLink(bool repeatable, const std::function<void()> &action);
    void undo();                    // the running transaction
    void control(const char *word); // runs a statement that is neither prepared nor made anew

    struct Table {
        QStringList columns;
        ColumnKinds kinds;
        bool isBase = false;
    };
    struct Link;
    const Table &table(const QString &name);

    QString m_name; // Qt's name of the connection
    QString m_connectionString;
    std::unique_ptr<Link> m_link;
    bool m_isOpen = false;
    bool m_isLost = false; // the link broke since
    Engine m_engine = Engine::Sqlite;
    int m_depth = 0; // of transactions
    qint64 m_transaction = 0;
    std::vector<std::function<void()>> m_onCommit;
    QHash<QString, Table> m_tables;
    QHash<QString, QString> m_uniqueColumns; // by table
};

} // namespace tradewick
