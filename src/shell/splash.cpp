#include "shell/splash.h"

#include "shell/picture.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace tradewick
{

frmSplash::frmSplash(QWidget *parent) : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
{
    setObjectName("frmSplash");
    setWindowTitle(productTitle);
    auto *picture = new Picture("Picture1", this);
    picture->setFixedSize(picture->sizeHint());
    picture->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(picture);
}

bool frmSplash::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        close();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmSplash::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        close();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace tradewick
