#include "data/value_order.h"

#include "data/collation.h"
#include "data/date_text.h"

#include <algorithm>
#include <numeric>

namespace tradewick
{

namespace
{

struct Key {
    enum Class { Null, EmptyText, Number, Text } kind = Null;
    double number = 0;
    QString text; // folded
};

Key keyOf(const QVariant &value, ColumnKind kind)
{
    if (value.isNull())
        return {};
    const bool isText = value.typeId() == QMetaType::QString || kind == ColumnKind::Date;
    if (!isText)
        return {Key::Number, value.toDouble(), {}};
    const QString text = kind == ColumnKind::Date ? dateText(value) : value.toString();
    if (QStringView(text).trimmed().isEmpty())
        return {Key::EmptyText, 0, {}};
    bool isNumber = kind == ColumnKind::Number;
    const double number = isNumber ? text.trimmed().toDouble(&isNumber) : 0;
    return isNumber ? Key{Key::Number, number, {}} : Key{Key::Text, 0, foldedForOrder(text)};
}

int compare(const Key &a, const Key &b)
{
    if (a.kind != b.kind)
        return a.kind < b.kind ? -1 : 1;
    if (a.kind == Key::Number)
        return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
    return a.kind == Key::Text ? compareFolded(a.text, b.text) : 0;
}

} // namespace

QVector<int> sortedPositions(const QVariantList &values, ColumnKind kind, Qt::SortOrder order)
{
    std::vector<Key> keys;
    keys.reserve(static_cast<size_t>(values.size()));
    for (const QVariant &value : values)
        keys.push_back(keyOf(value, kind));
    QVector<int> positions(values.size());
    std::iota(positions.begin(), positions.end(), 0);
    const bool upwards = order == Qt::AscendingOrder;
    std::stable_sort(positions.begin(), positions.end(), [&](int a, int b) {
        const Key &first = keys[static_cast<size_t>(upwards ? a : b)],
                  &second = keys[static_cast<size_t>(upwards ? b : a)];
        return compare(first, second) < 0;
    });
    return positions;
}

} // namespace tradewick
