#include "data/recordset.h"

#include "data/date_text.h"

#include <algorithm>

namespace tradewick
{

namespace
{

// Rows read around the one that is looked at, and how many are kept.
constexpr int rowsAtOnce = 64;
constexpr int rowsKept = 1024;

// The OLE DB error "the row was changed since it was read".
constexpr int changedSinceRead = -2147217864;

// A value as its column stores it; what no form of the column's kind fits goes to the database, which refuses it.
QVariant stored(const QVariant &value, ColumnKind kind)
{
    if (value.isNull())
        return {};
    const bool isText = value.typeId() == QMetaType::QString;
    const QString text = value.toString();
    switch (kind) {
    case ColumnKind::Number: {
        if (!isText)
            return value;
        if (text.trimmed().isEmpty())
            return {};
        bool isNumber = false;
        const double number = text.trimmed().toDouble(&isNumber);
        return isNumber ? QVariant(number) : value;
    }
    case ColumnKind::Date: {
        if (isText && text.trimmed().isEmpty())
            return {};
        return dateText(value);
    }
    case ColumnKind::Flag:
        return (isText ? text.trimmed().compare("true", Qt::CaseInsensitive) == 0 : value.toBool()) ? 1 : 0;
    default:
        return value;
    }
}

} // namespace

class Recordset::Impl
{
public:
    struct Pending {
        QVariantList values, original;
        bool isNew = false;
    };

    QString table; // empty: read whole and not writable
    QStringList columns;
    QVector<ColumnKind> kinds;
    QVector<qint64> keys; // identity of each row; rows not stored yet and rows read whole have negative ones
    QHash<qint64, QVariantList> rows;
    QHash<qint64, Pending> pending;
    qint64 nextTemporaryKey = -1;
    bool open = false;

    void fetchAround(Connection &connection, int row)
    {
        const int first = row / rowsAtOnce * rowsAtOnce;
        const int last = std::min<int>(first + rowsAtOnce, static_cast<int>(keys.size()));
        BoundStatement select{"select rowid, * from " + table + " where rowid in (", {}};
        for (int i = first; i < last; ++i) {
            if (keys[i] < 0)
                continue;
            select.text += select.parameters.isEmpty() ? "?" : ",?";
            select.parameters.append(keys[i]);
        }
        select.text += ")";
        if (rows.size() > rowsKept)
            rows.clear();
        connection.readBound(
            select, [](const QStringList &) {},
            [&](const QVariantList &line) {
                rows.insert(line[0].toLongLong(), line.mid(1));
                return true;
            });
        // A row that someone deleted meanwhile stands empty until the next refresh.
        for (int i = first; i < last; ++i)
            if (keys[i] >= 0 && !rows.contains(keys[i]))
                rows.insert(keys[i], QVariantList(columns.size()));
    }

    const QVariantList &row(Connection &connection, int at)
    {
        const qint64 key = keys[at];
        if (const auto found = pending.constFind(key); found != pending.constEnd())
            return found->values;
        if (!rows.contains(key))
            fetchAround(connection, at);
        return rows[key];
    }

    Pending &pendingRow(Connection &connection, int at)
    {
        const qint64 key = keys[at];
        if (!pending.contains(key)) {
            const QVariantList asRead = row(connection, at);
            pending.insert(key, {asRead, asRead, false});
        }
        return pending[key];
    }

    qint64 insert(Connection &connection, const Pending &row)
    {
        QStringList names, marks;
        QVariantList parameters;
        for (int i = 0; i < columns.size(); ++i) {
            if (row.values[i].isNull())
                continue;
            names.append(columns[i]);
            marks.append("?");
            parameters.append(stored(row.values[i], kinds[i]));
        }
        const QString into = "insert into " + table;
        return connection.insertBound(
            names.isEmpty()
                ? BoundStatement{into + " default values", {}}
                : BoundStatement{into + "(" + names.join(u',') + ") values(" + marks.join(u',') + ")", parameters});
    }

    // The row as it was read, whole: what another desktop changed in it no longer fits.
    void appendWhere(BoundStatement &statement, qint64 key, const QVariantList &original) const
    {
        statement.text += " where rowid = ?";
        statement.parameters.append(key);
        for (int i = 0; i < columns.size(); ++i) {
            statement.text += " and " + columns[i] + " is ?";
            statement.parameters.append(original[i]);
        }
    }

    void changeOneRow(Connection &connection, const BoundStatement &statement) const
    {
        if (connection.executeBound(statement) == 0)
            throw DataError(changedSinceRead,
                            QStringLiteral("该记录在读取之后已被其他用户修改或删除，没有覆盖；所录入的内容仍然保留。"));
    }

    void update(Connection &connection, qint64 key, const Pending &row) const
    {
        BoundStatement statement{"update " + table + " set ", {}};
        for (int i = 0; i < columns.size(); ++i) {
            const QVariant value = stored(row.values[i], kinds[i]);
            if (value == row.original[i] && value.isNull() == row.original[i].isNull())
                continue;
            statement.text += (statement.parameters.isEmpty() ? QString() : QString(", ")) + columns[i] + " = ?";
            statement.parameters.append(value);
        }
        if (statement.parameters.isEmpty())
            return;
        appendWhere(statement, key, row.original);
        changeOneRow(connection, statement);
    }
};

QVariant Field::value() const
{
    return m_set.valueAt(m_set.m_position, m_column);
}

QString Field::text() const
{
    return Recordset::text(value(), m_set.columnKind(m_column));
}

void Field::setValue(const QVariant &value) const
{
    m_set.setValueAt(m_set.m_position, m_column, value);
}

Recordset::Recordset(QObject *parent) : QObject(parent), m_impl(std::make_unique<Impl>()) {}

Recordset::~Recordset() = default;

void Recordset::Open(const QString &statement, const Values &values, const std::shared_ptr<Connection> &connection)
{
    Q_EMIT aboutToReset();
    m_impl = std::make_unique<Impl>();
    m_position = -1;
    m_afterDelete = false;
    m_connection = connection;
    Impl &set = *m_impl;
    try {
        set.table = connection->engine() == Engine::SqlServer ? QString() : plainTableOf(statement);
        if (!set.table.isEmpty())
            set.columns = connection->columnsOf(set.table);
        if (!set.columns.isEmpty()) {
            const ColumnKinds kinds = connection->kindsOf(set.table);
            for (const QString &column : std::as_const(set.columns))
                set.kinds.append(kinds.value(column));
            QString identities = statement;
            identities.replace(identities.indexOf(u'*'), 1, " rowid ");
            connection->readKeys(connection->bound(identities, values), set.keys);
        } else {
            set.table.clear();
            connection->read(
                statement, values,
                [&](const QStringList &columns) {
                    for (const QString &column : columns)
                        set.columns.append(column.toLower());
                    set.kinds.fill(ColumnKind::Unknown, columns.size());
                },
                [&](const QVariantList &row) {
                    set.keys.append(set.nextTemporaryKey);
                    set.rows.insert(set.nextTemporaryKey--, row);
                    return true;
                });
        }
        set.open = true;
    } catch (const DataError &) {
        m_impl = std::make_unique<Impl>();
        Q_EMIT reset();
        Q_EMIT currentChanged();
        throw;
    }
    m_position = set.keys.isEmpty() ? -1 : 0;
    Q_EMIT reset();
    Q_EMIT currentChanged();
}

void Recordset::Close()
{
    Q_EMIT aboutToReset();
    m_impl = std::make_unique<Impl>();
    m_position = -1;
    Q_EMIT reset();
    Q_EMIT currentChanged();
}

bool Recordset::isOpen() const
{
    return m_impl->open;
}

int Recordset::RecordCount() const
{
    return static_cast<int>(m_impl->keys.size());
}

bool Recordset::BOF() const
{
    return m_position < 0;
}

bool Recordset::EOF_() const
{
    return m_position >= RecordCount() || RecordCount() == 0;
}

void Recordset::setAbsolutePosition(int row)
{
    if (RecordCount() == 0)
        throw DataError(3021, QStringLiteral("没有当前记录"));
    row = std::clamp(row, -1, RecordCount());
    if (row == m_position)
        return;
    m_afterDelete = false;
    m_position = row;
    Q_EMIT currentChanged();
}

void Recordset::MoveFirst()
{
    setAbsolutePosition(0);
}

void Recordset::MoveLast()
{
    setAbsolutePosition(RecordCount() - 1);
}

void Recordset::MoveNext()
{
    setAbsolutePosition(m_afterDelete ? m_position : m_position + 1);
}

void Recordset::MovePrevious()
{
    setAbsolutePosition(m_position - 1);
}

int Recordset::columnIndex(const QString &column) const
{
    return static_cast<int>(m_impl->columns.indexOf(column.toLower()));
}

Field Recordset::Fields(const QString &column)
{
    const int index = columnIndex(column);
    if (index < 0)
        throw DataError(3265, QStringLiteral("记录集中没有“%1”列").arg(column));
    return {*this, index};
}

QStringList Recordset::columns() const
{
    return m_impl->columns;
}

ColumnKind Recordset::columnKind(int column) const
{
    return m_impl->kinds.value(column, ColumnKind::Unknown);
}

QVariant Recordset::valueAt(int row, int column) const
{
    if (row < 0 || row >= RecordCount())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    const QVariant value = m_impl->row(*m_connection, row).value(column);
    return columnKind(column) == ColumnKind::Flag && !value.isNull() && value.typeId() != QMetaType::QString
               ? QVariant(value.toBool())
               : value;
}

void Recordset::setValueAt(int row, int column, const QVariant &value)
{
    if (row < 0 || row >= RecordCount())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    if (m_impl->table.isEmpty())
        throw DataError(3251, QStringLiteral("该记录集不能修改"));
    m_impl->pendingRow(*m_connection, row).values[column] = value;
    Q_EMIT valueChanged(row, column);
}

QString Recordset::text(const QVariant &value, ColumnKind kind)
{
    if (value.isNull())
        return {};
    if (kind == ColumnKind::Date)
        return dateText(value);
    if (kind == ColumnKind::Flag)
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (value.typeId() == QMetaType::Double)
        return QString::number(value.toDouble(), 'g', 15);
    return value.toString();
}

void Recordset::AddNew()
{
    if (m_impl->table.isEmpty())
        throw DataError(3251, QStringLiteral("该记录集不能修改"));
    const int row = RecordCount();
    Q_EMIT rowAboutToBeInserted(row);
    const qint64 key = m_impl->nextTemporaryKey--;
    m_impl->keys.append(key);
    m_impl->pending.insert(key, {QVariantList(m_impl->columns.size()), {}, true});
    Q_EMIT rowInserted(row);
    m_afterDelete = false;
    m_position = row;
    Q_EMIT currentChanged();
}

void Recordset::Delete()
{
    if (m_position < 0 || EOF_())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    const qint64 key = m_impl->keys[m_position];
    if (key >= 0) {
        const auto pending = m_impl->pending.constFind(key);
        BoundStatement statement{"delete from " + m_impl->table, {}};
        m_impl->appendWhere(statement, key,
                            pending != m_impl->pending.constEnd() ? pending->original
                                                                  : m_impl->row(*m_connection, m_position));
        m_impl->changeOneRow(*m_connection, statement);
    }
    const int row = m_position;
    removeRow(row);
    m_position = row;
    m_afterDelete = true;
    Q_EMIT currentChanged();
}

// A view that shows the row moves its cursor, and with it the position, before the row goes; callers set it after.
void Recordset::removeRow(int row)
{
    Q_EMIT rowAboutToBeRemoved(row);
    m_impl->pending.remove(m_impl->keys[row]);
    m_impl->keys.removeAt(row);
    Q_EMIT rowRemoved(row);
}

void Recordset::UpdateBatch()
{
    Impl &set = *m_impl;
    if (set.pending.isEmpty())
        return;
    QHash<qint64, qint64> storedKeys;
    m_connection->transaction([&] {
        for (const qint64 key : std::as_const(set.keys)) {
            const auto pending = set.pending.constFind(key);
            if (pending == set.pending.constEnd())
                continue;
            if (pending->isNew)
                storedKeys.insert(key, set.insert(*m_connection, *pending));
            else
                set.update(*m_connection, key, *pending);
        }
        m_connection->onCommit([this, storedKeys] {
            for (qint64 &key : m_impl->keys) {
                if (!m_impl->pending.remove(key))
                    continue;
                m_impl->rows.remove(key);
                key = storedKeys.value(key, key);
            }
            Q_EMIT valueChanged(-1, -1);
        });
    });
}

void Recordset::CancelUpdate()
{
    if (m_position < 0 || EOF_())
        return;
    const qint64 key = m_impl->keys[m_position];
    const auto pending = m_impl->pending.constFind(key);
    if (pending == m_impl->pending.constEnd())
        return;
    if (!pending->isNew) {
        m_impl->pending.remove(key);
        Q_EMIT valueChanged(m_position, -1);
    } else {
        const int row = m_position;
        removeRow(row);
        m_position = std::min(row, RecordCount() - 1);
    }
    Q_EMIT currentChanged();
}

bool Recordset::hasPendingChanges() const
{
    return !m_impl->pending.isEmpty();
}

bool Recordset::isNew(int row) const
{
    return m_impl->pending.value(m_impl->keys.value(row)).isNew;
}

void Recordset::Find(const QString &column, const QVariant &value)
{
    const int index = columnIndex(column);
    if (index < 0)
        throw DataError(3265, QStringLiteral("记录集中没有“%1”列").arg(column));
    QVector<qint64> found;
    if (!m_impl->table.isEmpty()) {
        m_connection->readKeys(m_connection->bound("select rowid from " + m_impl->table + " where " +
                                                       m_impl->columns[index] + "='{value}'",
                                                   {{"value", value}}),
                               found);
        std::sort(found.begin(), found.end());
    }
    for (int row = std::max(m_position, 0); row < RecordCount(); ++row) {
        const bool match =
            m_impl->table.isEmpty()
                ? valueAt(row, index).toString().trimmed().compare(value.toString().trimmed(), Qt::CaseInsensitive) == 0
                : std::binary_search(found.begin(), found.end(), m_impl->keys[row]);
        if (match) {
            setAbsolutePosition(row);
            return;
        }
    }
    if (RecordCount() > 0)
        setAbsolutePosition(RecordCount());
}

} // namespace tradewick
