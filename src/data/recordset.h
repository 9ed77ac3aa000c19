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
    // Stores all waiting rows in one transaction, all or none. Throws DataError when the database refuses one,
    // ConflictError when another desktop changed or deleted one since it was read; the rows then go on waiting.
    void UpdateBatch();
    // Throws ConflictError when the current row, stored and not changed here, is no more in the database: lines must
    // not be stored for it. Keeps it there until the running transaction ends.
    void requireCurrent();
    // Reads the current row again, as the database keeps it, unless it waits to be stored. Throws DataError.
    void Resync();
    // Answers a conflict: what stands there now counts as read, and `values`, one for each column, waits to be stored
    // over it; for a row that is no more they are stored as a new one. Without values the row is as it stands now, or
    // gone.
    void resolve(const Conflict &conflict, const std::optional<QVariantList> &values);
    // Drops the waiting new or changed current row.
    void CancelUpdate();
    bool hasPendingChanges() const;

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
    // A column's values in all rows; of a large table in one statement, without reading its rows. Throws DataError.
    QVariantList columnValues(int column) const;

    // Text of a value of that kind on the screen.
    static QString text(const QVariant &value, ColumnKind kind);

Q_SIGNALS:
    void aboutToReset();
    void reset();          // other rows: opened, closed
    void currentChanged(); // the position moved, or the row under it is another
    void valueChanged(int row, int column);
    void storedAsShown(); // waiting rows are in the database, where each looks as it was typed
    void rowAboutToBeInserted(int row);
    void rowInserted(int row);
    void rowAboutToBeRemoved(int row);
    void rowRemoved(int row);

private:
    friend class Field;
    void removeRow(int row);

    std::unique_ptr<RecordsetRows> m_impl;
    std::shared_ptr<Connection> m_connection;
    int m_position = -1;
    bool m_afterDelete = false; // MoveNext from a removed row steps onto the one that took its place
};

} // namespace tradewick
