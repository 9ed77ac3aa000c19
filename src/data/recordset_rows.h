// The rows of a record set: which there are, what was read of them, what waits to be stored, and the statements that
// read and write them. Recordset alone uses it.
#pragma once

#include "data/recordset.h"

#include <QSet>

namespace tradewick
{

class RecordsetRows
{
public:
    struct Pending {
        QVariantList values, original;
        bool isNew = false;
        // Under which key the row was written when the link broke before the server answered: it may be stored.
        qint64 attempted = 0;
        // When the row was sent last: the values, the form in which they were, and under which key and in which
        // transaction it is then stored.
        QVariantList sent{}, written{};
        qint64 storedKey = 0, sentIn = 0;
    };

    QString table;    // empty: read whole and not writable
    QString identity; // column; empty where the engine has none: rows are read whole and told apart by their values
    // By which a row without identity is found again (none: it counts as gone when it differs), and an identity that
    // was given away again is noticed.
    int uniqueColumn = -1;
    QStringList columns;
    QVector<ColumnKind> kinds;
    QVector<qint64> keys; // identity of each row; rows not stored yet and rows read whole have negative ones
    QHash<qint64, QVariantList> rows;
    QHash<qint64, QVariant> letGo; // keys in the unique column of rows that were read and not kept
    QSet<qint64> asWritten;        // rows that stand as they were sent; the database may keep them rounded or cut
    QHash<qint64, Pending> pending;
    qint64 nextTemporaryKey = -1;
    bool open = false;
    Recordset *shownBy = nullptr; // whose rows these are

    // All throw DataError.
    //   before: what the same connection read last; the same statement is not looked at anew.
    void read(Connection &connection, const QString &statement, const Values &values, const RecordsetRows &before);
    const QVariantList &row(Connection &connection, int at);
    // The row as the database keeps it: read again when it stands as it was written.
    const QVariantList &rowAsRead(Connection &connection, int at);
    QVariantList columnValues(Connection &connection, int column);
    Pending &pendingRow(Connection &connection, int at);
    // The row as it stands in the database at this moment, empty when it is no more; held until the transaction ends.
    QVariantList now(Connection &connection, qint64 key, bool hold = false) const;
    // Whether the other set holds the same rows, all at hand and none waiting, so that only values can differ.
    bool holdsRowsOf(const RecordsetRows &other) const;
    // Whether now() can tell.
    bool isFindable() const { return !identity.isEmpty() || uniqueColumn >= 0; }
    // Positions of the rows that wait, in their order. New rows stand at the end, so that a register of 100,000 is
    // hardly looked through for one.
    QVector<int> waiting() const;
    bool looksAlike(const QVariantList &one, const QVariantList &other) const; // on the screen

    // Sends a waiting row, inside of a transaction; one that this transaction sent before only where it was changed
    // since. Gives false for a new row that is found there. Throws ConflictError through `set`.
    bool store(Connection &connection, Recordset *set, qint64 key);
    void remove(Connection &connection, Recordset *set, int at);

private:
    QString m_statement; // that was read, and with what
    Values m_values;
    BoundStatement m_few; // identities and rows of the statement in one; empty where they come apart

    BoundStatement selectRows() const;
    QVariant knownKey(const Connection &connection, qint64 key) const; // in the unique column; Null: not read yet
    bool isRecord(const QVariant &knownKey, const QVariantList &row) const;
    void examine(Connection &connection);
    bool readFew(Connection &connection);
    void fetchAround(Connection &connection, int row);
    QVariantList storedForm(const Pending &row) const; // what an insert or update makes of the values
    qint64 insert(Connection &connection, const Pending &row) const;
    bool storeNew(Connection &connection, qint64 key); // gives whether it stood there already
    void storeChanged(Connection &connection, Recordset *set, qint64 key, const QVariantList &original);
    bool isSent(const Connection &connection, const Pending &row) const;
    void appendWhere(const Connection &connection, BoundStatement &statement, qint64 key,
                     const QVariantList &original) const;
    bool changeOneRow(Connection &connection, const QString &verb, const QString &rest, const QVariantList &parameters,
                      qint64 key, const QVariantList &original) const;
};

} // namespace tradewick
