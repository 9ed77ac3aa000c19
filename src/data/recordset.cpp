#include "data/recordset.h"

#include "data/date_text.h"
#include "data/recordset_rows.h"

#include <algorithm>
#include <utility>

namespace tradewick
{

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
    auto read = std::make_shared<RecordsetRows>();
    const RecordsetRows nothing, &before = m_connection == connection ? *m_impl : nothing;
    m_connection = connection;
    try {
        read->read(*connection, statement, values, before);
        read->open = true;
    } catch (const DataError &) {
        Close();
        throw;
    }
    const int first = read->keys.isEmpty() ? -1 : 0;
    if (!read->holdsRowsOf(*m_impl)) {
        replace(std::move(read), first);
        return;
    }
    m_impl.swap(read);
    m_impl->shownBy = this;
    for (int at = 0; at < RecordCount(); ++at)
        if (m_impl->rows[m_impl->keys[at]] != read->rows[m_impl->keys[at]])
            Q_EMIT valueChanged(at, -1);
    m_afterDelete = false;
    m_position = first;
    Q_EMIT currentChanged();
}

void Recordset::Close()
{
    replace(std::make_shared<RecordsetRows>(), -1);
}

void Recordset::replace(std::shared_ptr<RecordsetRows> rows, int position)
{
    const bool othersWait = hasPendingChanges() || !rows->pending.isEmpty();
    Q_EMIT aboutToReset();
    m_impl = std::move(rows);
    m_impl->shownBy = this;
    m_position = position;
    m_afterDelete = false;
    Q_EMIT reset();
    Q_EMIT currentChanged();
    if (othersWait)
        Q_EMIT waitingChanged();
}

std::unique_ptr<Recordset> Recordset::putAside()
{
    auto aside = std::make_unique<Recordset>();
    aside->m_connection = m_connection;
    const std::shared_ptr<RecordsetRows> rows = m_impl;
    const int position = m_position;
    Close();
    aside->replace(rows, position);
    return aside;
}

void Recordset::takeBack(std::unique_ptr<Recordset> aside)
{
    m_connection = aside->m_connection;
    replace(aside->m_impl, aside->m_position);
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
    return m_position < 0 || RecordCount() == 0;
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
        throw DataError(DataError::noSuchColumn, QStringLiteral("记录集中没有“%1”列").arg(column));
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
    const bool waited = isWaiting(row);
    m_impl->pendingRow(*m_connection, row).values[column] = value;
    Q_EMIT valueChanged(row, column);
    if (!waited)
        Q_EMIT waitingChanged();
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
    Q_EMIT waitingChanged();
}

void Recordset::Delete()
{
    if (m_position < 0 || EOF_())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    try {
        m_impl->remove(*m_connection, this, m_position);
    } catch (DataError &error) {
        error.locate(this, m_position);
        throw;
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
    const qint64 key = m_impl->keys.takeAt(row);
    const bool waited = m_impl->pending.remove(key);
    m_impl->rows.remove(key);
    Q_EMIT rowRemoved(row);
    if (waited)
        Q_EMIT waitingChanged();
}

QVariant Recordset::storedValueAt(int row, int column) const
{
    const auto waiting = m_impl->pending.constFind(keyAt(row));
    return waiting == m_impl->pending.constEnd() ? valueAt(row, column)
           : waiting->isNew                      ? QVariant()
                                                 : waiting->original.value(column);
}

void Recordset::requireRow(int row)
{
    if (row < 0 || row >= RecordCount() || !m_impl->isFindable())
        return;
    const qint64 key = m_impl->keys[row];
    if (m_impl->pending.contains(key))
        return;
    const QVariantList &read = m_impl->row(*m_connection, row);
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

void Recordset::Find(const QString &column, const QVariant &value)
{
    const int index = columnIndex(column);
    if (index < 0)
        throw DataError(DataError::noSuchColumn, QStringLiteral("记录集中没有“%1”列").arg(column));
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
