// The forms that stand open beside the main window, in the order in which they were opened.
#pragma once

#include "shell/dispatch.h"

#include <QObject>
#include <QPointer>
#include <QVector>
#include <QWidget>

namespace tradewick
{

// Takes a window out of the task bar where it was minimised, shows it, and gives it the keyboard.
void bringForward(QWidget &window);

class OpenForms : public QObject
{
    Q_OBJECT

public:
    // A part of the main window, made before any of its forms, so that it is gone before they are.
    explicit OpenForms(QWidget *mainWindow);

    // The form of that name that is on the screen, or nullptr. One that was closed is the form no more, though it lives
    // until the event loop deletes it.
    QWidget *find(const QString &form) const;

    // Notes a form that is about to be shown. Gives how many steps it has to stand from its place for none that is open
    // there to be covered exactly: 0 for the first.
    int add(const QString &form, QWidget *window, Placement placement);

    // Brings the next window forward (by: 1) or the one before (-1): main window and forms are a ring.
    void goRound(int by);

Q_SIGNALS:
    void changed(const QString &form, bool open);

private:
    struct Entry {
        QString form;
        QPointer<QWidget> window;
        Placement placement;
        int step;

        bool isOpen() const { return window && window->isVisible(); }
    };

    QWidget *m_mainWindow;
    QVector<Entry> m_entries;
};

} // namespace tradewick
