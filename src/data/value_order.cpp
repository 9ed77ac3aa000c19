#include "data/value_order.h"

#include "data/collation.h"
#include "data/date_text.h"

#include <algorithm>
#include <numeric>

namespace tradewick
{

OrderKey::OrderKey(const QVariant &value, ColumnKind kind)
{
    if (value.isNull())
        return;
    if (value.typeId() != QMetaType::QString && kind != ColumnKind::Date) {
        m_class = Number;
        m_number = value.toDouble();
        return;
    }
    const QString text = kind == ColumnKind::Date ? dateText(value) : value.toString();
    if (QStringView(text).trimmed().isEmpty()) {
        m_class = EmptyText;
        return;
    }
    bool isNumber = kind == ColumnKind::Number;
    m_number = isNumber ? text.trimmed().toDouble(&isNumber) : 0;
    m_class = isNumber ? Number : Text;
    if (!isNumber)
        m_text = foldedForOrder(text);
}

int OrderKey::compare(const OrderKey &other) const
{
    if (m_class != other.m_class)
        return m_class < other.m_class ? -1 : 1;
    if (m_class == Number)
        return m_number < other.m_number ? -1 : m_number > other.m_number;
    return m_class == Text ? compareFolded(m_text, other.m_text) : 0;
}

QVector<int> sortedPositions(const QVariantList &values, ColumnKind kind, Qt::SortOrder order)
{
    std::vector<OrderKey> keys;
    keys.reserve(static_cast<size_t>(values.size()));
    for (const QVariant &value : values)
        keys.emplace_back(value, kind);
    QVector<int> positions(values.size());
    std::iota(positions.begin(), positions.end(), 0);
    const bool upwards = order == Qt::AscendingOrder;
    std::stable_sort(positions.begin(), positions.end(), [&](int a, int b) {
        const OrderKey &first = keys[static_cast<size_t>(upwards ? a : b)],
                       &second = keys[static_cast<size_t>(upwards ? b : a)];
        return first.compare(second) < 0;
    });
    return positions;
}

} // namespace tradewick
