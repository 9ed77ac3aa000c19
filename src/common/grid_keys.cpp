#include "common/grid.h"

#include <QMetaMethod>

namespace tradewick
{

// What the keys of a grid do. Those of the list that is searched, or of a list to choose from, are the same.
QVector<KeyText> Grid::keys() const
{
    QVector<KeyText> keys;
    if (m_editing) {
        keys = {{QStringLiteral("Enter"), QStringLiteral("下一格，最后一格之后到下一行")},
                {QStringLiteral("F2"), QStringLiteral("修改单元格")},
                {QStringLiteral("Esc"), QStringLiteral("放弃单元格中的修改")},
                {QStringLiteral("Shift+↑ / Shift+↓"), QStringLiteral("选择多行")},
                {QStringLiteral("Ctrl+V"), QStringLiteral("从当前格起粘贴单元格，必要时加行")},
                {QStringLiteral("Ctrl+D"), QStringLiteral("重复上一行的内容")},
                {QStringLiteral("Delete"), QStringLiteral("删除所选的行")}};
        if (!m_dropDowns.isEmpty())
            keys.append({QStringLiteral("↓"), QStringLiteral("单元格修改时：打开可选内容，或到下一行")});
    } else {
        if (isSignalConnected(QMetaMethod::fromSignal(&Grid::rowActivated)))
            keys.append({QStringLiteral("Enter"), QStringLiteral("选用或打开当前行")});
        keys.append({QStringLiteral("F8"), QStringLiteral("按当前列排序：升序、降序、原顺序")});
        keys.append({QStringLiteral("字母、数字、汉字"), QStringLiteral("到当前列以此开头的行")});
    }
    keys.append({QStringLiteral("Ctrl+C"), QStringLiteral("复制所选内容")});
    return keys;
}

} // namespace tradewick
