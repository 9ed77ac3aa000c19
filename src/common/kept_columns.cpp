#include "common/kept_columns.h"

#include "common/user_settings.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>

namespace tradewick
{

KeptColumns::KeptColumns(const QString &key, Grid &grid) : QObject(&grid), m_key(key), m_grid(grid)
{
    QHeaderView &head = *grid.horizontalHeader();
    // Enter goes through lines in the order in which their columns are declared.
    head.setSectionsMovable(grid.selectionBehavior() == QAbstractItemView::SelectRows);
    takeBack();
    head.viewport()->installEventFilter(this);
    connect(&head, &QHeaderView::sectionMoved, this, &KeptColumns::keepOrder);
    connect(&head, &QHeaderView::sectionHandleDoubleClicked, this, [this](int section) {
        m_pressed.clear();
        userSettings().remove(m_key + QStringLiteral("/width/") + m_grid.recordsetModel()->columns()[section].column);
        m_grid.keepWidth(section, std::nullopt);
    });
}

void KeptColumns::takeBack()
{
    QSettings kept = userSettings();
    QHeaderView &head = *m_grid.horizontalHeader();
    const QVector<GridColumn> &columns = m_grid.recordsetModel()->columns();
    const QStringList order = kept.value(m_key + QStringLiteral("/order")).toStringList();
    int place = 0;
    for (const QString &name : order)
        for (int section = 0; head.sectionsMovable() && section < columns.size(); ++section)
            if (columns[section].column == name)
                head.moveSection(head.visualIndex(section), place++);
    kept.beginGroup(m_key + QStringLiteral("/width"));
    for (int section = 0; section < columns.size(); ++section)
        if (const int width = kept.value(columns[section].column).toInt(); width > 0)
            m_grid.keepWidth(section, width);
}

QVector<int> KeptColumns::widths() const
{
    QVector<int> all;
    for (int section = 0; section < m_grid.horizontalHeader()->count(); ++section)
        all.append(m_grid.columnWidth(section));
    return all;
}

// What changes between a press and its release was drawn; the last column follows the others, and the window.
void KeptColumns::keepWidths(const QVector<int> &before)
{
    const QHeaderView &head = *m_grid.horizontalHeader();
    const QVector<int> now = widths();
    for (int section = 0; section < now.size() && before.size() == now.size(); ++section) {
        if (now[section] == before[section] || head.visualIndex(section) == head.count() - 1)
            continue;
        m_grid.keepWidth(section, now[section]);
        userSettings().setValue(m_key + QStringLiteral("/width/") + m_grid.recordsetModel()->columns()[section].column,
                                now[section]);
    }
}

void KeptColumns::keepOrder()
{
    const QHeaderView &head = *m_grid.horizontalHeader();
    QStringList order;
    for (int place = 0; place < head.count(); ++place)
        order.append(m_grid.recordsetModel()->columns()[head.logicalIndex(place)].column);
    userSettings().setValue(m_key + QStringLiteral("/order"), order);
}

bool KeptColumns::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        m_pressed = widths();
    if (event->type() == QEvent::MouseButtonRelease) // once the header has heard of it
        QMetaObject::invokeMethod(
            this, [this, before = std::exchange(m_pressed, {})] { keepWidths(before); }, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

} // namespace tradewick
