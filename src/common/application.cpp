#include "common/application.h"

#include "common/dialogs.h"

namespace tradewick
{

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const DataError &error) {
        if (error.number() == DataError::connectionLost)
            dialogs().message(activeWindow(), error.text(), {}, MessageIcon::None);
        else
            unhandled(error);
    }
    return false;
}

} // namespace tradewick
