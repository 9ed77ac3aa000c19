// A database connection, opened with an OLE DB connection string whatever engine stands behind it.
#pragma once

#include "data/data_error.h"
#include "data/prepared_statements.h"
#include "data/statement.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace tradewick
{

// The parts of a connection string that count.
struct ConnectionParts {
    QString provider, dataSource, userId, password, catalog;
};

// Reads "Provider=...;password=...;User ID=...;Initial Catalog=...;Data Source=...", keys without regard to case. A
// value may hold semicolons and equal signs as long as no known key follows them.
ConnectionParts connectionParts(const QString &connectionString);

// The rows of a select, read forwards once as they are asked for. Lives no longer than its connection is open.
// Whatever the engine, a date is ISO text, a flag a whole number, and texts that the statement orders by are ordered.
class RowCursor
{
public:
    // Throws DataError.
    RowCursor(const QSqlDatabase &database, const BoundStatement &statement, PreparedStatements &statements);
    const QStringList &columns(); // asked for only where they are wanted: the driver describes each at length
    // Steps onto the next row; false behind the last. Throws DataError when the rows break off.
    bool next();
    QVariant value(int column) const; // Null is an invalid QVariant
    // Hands the first `columns` values of each row that is left to `row` until it gives false.
    void readAll(qsizetype columns, const std::function<bool(const QVariantList &values)> &row);

private:
    QVariant read(int column) const;
    void sort(const BoundStatement &statement);

    PreparedStatements::Query m_query; // none over ODBC
    QStringList m_columns;
    int m_hiddenColumns;
    std::vector<QVariantList> m_fetched; // all rows, where they are not read as they are asked for
    qsizetype m_at = -1;                 // in m_fetched
    bool m_isFetched = false;
};

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

    // The rows of a select, pulled instead of handed over. Throws DataError.
    std::unique_ptr<RowCursor> cursor(const QString &statement, const Values &values);

    // The rows of a select, whole, each by lower-case column name; for lookups of a few rows. Throws DataError.
    QVector<Values> rows(const QString &statement, const Values &values = {});

    // Runs `work` as one transaction: all of it is stored, or, when it throws, nothing. Inside another transaction it
    // joins that one.
    void transaction(const std::function<void()> &work);
    // The running transaction's number, another for each that this connection runs; 0 outside of one.
    qint64 runningTransaction() const { return m_depth > 0 ? m_transaction : 0; }
    // Calls `action` when the running transaction is stored, never when it is undone; at once outside of one.
    void onCommit(std::function<void()> action);

    // Kinds of a table's or view's columns, read from the database once.
    ColumnKinds kindsOf(const QString &table);
    // The key column, lower case, that tells rows apart where there is no identity; empty where there is none either.
    QString uniqueColumnOf(const QString &table);
    // Column names of a table or view in their order, lower case.
    QStringList columnsOf(const QString &table);

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
    };
    const Table &table(const QString &name);

    QString m_name; // Qt's name of the connection
    QString m_connectionString;
    QSqlDatabase m_database;
    PreparedStatements m_statements;
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
