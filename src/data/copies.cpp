#include "data/copies.h"

namespace tradewick
{

void copyColumns(const Row &from, Recordset &to, const Copies &pairs, bool trimmed)
{
    QVector<std::pair<Field, QVariant>> values;
    for (const ColumnPair &pair : pairs) {
        const QVariant value = from.value(pair.from);
        const bool isText = value.typeId() == QMetaType::QString;
        values.append({to.Fields(pair.to), trimmed && isText ? value.toString().trimmed() : value});
    }
    for (const auto &[field, value] : std::as_const(values))
        field.setValue(value);
}

} // namespace tradewick
