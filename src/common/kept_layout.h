// What the user has arranged with the mouse, kept for the next program: size and place of the windows, the widths and,
// in lists, the order of the columns, the width of the list beside a record. All of it goes by the names of the
// objects; no window does anything for it.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QSet>
#include <QTimer>

namespace tradewick
{

// Works for all windows of the application that bear a name and show more when the user makes them larger. A window
// never comes back larger than its screen or outside of it, nor exactly over another one. One that is shown maximised
// stays that.
class KeptLayout : public QObject
{
    Q_OBJECT

public:
    // application: whose windows they are; outlives this.
    explicit KeptLayout(QApplication &application);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeBack(QWidget &window);
    void paneMoved();
    void keepSoon(QWidget *window);
    void keep();

    QSet<QWidget *> m_changed; // windows whose place is not kept yet
    QTimer m_soon;
};

} // namespace tradewick
