// What a user stops a long reading with.
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>
#include <QVector>

#include <memory>

namespace tradewick
{

// Shows itself half a second after it was made, with the seconds that the work has taken, until it goes. Other windows
// take no input meanwhile and draw nothing: what they show may come from the very connection that is being read.
class StopBox
{
public:
    // parent: may be null.
    StopBox(QWidget *parent, const QString &text);
    ~StopBox();
    StopBox(const StopBox &) = delete;
    StopBox &operator=(const StopBox &) = delete;

    // Looks for what the user does; costs next to nothing where it is asked more often than he can act. False once he
    // pressed the button or Escape.
    bool goesOn();

private:
    void show();

    const QPointer<QWidget> m_parent;
    const QString m_text;
    QElapsedTimer m_begun;
    qint64 m_nextLook;
    std::unique_ptr<QProgressDialog> m_box;
    QVector<QPointer<QWidget>> m_still; // windows that draw nothing
};

} // namespace tradewick
