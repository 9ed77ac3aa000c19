// The side bar: groups of command buttons, one of them unfolded at a time.
#pragma once

#include "common/window_keys.h"

#include <QScrollArea>

class QAction;
class QBoxLayout;
class QToolButton;

namespace tradewick
{

class SideBar : public QScrollArea, public TakesKeys
{
    Q_OBJECT

public:
    SideBar(const QString &name, QWidget *parent);

    // Adds a group, folded unless it is the first; its buttons bear the names of their actions.
    void addGroup(const QString &name, const QString &caption, const QList<QAction *> &actions);

    // Marks the button of that name: what it opens is open, or is not any more.
    void markOpen(const QString &name, bool open);

    QVector<KeyText> keys() const override
    {
        return {{QStringLiteral("↑ / ↓"), QStringLiteral("上一个、下一个功能")},
                {QStringLiteral("Enter"), QStringLiteral("打开功能，或展开一组功能")}};
    }
    QSize sizeHint() const override;

protected:
    // Up and Down go through the buttons in sight, Enter presses one.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void unfold(const QToolButton *header, bool unfolded);
    void step(QWidget *from, int by);

    QBoxLayout *m_layout;
    QList<QToolButton *> m_headers, m_buttons; // m_buttons: headers too, from top to bottom
    QList<QWidget *> m_groups;                 // one for each header
};

} // namespace tradewick
