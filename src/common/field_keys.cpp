#include "common/field_panel.h"

#include <QTabWidget>

namespace tradewick
{

QVector<KeyText> FieldPanel::keys() const
{
    QVector<KeyText> keys{{QStringLiteral("Enter / Tab"), QStringLiteral("下一栏")},
                          {QStringLiteral("Shift+Tab"), QStringLiteral("上一栏")}};
    bool hasNeighbours = false;
    for (const Entry *entry : m_order) {
        if (!entry->control->frame()->isVisible())
            continue;
        hasNeighbours = hasNeighbours || (!entry->control->combo() && entry->spec->name.contains(u'('));
        for (const KeyText &key : entry->control->keys())
            if (!keys.contains(key))
                keys.append(key);
    }
    if (hasNeighbours)
        keys.append({QStringLiteral("↑ / ↓"), QStringLiteral("上一个、下一个文本栏")});
    return keys;
}

} // namespace tradewick
