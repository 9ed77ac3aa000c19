// What waits in a record set: storing it, dropping it, and answers to what stands in the way.
#include "data/recordset_rows.h"

#include <algorithm>

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

bool Recordset::hasPendingChanges() const
{
    return !m_impl->pending.isEmpty();
}

QVector<int> Recordset::waitingRows() const
{
    return m_impl->waiting();
}

bool Recordset::isWaiting(int row) const
{
    return row >= 0 && row < RecordCount() && m_impl->pending.contains(m_impl->keys[row]);
}

bool Recordset::isNew(int row) const
{
    return m_impl->pending.value(m_impl->keys.value(row)).isNew;
}

qint64 Recordset::keyAt(int row) const
{
    return m_impl->keys.value(row);
}

int Recordset::rowOfKey(qint64 key) const
{
    return static_cast<int>(m_impl->keys.lastIndexOf(key)); // what is asked for is mostly new, and stands at the end
}

void Recordset::UpdateBatch()
{
    store(waitingRows());
}

bool Recordset::UpdateRow(int row)
{
    if (row < 0 || row >= RecordCount())
        throw DataError(3021, QStringLiteral("没有当前记录"));
    return isWaiting(row) && store({row});
}

bool Recordset::store(const QVector<int> &positions)
{
    if (positions.isEmpty())
        return false;
    bool isAny = false;
    m_connection->transaction([&] {
        // Until then the rows may have been put aside, or let go of.
        m_connection->onCommit([rows = std::weak_ptr(m_impl), transaction = m_connection->runningTransaction()] {
            if (const auto kept = rows.lock(); kept && kept->shownBy)
                kept->shownBy->settle(transaction);
        });
        for (const int at : positions) {
            try {
                isAny = m_impl->store(*m_connection, this, m_impl->keys[at]) || isAny;
            } catch (DataError &error) {
                error.locate(this, at);
                throw;
            }
        }
    });
    return isAny;
}

// The rows that the transaction sent are in the database. One that was typed into since it was sent goes on waiting.
void Recordset::settle(qint64 transaction)
{
    const std::shared_ptr<RecordsetRows> set = m_impl;
    QVector<int> changed;
    QVector<std::pair<qint64, qint64>> rekeyed;
    bool isAny = false;
    for (const int at : set->waiting()) {
        qint64 &key = set->keys[at];
        if (set->pending[key].sentIn != transaction)
            continue;
        isAny = true;
        const RecordsetRows::Pending row = set->pending.take(key);
        if (!set->looksAlike(row.values, row.written))
            changed.append(at);
        set->rows.remove(key);
        if (row.storedKey != key)
            rekeyed.append({key, row.storedKey});
        key = row.storedKey;
        if (!set->identity.isEmpty())
            set->asWritten.insert(key);
        set->rows.insert(key, row.written);
        if (row.values != row.sent)
            set->pending.insert(key, {row.values, row.written, false});
    }
    if (!isAny) // an earlier call in the same transaction told of them
        return;
    for (const auto &[before, now] : std::as_const(rekeyed))
        Q_EMIT keyChanged(before, now);
    if (changed.isEmpty())
        Q_EMIT storedAsShown();
    // Views look at one row more quickly than at all.
    if (changed.size() > toldOneByOne)
        changed = {-1};
    for (const int at : std::as_const(changed))
        Q_EMIT valueChanged(at, -1);
    Q_EMIT waitingChanged();
}

std::shared_ptr<const RecordsetRows> Recordset::state() const
{
    return std::make_shared<RecordsetRows>(*m_impl);
}

bool Recordset::isAt(const RecordsetRows &state) const
{
    const auto isSame = [](const QVariant &one, const QVariant &other) {
        return one.typeId() == other.typeId() && one == other;
    };
    if (m_impl->keys != state.keys || m_impl->pending.size() != state.pending.size())
        return false;
    for (auto now = m_impl->pending.cbegin(); now != m_impl->pending.cend(); ++now) {
        const auto then = state.pending.constFind(now.key());
        if (then != state.pending.cend() && now->values.isSharedWith(then->values))
            continue;
        if (then == state.pending.cend() ||
            !std::equal(now->values.cbegin(), now->values.cend(), then->values.cbegin(), then->values.cend(), isSame))
            return false;
    }
    return true;
}

bool Recordset::goBackTo(const RecordsetRows &state)
{
    const bool sameRows = m_impl->keys == state.keys;
    if (!sameRows) {
        const QSet<qint64> then(state.keys.cbegin(), state.keys.cend());
        QVector<qint64> kept = m_impl->keys;
        kept.removeIf([&](qint64 key) { return !then.contains(key); });
        if (kept != state.keys) { // a row comes back
            auto rows = std::make_shared<RecordsetRows>(state);
            rows->nextTemporaryKey = std::min(rows->nextTemporaryKey, m_impl->nextTemporaryKey);
            replace(rows, std::min(std::max(m_position, 0), static_cast<int>(rows->keys.size()) - 1));
            return true;
        }
        for (int row = RecordCount() - 1; row >= 0; --row)
            if (!then.contains(m_impl->keys[row]))
                removeRow(row);
        m_position = std::min(m_position, RecordCount() - 1);
        m_afterDelete = false;
    }
    const RecordsetRows before = *m_impl;
    *m_impl = state;
    m_impl->shownBy = this;
    m_impl->nextTemporaryKey = std::min(before.nextTemporaryKey, state.nextTemporaryKey);
    QSet<qint64> keys(before.pending.keyBegin(), before.pending.keyEnd());
    keys.unite(QSet<qint64>(state.pending.keyBegin(), state.pending.keyEnd()));
    QVector<qint64> changed;
    for (const qint64 key : std::as_const(keys)) {
        const auto one = before.pending.value(key), other = state.pending.value(key);
        const QVariantList &now = before.pending.contains(key) ? one.values : other.original,
                           &then = state.pending.contains(key) ? other.values : one.original;
        if (now.size() != then.size() || !state.looksAlike(now, then))
            changed.append(key);
    }
    if (changed.size() > toldOneByOne)
        Q_EMIT valueChanged(-1, -1);
    else
        for (const qint64 key : std::as_const(changed))
            Q_EMIT valueChanged(rowOfKey(key), -1);
    if (!sameRows)
        Q_EMIT currentChanged();
    Q_EMIT waitingChanged();
    return !sameRows || !changed.isEmpty();
}

// Removes a row that need not be the current one: the current record stays current, or the one behind it, or the last.
void Recordset::dropRow(int row)
{
    const int position = m_position > row ? m_position - 1 : m_position;
    removeRow(row);
    m_position = std::min(position, RecordCount() - 1);
    m_afterDelete = false;
}

void Recordset::CancelUpdate()
{
    CancelUpdate(m_position);
}

void Recordset::CancelUpdate(int row)
{
    if (!isWaiting(row))
        return;
    const bool wasCurrent = row == m_position, wasNew = isNew(row);
    if (wasNew) {
        dropRow(row);
    } else {
        m_impl->pending.remove(m_impl->keys[row]);
        Q_EMIT valueChanged(row, -1);
        Q_EMIT waitingChanged();
    }
    if (wasCurrent || wasNew)
        Q_EMIT currentChanged();
}

// The row waits to be stored as a new one.
void Recordset::renew(int row, QVariantList values)
{
    const qint64 before = m_impl->keys[row], now = m_impl->nextTemporaryKey--;
    m_impl->pending.remove(before);
    m_impl->rows.remove(before);
    m_impl->keys[row] = now;
    m_impl->pending.insert(now, {std::move(values), {}, true});
    Q_EMIT keyChanged(before, now);
}

void Recordset::resolve(const Conflict &conflict, const std::optional<QVariantList> &values)
{
    const int row = rowOfKey(conflict.key);
    if (row < 0)
        return;
    if (conflict.now.isEmpty() && !values) {
        dropRow(row);
    } else if (conflict.now.isEmpty()) {
        renew(row, *values);
    } else {
        m_impl->pending.remove(conflict.key);
        m_impl->asWritten.remove(conflict.key);
        m_impl->rows.insert(conflict.key, conflict.now);
        if (values)
            m_impl->pending.insert(conflict.key, {*values, conflict.now, false});
    }
    Q_EMIT valueChanged(-1, -1);
    Q_EMIT currentChanged();
    Q_EMIT waitingChanged();
}

void Recordset::renewGone()
{
    const RecordsetRows &set = *m_impl;
    for (int row = 0; row < RecordCount(); ++row) {
        const qint64 key = set.keys[row];
        const auto read = set.rows.constFind(key);
        if (read == set.rows.constEnd() || set.identity.isEmpty() || !set.now(*m_connection, key).isEmpty())
            continue;
        renew(row, set.pending.contains(key) ? set.pending[key].values : *read);
    }
    Q_EMIT valueChanged(-1, -1);
    Q_EMIT waitingChanged();
}

void Recordset::takeOver(int column, const QVariant &value)
{
    for (int row = RecordCount() - 1; row >= 0; --row) {
        if (!isWaiting(row)) {
            dropRow(row);
            continue;
        }
        const RecordsetRows::Pending &waiting = m_impl->pending[m_impl->keys[row]];
        if (!waiting.isNew && waiting.original[column].toString().isEmpty())
            continue;
        QVariantList values = waiting.values;
        values[column] = value;
        renew(row, values);
    }
    Q_EMIT valueChanged(-1, -1);
    Q_EMIT currentChanged();
    Q_EMIT waitingChanged();
}

} // namespace tradewick
