#include "shell/side_bar.h"

#include <QAction>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace tradewick
{

SideBar::SideBar(const QString &name, QWidget *parent) : QScrollArea(parent)
{
    setObjectName(name);
    setAccessibleName(QStringLiteral("功能栏"));
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    auto *content = new QWidget(this);
    content->setObjectName("sideBarContent");
    m_layout = new QVBoxLayout(content);
    m_layout->setContentsMargins(6, 6, 6, 6);
    m_layout->setSpacing(2);
    m_layout->addStretch();
    setWidget(content);
}

void SideBar::addGroup(const QString &name, const QString &caption, const QList<QAction *> &actions)
{
    const auto addButton = [this](QToolButton *button, QBoxLayout *layout, int at) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setAutoRaise(true);
        button->installEventFilter(this);
        layout->insertWidget(at, button);
        m_buttons.append(button);
    };
    auto *header = new QToolButton(this);
    header->setText(caption);
    header->setAccessibleName(caption);
    header->setCheckable(true);
    header->setProperty("header", true);
    addButton(header, m_layout, m_layout->count() - 1);

    auto *group = new QWidget(this);
    group->setObjectName(name);
    group->setAccessibleName(caption);
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(8, 0, 0, 6);
    layout->setSpacing(1);
    for (QAction *action : actions) {
        auto *button = new QToolButton(group);
        button->setDefaultAction(action);
        button->setObjectName(action->objectName());
        button->setAccessibleName(action->text());
        button->setIconSize({20, 20});
        addButton(button, layout, -1);
    }
    m_layout->insertWidget(m_layout->count() - 1, group);
    if (m_headers.isEmpty())
        setFocusProxy(header);
    m_headers.append(header);
    m_groups.append(group);
    connect(header, &QToolButton::toggled, this, [this, header](bool checked) { unfold(header, checked); });
    header->setChecked(m_headers.size() == 1);
    unfold(header, header->isChecked());
}

void SideBar::unfold(const QToolButton *header, bool unfolded)
{
    for (qsizetype i = 0; i < m_headers.size(); ++i) {
        if (m_headers[i] == header) {
            m_groups[i]->setVisible(unfolded);
            m_headers[i]->setArrowType(unfolded ? Qt::DownArrow : Qt::RightArrow);
        } else if (unfolded)
            m_headers[i]->setChecked(false);
    }
}

void SideBar::markOpen(const QString &name, bool open)
{
    auto *button = findChild<QToolButton *>(name);
    button->setProperty("open", open);
    button->setAccessibleDescription(open ? QStringLiteral("已打开") : QString());
    button->style()->polish(button); // the style sheet asks for the property
}

QSize SideBar::sizeHint() const
{
    int width = 0;
    for (const QToolButton *button : m_buttons)
        width = qMax(width, button->sizeHint().width());
    return {width + 24 + verticalScrollBar()->sizeHint().width(), widget()->sizeHint().height()};
}

void SideBar::step(QWidget *from, int by)
{
    const qsizetype count = m_buttons.size();
    for (qsizetype i = m_buttons.indexOf(from) + by + count; i % count != m_buttons.indexOf(from); i += by + count) {
        QToolButton *button = m_buttons[i % count];
        if (button->isVisibleTo(this) && button->isEnabled()) {
            button->setFocus(Qt::TabFocusReason);
            ensureWidgetVisible(button);
            return;
        }
    }
}

bool SideBar::eventFilter(QObject *watched, QEvent *event)
{
    auto *button = qobject_cast<QToolButton *>(watched);
    if (button && event->type() == QEvent::KeyPress)
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Down:
            step(button, 1);
            return true;
        case Qt::Key_Up:
            step(button, -1);
            return true;
        default:
            break;
        }
    return QScrollArea::eventFilter(watched, event);
}

} // namespace tradewick
