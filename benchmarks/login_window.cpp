// The program from its start until the login window is there, the splash's delay left out; then gone.
#include "shell/startup.h"
#include "shell/style.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <unistd.h>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    tradewick::applyStyle(application);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [] {
        for (const QWidget *window : QApplication::topLevelWidgets())
            if (window->objectName() == "frmLogin" && window->isVisible())
                ::_exit(0);
    });
    watch.start(0);
    tradewick::Main(std::chrono::milliseconds{0});
    return 1;
}
