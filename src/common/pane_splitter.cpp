#include "common/pane_splitter.h"

#include "common/grid.h"

#include <QScrollArea>
#include <QScrollBar>

namespace tradewick
{

namespace
{

constexpr int leastPart = 5; // of the whole width that the list has where the fields want more

// What is scrolled says how wide it wants to be; the area around it does not.
int wantedWidth(const QWidget &pane)
{
    const auto *scroll = qobject_cast<const QScrollArea *>(&pane);
    return scroll && scroll->widget()
               ? scroll->widget()->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width()
               : pane.sizeHint().width();
}

} // namespace

PaneSplitter::PaneSplitter(Qt::Orientation orientation, QWidget *parent) : QSplitter(orientation, parent)
{
    setObjectName(QStringLiteral("panes"));
    connect(this, &QSplitter::splitterMoved, this, [this] { m_isMoved = true; });
}

void PaneSplitter::takeBack(const QByteArray &state)
{
    m_isMoved = restoreState(state);
}

void PaneSplitter::resizeEvent(QResizeEvent *event)
{
    QSplitter::resizeEvent(event);
    fit();
}

void PaneSplitter::showEvent(QShowEvent *event)
{
    QSplitter::showEvent(event);
    fit();
}

void PaneSplitter::fit()
{
    if (m_isMoved || orientation() != Qt::Horizontal || count() != 2)
        return;
    int list = 0;
    for (const Grid *grid : widget(0)->findChildren<Grid *>())
        list = qMax(list, grid->wantedWidth());
    const int whole = width() - handleWidth(), room = whole - wantedWidth(*widget(1));
    list = qMin(list, qMax(room, whole / leastPart));
    setSizes({list, whole - list});
}

} // namespace tradewick
