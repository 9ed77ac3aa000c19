#include "data/recordset.h"

#include "data/date_text.h"
#include "data/recordset_rows.h"

#include <algorithm>
#include <utility>

namespace tradewick
{

namespace
{

constexpr qsizetype toldOneByOne = 20;

} // namespace

ConflictError::ConflictError(Conflict conflict)
    : DataError(changedSinceRead,
                QStringLiteral("该记录在读取之后已被其他用户修改或删除，没有覆盖；所录入的内容仍然保留。")),
      m_conflict(std::move(conflict))
{
}

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

Recordset::Recordset(QObject *parent) : QObject(parent), m_impl(std::make_unique<RecordsetRows>()) {}

Recordset::~Recordset() = default;

void Recordset::Open(const QString &statement, const Values &values, const std::shared_ptr<Connection> &connection)
{
    auto read = std::make_unique<RecordsetRows>();
    const RecordsetRows nothing, &before = m_connection == connection ? *m_impl : nothing;
    m_connection = connection;
    try {
        read->read(*connection, statement, values, before);
        read->open = true;
    } catch (const DataError &) {
        Close();
        throw;
    }
    m_afterDelete = false;
    const int first = read->keys.isEmpty() ? -1 : 0;
    if (read->holdsRowsOf(*m_impl)) {
        m_impl.swap(read);
        for (int at = 0; at < RecordCount(); ++at)
            if (m_impl->rows[m_impl->keys[at]] != read->rows[m_impl->keys[at]])
                Q_EMIT valueChanged(at, -1);
        m_position = first;
    } else {
        Q_EMIT aboutToReset();
        m_impl = std::move(read);
        m_position = first;
        Q_EMIT reset();
    }
    Q_EMIT currentChanged();
}

void Recordset::Close()
{
    Q_EMIT aboutToReset();
    m_impl = std::make_unique<RecordsetRows>();
    m_position = -1;
    m_afterDelete = false;
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
    setAbsolutePosition(std::exchange(m_afterDelete, false) ? m_position : m_position + 1);
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

QVariantList Recordset::columnValues(int column) const
{
    return m_impl->columnValues(*m_connection, column);
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
    m_impl->pending.insert(key, {QVariantList(m_impl->columns.size()), {}, true, 0});
    Q_EMIT rowInserted(row);
    m_afterDelete = false;
    m_position = row;
    Q_EMIT currentChanged();
}

void Recordset::Delete()
{
    if (m_position < 0 || EOF_())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    m_impl->remove(*m_connection, this, m_position);
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
    RecordsetRows &set = *m_impl;
    if (set.pending.isEmpty())
        return;
    QHash<qint64, qint64> storedKeys;
    m_connection->transaction([&] {
        const QVector<int> waiting = set.waiting();
        for (const int at : waiting) {
            const qint64 key = set.keys[at];
            if (set.pending[key].isNew)
                storedKeys.insert(key, set.storeNew(*m_connection, key));
            else
                set.storeChanged(*m_connection, this, key);
        }
        m_connection->onCommit([this, storedKeys] {
            QVector<int> changed;
            const QVector<int> stored = m_impl->waiting();
            for (const int at : stored) {
                qint64 &key = m_impl->keys[at];
                const RecordsetRows::Pending row = m_impl->pending.take(key);
                if (!m_impl->looksAlike(row.values, row.written))
                    changed.append(at);
                m_impl->rows.remove(key);
                if (!m_impl->identity.isEmpty()) {
                    key = storedKeys.value(key, key);
                    m_impl->asWritten.insert(key);
                }
                m_impl->rows.insert(key, row.written);
            }
            if (changed.isEmpty())
                Q_EMIT storedAsShown();
            // Views look at one row more quickly than at all.
            if (changed.size() > toldOneByOne)
                changed = {-1};
            for (const int at : std::as_const(changed))
                Q_EMIT valueChanged(at, -1);
        });
    });
}

void Recordset::requireCurrent()
{
    if (BOF() || EOF_() || !m_impl->isFindable())
        return;
    const qint64 key = m_impl->keys[m_position];
    if (m_impl->pending.contains(key))
        return;
    const QVariantList &read = m_impl->row(*m_connection, m_position);
    if (m_impl->now(*m_connection, key, true).isEmpty())
        throw ConflictError({m_impl->columns, m_impl->kinds, read, {}, read, this, key});
}

void Recordset::Resync()
{
    if (BOF() || EOF_() || !m_impl->isFindable())
        return;
    const qint64 key = m_impl->keys[m_position];
    if (m_impl->pending.contains(key) || !m_impl->rows.contains(key))
        return; // one not read yet is read when it is looked at
    const QVariantList now = m_impl->now(*m_connection, key);
    m_impl->asWritten.remove(key);
    if (now.isEmpty() || now == m_impl->rows[key])
        return;
    m_impl->rows.insert(key, now);
    Q_EMIT valueChanged(m_position, -1);
}

void Recordset::resolve(const Conflict &conflict, const std::optional<QVariantList> &values)
{
    const auto row = static_cast<int>(m_impl->keys.indexOf(conflict.key));
    if (row < 0)
        return;
    m_impl->pending.remove(conflict.key);
    m_impl->rows.remove(conflict.key);
    if (conflict.now.isEmpty() && !values) {
        removeRow(row);
        m_position = std::min(m_position, RecordCount() - 1);
    } else if (conflict.now.isEmpty()) {
        const qint64 key = m_impl->nextTemporaryKey--;
        m_impl->keys[row] = key;
        m_impl->pending.insert(key, {*values, {}, true, 0});
    } else {
        m_impl->rows.insert(conflict.key, conflict.now);
        if (values)
            m_impl->pending.insert(conflict.key, {*values, conflict.now, false, 0});
    }
    Q_EMIT valueChanged(-1, -1);
    Q_EMIT currentChanged();
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

void Recordset::renewGone()
{
    RecordsetRows &set = *m_impl;
    for (qint64 &key : set.keys) {
        const auto read = set.rows.constFind(key);
        if (read == set.rows.constEnd() || set.identity.isEmpty() || !set.now(*m_connection, key).isEmpty())
            continue;
        const QVariantList values = set.pending.contains(key) ? set.pending.take(key).values : *read;
        key = set.nextTemporaryKey--;
        set.pending.insert(key, {values, {}, true, 0});
    }
    Q_EMIT valueChanged(-1, -1);
}

void Recordset::takeOver(int column, const QVariant &value)
{
    for (int row = RecordCount() - 1; row >= 0; --row) {
        qint64 &key = m_impl->keys[row];
        if (!m_impl->pending.contains(key)) {
            removeRow(row);
            continue;
        }
        const RecordsetRows::Pending &waiting = m_impl->pending[key];
        if (!waiting.isNew && waiting.original[column].toString().isEmpty())
            continue;
        QVariantList values = m_impl->pending.take(key).values;
        values[column] = value;
        key = m_impl->nextTemporaryKey--;
        m_impl->pending.insert(key, {values, {}, true, 0});
    }
    m_position = std::min(m_position, RecordCount() - 1);
    Q_EMIT valueChanged(-1, -1);
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
    if (!m_impl->identity.isEmpty()) {
        m_connection->readKeys(m_connection->bound("select " + m_impl->identity + " from " + m_impl->table + " where " +
                                                       m_impl->columns[index] + "='{value}'",
                                                   {{"value", value}}),
                               found);
        std::sort(found.begin(), found.end());
    }
    for (int row = std::max(m_position, 0); row < RecordCount(); ++row) {
        const bool match =
            m_impl->identity.isEmpty()
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
