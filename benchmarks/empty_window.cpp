// What the start of the program is measured against: a window with nothing in it, gone as soon as it is shown.
#include <QApplication>
#include <QMainWindow>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.show();
    QTimer::singleShot(0, &application, &QApplication::quit);
    return QApplication::exec();
}
