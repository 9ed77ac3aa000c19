#include "common/kept_layout.h"

#include "common/kept_columns.h"
#include "common/pane_splitter.h"
#include "common/user_settings.h"

#include <QAbstractScrollArea>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tradewick
{

namespace
{

// The end of the program tells no window anything, so nothing waits for it.
constexpr std::chrono::milliseconds restless(400);
constexpr int mostSteps = 6;

// The names around an object and its own, down from the window's.
QString pathOf(const QObject *object, const QWidget *window)
{
    QStringList names;
    for (; object; object = object == window ? nullptr : object->parent())
        if (!object->objectName().isEmpty() && !object->objectName().startsWith(QStringLiteral("qt_")))
            names.prepend(object->objectName());
    return names.join(u'/');
}

QString placeKey(const QWidget &window)
{
    return QStringLiteral("windows/%1/place").arg(window.objectName());
}

QString widthKey(const QObject &panes, const QWidget &window)
{
    return QStringLiteral("windows/%1/width").arg(pathOf(&panes, &window));
}

// A window with a name of ours that holds more when it is larger. The toolkit's own dialogs look after themselves.
bool isKept(const QWidget &window)
{
    const Qt::WindowType type = window.windowType();
    if ((type != Qt::Window && type != Qt::Dialog) || window.objectName().isEmpty() ||
        window.objectName().startsWith(u'Q') || window.minimumSize() == window.maximumSize())
        return false;
    const auto areas = window.findChildren<QAbstractScrollArea *>();
    return std::any_of(areas.cbegin(), areas.cend(), [&](const auto *area) { return area->window() == &window; });
}

// Where a window may be, without its frame, which is as thick as that of the window behind it.
QRect roomFor(const QWidget &window)
{
    const QWidget *behind = window.parentWidget() ? window.parentWidget()->window() : &window;
    const QRect inner = behind->geometry(), outer = behind->frameGeometry();
    return window.screen()->availableGeometry().adjusted(inner.left() - outer.left(), inner.top() - outer.top(),
                                                         inner.right() - outer.right(),
                                                         inner.bottom() - outer.bottom());
}

void moveIntoScreen(QWidget &window)
{
    const QRect room = roomFor(window);
    QRect place = window.geometry();
    place.setSize(place.size().boundedTo(room.size()));
    place.moveLeft(qBound(room.left(), place.left(), room.left() + room.width() - place.width()));
    place.moveTop(qBound(room.top(), place.top(), room.top() + room.height() - place.height()));
    window.setGeometry(place);
}

// Windows that lie on each other look like one. How thick their frames are is not known before they are shown.
void stepAside(QWidget &window)
{
    const int step = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto isTaken = [&](const QWidget *other) {
        return other != &window && other->isVisible() && isKept(*other) &&
               (other->geometry().topLeft() - window.geometry().topLeft()).manhattanLength() < step;
    };
    for (int steps = 0; steps < mostSteps && std::any_of(all.cbegin(), all.cend(), isTaken); ++steps)
        window.setGeometry(window.geometry().translated(step, step) & roomFor(window));
}

} // namespace

KeptLayout::KeptLayout(QApplication &application) : QObject(&application)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(restless);
    connect(&m_soon, &QTimer::timeout, this, &KeptLayout::keep);
    application.installEventFilter(this);
}

bool KeptLayout::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool isPlace = type == QEvent::Resize || type == QEvent::Move;
    if ((!isPlace && type != QEvent::Show && type != QEvent::Hide) || !watched->isWidgetType())
        return false;
    auto *window = static_cast<QWidget *>(watched);
    if (!window->isWindow() || !isKept(*window))
        return false;
    if (type == QEvent::Show && !event->spontaneous())
        takeBack(*window);
    else if (isPlace && window->isVisible())
        keepSoon(window);
    else if (type == QEvent::Hide && !event->spontaneous() && m_changed.contains(window))
        keep();
    return false;
}

void KeptLayout::takeBack(QWidget &window)
{
    const QByteArray place = userSettings().value(placeKey(window)).toByteArray();
    if (!window.isMaximized() && !place.isEmpty()) {
        window.restoreGeometry(place);
        if (!window.isMaximized()) {
            moveIntoScreen(window);
            stepAside(window);
        }
    }
    for (auto *panes : window.findChildren<PaneSplitter *>()) {
        if (const QByteArray state = userSettings().value(widthKey(*panes, window)).toByteArray(); !state.isEmpty())
            panes->takeBack(state);
        connect(panes, &QSplitter::splitterMoved, this, &KeptLayout::paneMoved, Qt::UniqueConnection);
    }
    for (auto *grid : window.findChildren<Grid *>())
        if (grid->recordsetModel() && !grid->findChild<KeptColumns *>())
            new KeptColumns(QStringLiteral("columns/") + pathOf(grid, &window), *grid);
}

void KeptLayout::paneMoved()
{
    keepSoon(static_cast<QWidget *>(sender())->window());
}

void KeptLayout::keepSoon(QWidget *window)
{
    if (!m_changed.contains(window)) {
        m_changed.insert(window);
        connect(window, &QObject::destroyed, this, [this, window] { m_changed.remove(window); });
    }
    m_soon.start();
}

void KeptLayout::keep()
{
    QSettings kept = userSettings();
    for (QWidget *window : std::exchange(m_changed, {})) {
        disconnect(window, &QObject::destroyed, this, nullptr);
        if (!window->isMinimized())
            kept.setValue(placeKey(*window), window->saveGeometry());
        for (const auto *panes : window->findChildren<PaneSplitter *>())
            if (panes->isMoved())
                kept.setValue(widthKey(*panes, *window), panes->saveState());
    }
}

} // namespace tradewick
