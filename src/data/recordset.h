// A static, client-side set of records with a current row; rows added or changed wait until UpdateBatch.
#pragma once

#include "data/connection.h"

#include <QHash>
#include <QObject>
#include <QVector>

#include <memory>
#include <optional>

namespace tradewick
{

class Recordset;
class RecordsetRows;

// What stands in the way of a save: the row as it was read, as it stands in the database now, and as it was typed. It
// is thrown before anything is overwritten; Recordset::resolve answers it.
struct Conflict {
    QStringList columns; // lower case
    QVector<ColumnKind> kinds;
    QVariantList read, now, typed; // now: empty for a row that is no more; typed: empty for a row to be deleted
    Recordset *set = nullptr;
    qint64 key = 0;
};

class ConflictError : public DataError
{
public:
    explicit ConflictError(Conflict conflict);
    const Conflict &conflict() const { return m_conflict; }

private:
    Conflict m_conflict;
};

// One column of the current row.
class Field
{
public:
    // The stored or pending value; Null is an invalid QVariant. Throws DataError when there is no current row.
    QVariant value() const;
    // The value as a field on the screen shows it: Null is empty, dates in the one form, flags "True" or "False".
    QString text() const;
    // Sets the pending value of the current row.
    void setValue(const QVariant &value) const;

private:
    friend class Recordset;
    Field(Recordset &set, int column) : m_set(set), m_column(column) {}
    Recordset &m_set;
    int m_column;
};

class Recordset : public QObject
{
    Q_OBJECT

public:
    explicit Recordset(QObject *parent = nullptr);
    ~Recordset() override;

    static constexpr int adOpenStatic = 3;
    static constexpr int adLockUnspecified = -1;
    static constexpr int adLockOptimistic = 3;

    // Reads the statement's rows and stands on the first. A plain "select * from table" can be written and is read by
    // its rows' identities, the rows themselves following as they are looked at; anything else is read whole and
    // cannot be written. Throws DataError and then is closed. Where the same few rows are read again, waiting ones
    // apart, only valueChanged tells of those that differ.
    void Open(const QString &statement, const Values &values, const std::shared_ptr<Connection> &connection);
    void Close();
    bool isOpen() const;
    const std::shared_ptr<Connection> &connection() const { return m_connection; }

    int RecordCount() const;
    bool BOF() const;
    bool EOF_() const; // the plain name is a macro of the C library
    // Moves past either end leave BOF or EOF true; on an empty set they throw DataError.
    void MoveFirst();
    void MoveNext();
    void MovePrevious();
    void MoveLast();

    // Column by name without regard to case; throws DataError for a name the set lacks.
    Field Fields(const QString &column);
    QStringList columns() const;                  // lower case
    int columnIndex(const QString &column) const; // -1 when the set lacks it
    ColumnKind columnKind(int column) const;

    // A new row at the end becomes current and waits.
    void AddNew();
    // Removes the current row from the database at once; a row that never was stored, or that another desktop deleted
    // already, is just dropped. The next row takes its place, and MoveNext steps onto that one. Behind the last row EOF
    // is true. Throws ConflictError when another desktop changed the row since it was read.
    void Delete();
    // Stores all waiting rows in one transaction, all or none. Throws DataError, whose row() it is, when the database
    // refuses one or a value is none of its column's kind, ConflictError when another desktop changed or deleted one
    // since it was read; the rows then go on waiting. Inside a running transaction several such calls may follow each
    // other: what one of them sent is sent again only where it was changed since, and waits until all is stored.
    void UpdateBatch();
    // The same for one row by its position; one that does not wait stays as it is. Gives false where it stands there
    // already: the save before was carried out although the link broke before it was answered. Throws DataError for no
    // row.
    bool UpdateRow(int row);
    // Throws ConflictError when the row, stored and not changed here, is no more in the database: lines must
    // not be stored for it. Keeps it there until the running transaction ends.
    void requireRow(int row);
    // Reads the current row again, as the database keeps it, unless it waits to be stored. Throws DataError.
    void Resync();
    // Answers a conflict: what stands there now counts as read, and `values`, one for each column, waits to be stored
    // over it; for a row that is no more they are stored as a new one. Without values the row is as it stands now, or
    // gone.
    void resolve(const Conflict &conflict, const std::optional<QVariantList> &values);
    // Drops the waiting new or changed current row, or that of another position; the current record stays the current
    // one. Nothing happens where no row waits.
    void CancelUpdate();
    void CancelUpdate(int row);
    bool hasPendingChanges() const;
    // Positions of the rows that wait to be stored, in their order, and whether a row is one of them.
    QVector<int> waitingRows() const;
    bool isWaiting(int row) const;

    // What a row is told by as long as the set is open, wherever it stands: negative until it is stored (and, where
    // the engine has no identities, ever after); keyChanged tells when it becomes another. 0 for a position without a
    // row, and -1 for a key without one.
    qint64 keyAt(int row) const;
    int rowOfKey(qint64 key) const;

    // Gives a set that no view shows with all of this one's rows, those that wait included, its statement, values and
    // position; this one is closed. There the rows can go on waiting, or be stored, while this one shows others.
    std::unique_ptr<Recordset> putAside();
    // The reverse: shows the rows of a set that was put aside, as if opened anew, but at that set's position. What
    // waits here is dropped.
    void takeBack(std::unique_ptr<Recordset> aside);

    // The rows as they stand, those that wait included, to go back to; what both hold alike is held once.
    std::shared_ptr<const RecordsetRows> state() const;
    // Whether the rows wait as they did in that state of this set.
    bool isAt(const RecordsetRows &state) const;
    // Shows the rows of a state of this set again, with what waited then, without reading or writing. For states since
    // which nothing of the set was stored. Gives whether anything looks different.
    bool goBackTo(const RecordsetRows &state);

    // Searches forwards from the current row, that one included, for a row whose column equals the value by the rules
    // of comparison; EOF is true when there is none.
    void Find(const QString &column, const QVariant &value);

    // Lets every row that another desktop deleted wait to be stored anew, with the values that were read.
    void renewGone();

    // Makes new rows of all that wait, with that value in the column, and lets go of the others: lines that were typed
    // for one document go over to another and take nothing of the first along. Stored rows without a value there are
    // nobody else's: changes to them go on waiting as they are.
    void takeOver(int column, const QVariant &value);

    // Rows by position from 0, for grids. absolutePosition is -1 before the first row and RecordCount behind the last.
    int absolutePosition() const { return m_position; }
    void setAbsolutePosition(int row);
    QVariant valueAt(int row, int column) const;
    void setValueAt(int row, int column, const QVariant &value);
    bool isNew(int row) const; // added and not stored yet
    // A value as it was read, whatever waits to be stored over it; invalid for a new row.
    QVariant storedValueAt(int row, int column) const;
    // A column's values in all rows; of a large table in one statement, without reading its rows. Throws DataError.
    QVariantList columnValues(int column) const;

    // Text of a value of that kind on the screen.
    static QString text(const QVariant &value, ColumnKind kind);

Q_SIGNALS:
    void aboutToReset();
    void reset();          // other rows: opened, closed
    void currentChanged(); // the position moved, or the row under it is another
    void valueChanged(int row, int column);
    void storedAsShown();                       // waiting rows are in the database, where each looks as it was typed
    void waitingChanged();                      // other rows wait to be stored than before
    void keyChanged(qint64 before, qint64 now); // the row bears another key
    void rowAboutToBeInserted(int row);
    void rowInserted(int row);
    void rowAboutToBeRemoved(int row);
    void rowRemoved(int row);

private:
    friend class Field;
    void replace(std::shared_ptr<RecordsetRows> rows, int position);
    void removeRow(int row);
    void dropRow(int row);
    void renew(int row, QVariantList values);
    bool store(const QVector<int> &positions); // whether anything was sent
    void settle(qint64 transaction);

    std::shared_ptr<RecordsetRows> m_impl; // never null
    std::shared_ptr<Connection> m_connection;
    int m_position = -1;
    bool m_afterDelete = false; // MoveNext from a removed row steps onto the one that took its place
};

} // namespace tradewick
