#include "shell/main_window.h"

#include "common/dialogs.h"
#include "common/record_form.h"
#include "common/window_keys.h"
#include "data/data_error.h"
#include "shell/commands.h"
#include "shell/icons.h"
#include "shell/open_forms.h"
#include "shell/picture.h"
#include "shell/process.h"
#include "shell/side_bar.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTime>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <chrono>

namespace tradewick
{

namespace
{

constexpr double twipsPerPixel = 15;
constexpr double belowOnLoad = 10;
constexpr double belowOnResize = 200;
// of a form whose place is taken; after so many it starts anew, for each costs the form room
constexpr int stepsOfCascade = 6;

double twips(int pixels)
{
    return pixels * twipsPerPixel;
}

QRect pixels(const QRectF &area)
{
    return QRectF(area.topLeft() / twipsPerPixel, area.size() / twipsPerPixel).toRect();
}

} // namespace

QString timeText(const QTime &time)
{
    return time.toString(QStringLiteral("HH:mm:ss"));
}

std::optional<QRectF> freeArea(const WindowLengths &lengths, double below)
{
    const QRectF area(lengths.sideBandWidth + 4, lengths.toolBandHeight * 1.7 + 10,
                      lengths.width - lengths.sideBandWidth - 200, lengths.height - 3 * lengths.toolBandHeight - below);
    return area.width() < 0 || area.height() < 0 ? std::nullopt : std::optional(area);
}

main_FRM::main_FRM() : m_forms(new OpenForms(this))
{
    setObjectName("main_FRM");
    setWindowTitle(productTitle);
    m_picture = new Picture("Picture1", this);
    buildMenus();
    buildToolBar();
    buildSideBar();
    buildStatusBand();
    addWindowKeys();
    m_picture->lower();
    m_sideBar->setFocus();
    resize(1200, 700);
    layPicture(belowOnLoad);
    startClock();
}

QAction *main_FRM::addCommand(const Tool &tool)
{
    auto *action = new QAction(tool.caption, this);
    action->setObjectName(tool.name);
    action->setIcon(commandIcon(tool.icon));
    connect(action, &QAction::triggered, this, [this, tool] { execute(tool); });
    m_commands.insert(tool.name, action);
    return action;
}

void main_FRM::buildMenus()
{
    menuBar()->setObjectName("Band1");
    menuBar()->setAccessibleName(QStringLiteral("菜单栏"));
    int number = 0;
    for (const Band &band : menuBands()) {
        QMenu *menu = menuBar()->addMenu(band.caption);
        menu->setObjectName(band.name);
        menu->menuAction()->setObjectName(band.head);
        for (const Tool &tool : band.tools)
            if (tool.caption.isEmpty())
                menu->addSeparator()->setObjectName(tool.name);
            else
                menu->addAction(addCommand(tool));
        // The heads have no letters for Alt; their places have.
        ++number;
        auto *shortcut = addKeys(this, {QKeySequence(QStringLiteral("Alt+%1").arg(number))}, band.caption);
        connect(shortcut, &QShortcut::activated, this,
                [this, menu] { menuBar()->setActiveAction(menu->menuAction()); });
    }
    auto *shortcut = addKeys(this, {Qt::Key_F10}, menuBar()->accessibleName());
    connect(shortcut, &QShortcut::activated, this,
            [this] { menuBar()->setActiveAction(menuBar()->actions().constFirst()); });
}

void main_FRM::buildToolBar()
{
    const Band &band = toolBand();
    m_toolBar = addToolBar(band.caption);
    m_toolBar->setObjectName(band.name);
    m_toolBar->setAccessibleName(band.caption);
    m_toolBar->setMovable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize({20, 20});
    m_toolBar->setContextMenuPolicy(Qt::PreventContextMenu);
    for (const Tool &tool : band.tools) {
        if (tool.caption.isEmpty()) {
            m_toolBar->addSeparator();
            continue;
        }
        QAction *action = addCommand(tool);
        m_toolBar->addAction(action);
        QWidget *button = m_toolBar->widgetForAction(action);
        button->setObjectName(tool.name);
        button->setAccessibleName(tool.caption);
        button->setFocusPolicy(Qt::TabFocus);
    }
    auto *space = new QWidget(m_toolBar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(space);
    auto *clock = new QLabel(m_toolBar);
    clock->setObjectName(clockTool);
    clock->setAccessibleName(QStringLiteral("时钟"));
    m_toolBar->addWidget(clock);
}

void main_FRM::buildSideBar()
{
    auto *content = new QWidget(this);
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins({});
    m_sideBar = new SideBar("Band8", content);
    for (const Band &band : sideBands()) {
        QList<QAction *> actions;
        for (const Tool &tool : band.tools)
            actions.append(addCommand(tool));
        m_sideBar->addGroup(band.name, band.caption, actions);
    }
    m_sideBar->setFixedWidth(m_sideBar->sizeHint().width());
    layout->addWidget(m_sideBar);
    layout->addStretch();
    setCentralWidget(content);
}

void main_FRM::buildStatusBand()
{
    const Band &band = statusBand();
    statusBar()->setObjectName(band.name);
    statusBar()->setAccessibleName(band.caption);
    for (const Tool &tool : band.tools) {
        auto *text = new QLabel(tool.caption, this);
        text->setObjectName(tool.name);
        text->setTextFormat(Qt::PlainText);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        statusBar()->addWidget(text, tool.name == statusTextTool ? 1 : 0);
        m_texts.insert(tool.name, text);
    }
}

void main_FRM::startClock()
{
    auto *clock = findChild<QLabel *>(clockTool);
    const auto show = [clock] { clock->setText(timeText(QTime::currentTime())); };
    show();
    auto *timer = new QTimer(this);
    timer->setObjectName("Timer1");
    connect(timer, &QTimer::timeout, this, show);
    timer->start(std::chrono::milliseconds(1000));
}

void main_FRM::switchOff(const QString &tool)
{
    if (QAction *command = m_commands.value(tool))
        command->setEnabled(false);
}

void main_FRM::setStatusText(const QString &text)
{
    m_texts[statusTextTool]->setText(text);
    m_texts[statusTextTool]->setToolTip(text); // where the window is too narrow for all of it
}

void main_FRM::execute(const Tool &tool)
{
    if (tool.opens != exitCommand)
        openForm(tool.opens);
    else if (confirmsExit())
        endProcess(0);
}

bool main_FRM::confirmsExit()
{
    // Those that another form has opened, too.
    const auto forms = findChildren<RecordForm *>();
    const bool anyWaits = std::any_of(forms.cbegin(), forms.cend(),
                                      [](RecordForm *form) { return form->window()->isVisible() && form->anyWaits(); });
    const QString question = anyWaits ? QStringLiteral("尚有未保存的记录，退出后即丢失。是否真的退出系统？")
                                      : QStringLiteral("是否真的退出系统？");
    return dialogs().ask(this, question, QStringLiteral("系统提示"), OnEnter::No);
}

QWidget *main_FRM::openForm(const QString &form)
{
    QWidget *window = m_forms->find(form);
    if (!window) {
        const FormEntry *entry = formEntry(form);
        if (!entry)
            return nullptr;
        try {
            window = entry->make(this, [this](const auto &...record) { openRecord(record...); });
        } catch (const DataError &error) { // what is open stays open
            dialogs().message(this, error.text(), QStringLiteral("系统提示"), MessageIcon::Critical);
            return nullptr;
        }
        // Only dialogs stay in front of the window that they belong to, whoever manages the windows.
        Qt::WindowFlags flags = window->windowFlags() | Qt::Dialog;
        if (!window->isWindow())
            flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                     Qt::WindowCloseButtonHint;
        window->setWindowFlags(flags);
        window->setAttribute(Qt::WA_DeleteOnClose);
        place(window, entry->placement, m_forms->add(form, window, entry->placement));
    }
    bringForward(*window);
    return window;
}

void main_FRM::openRecord(const QString &form, const QString &column, const QVariant &value)
{
    for (const auto *bands : {&menuBands(), &sideBands()})
        for (const Band &band : *bands)
            for (const Tool &tool : band.tools)
                if (tool.opens == form && !m_commands[tool.name]->isEnabled()) {
                    QApplication::beep(); // what the user has no right to opens from nowhere
                    return;
                }
    QWidget *window = openForm(form);
    if (!window)
        return;
    QList<RecordForm *> entries = window->findChildren<RecordForm *>(); // of a window of tabs
    if (auto *whole = qobject_cast<RecordForm *>(window))
        entries.prepend(whole);
    for (RecordForm *entry : std::as_const(entries)) {
        if (entry->records().columnIndex(column) < 0)
            continue;
        if (auto *tabs = window->findChild<QTabWidget *>(); tabs && tabs->indexOf(entry) >= 0)
            tabs->setCurrentWidget(entry);
        entry->goTo(column, value);
        return;
    }
}

void main_FRM::addWindowKeys()
{
    connect(m_forms, &OpenForms::changed, m_sideBar, [this](const QString &form, bool open) {
        for (const Band &band : sideBands())
            for (const Tool &tool : band.tools)
                if (tool.opens == form)
                    m_sideBar->markOpen(tool.name, open);
    });
    const auto goRound = [this](const QList<QKeySequence> &keys, const QString &does, int by) {
        auto *shortcut = addKeys(this, keys, does);
        shortcut->setContext(Qt::ApplicationShortcut); // from the forms, too
        connect(shortcut, &QShortcut::activated, this, [this, by] { m_forms->goRound(by); });
    };
    goRound({Qt::Key_F6, Qt::CTRL | Qt::Key_Tab}, QStringLiteral("下一个窗口"), 1);
    goRound({Qt::SHIFT | Qt::Key_F6, Qt::CTRL | Qt::SHIFT | Qt::Key_Tab}, QStringLiteral("上一个窗口"), -1);
}

void main_FRM::closeEvent(QCloseEvent *event)
{
    if (!confirmsExit()) {
        event->ignore();
        return;
    }
    event->accept();
    endProcess(0);
}

void main_FRM::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    layPicture(belowOnResize);
}

void main_FRM::layPicture(double below)
{
    const auto area = freeArea(
        {twips(width()), twips(height()), twips(m_toolBar->sizeHint().height()), twips(m_sideBar->width())}, below);
    if (area)
        m_picture->setGeometry(pixels(*area));
}

void main_FRM::keyPressEvent(QKeyEvent *event)
{
    // Enter presses the button that has the focus, as the space bar does.
    auto *button = qobject_cast<QAbstractButton *>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QMainWindow::keyPressEvent(event);
}

void main_FRM::place(QWidget *form, Placement placement, int step) const
{
    const QRect screenArea = screen()->availableGeometry();
    const QRect free = m_picture->geometry();
    const int aside = step % stepsOfCascade * style()->pixelMetric(QStyle::PM_TitleBarHeight); // titles stay in sight
    QRect area; // of the form with its frame
    switch (placement) {
    case Placement::Centre:
        area.setSize(form->sizeHint());
        area.moveCenter(m_picture->mapToGlobal(m_picture->rect().center()) + QPoint(aside, aside));
        form->setGeometry(area);
        return;
    case Placement::FreeArea:
        area = pixels({twips(free.left()) + 15, twips(m_toolBar->sizeHint().height()) * 2.5 - 50,
                       twips(free.width()) - 30, twips(free.height()) - 300});
        area.translate(geometry().left(), frameGeometry().top());
        break;
    case Placement::ScreenWidth:
        area = pixels({twips(screenArea.left()), twips(frameGeometry().top() + free.top()) + 300,
                       twips(screenArea.width()), twips(free.height())});
        break;
    }
    area &= screenArea;
    area.setTopLeft(area.topLeft() + QPoint(aside, aside));
    form->move(area.topLeft());
    form->resize(area.size() - (frameGeometry().size() - size())); // its frame is as thick as this window's
}

} // namespace tradewick
