#include "shell/open_forms.h"

#include <QApplication>

#include <algorithm>

namespace tradewick
{

void bringForward(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

OpenForms::OpenForms(QWidget *mainWindow) : QObject(mainWindow), m_mainWindow(mainWindow) {}

QWidget *OpenForms::find(const QString &form) const
{
    for (const Entry &entry : m_entries)
        if (entry.form == form && entry.isOpen())
            return entry.window;
    return nullptr;
}

int OpenForms::add(const QString &form, QWidget *window, Placement placement)
{
    m_entries.removeIf([](const Entry &entry) { return !entry.isOpen(); });
    int step = 0;
    const auto isTaken = [&](const Entry &entry) { return entry.placement == placement && entry.step == step; };
    while (std::any_of(m_entries.cbegin(), m_entries.cend(), isTaken))
        ++step;
    m_entries.append({form, window, placement, step});
    connect(window, &QObject::destroyed, this, [this, form] { Q_EMIT changed(form, find(form) != nullptr); });
    Q_EMIT changed(form, true);
    return step;
}

void OpenForms::goRound(int by)
{
    QWidgetList ring{m_mainWindow};
    for (const Entry &entry : m_entries)
        if (entry.isOpen())
            ring.append(entry.window);
    const qsizetype current = qMax(ring.indexOf(QApplication::activeWindow()), 0);
    bringForward(*ring[(current + by + ring.size()) % ring.size()]);
}

} // namespace tradewick
