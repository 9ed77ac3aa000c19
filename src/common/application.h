// The application object, over which a lost server ends nothing.
#pragma once

#include "data/data_error.h"

#include <QApplication>

namespace tradewick
{

class Application : public QApplication
{
public:
    using QApplication::QApplication;

    // A connection that is lost in the middle of any event is told, and the next action reaches the server again.
    bool notify(QObject *receiver, QEvent *event) override;

protected:
    // Any other error that no handler took; goes on up unless a program does something about it.
    virtual void unhandled(const DataError & /*error*/) { throw; }
};

} // namespace tradewick
