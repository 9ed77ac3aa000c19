// The keys of windows, and the list of them that F1 shows. What a key does is said once, where the key is made; whether
// it is told is asked of what it acts upon, when the list is shown.
#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>
#include <QVector>

class QAbstractButton;
class QApplication;
class QShortcut;
class QWidget;

namespace tradewick
{

struct KeyText {
    QString keys; // as they are written on the keyboard: "Ctrl+N"
    QString does;

    bool operator==(const KeyText &) const = default;
};

// Lets keys click a button wherever the focus is in the window. They are told by the button's caption, as long as it
// can be clicked, and stand in its tool tip. No keys: nothing.
void addKeys(QWidget *window, const QString &keys, QAbstractButton *button);
// Keys of a window that do what is connected to their activated(). Any of the sequences does the same.
QShortcut *addKeys(QWidget *window, const QList<QKeySequence> &keys, const QString &does);

// A part of a window that takes keys itself.
class TakesKeys
{
public:
    virtual ~TakesKeys() = default;
    // Those that do something there now.
    virtual QVector<KeyText> keys() const = 0;
};

struct KeyGroup {
    QString caption; // of the part of the window that takes the keys; empty: they work in all of it
    QVector<KeyText> keys;
};
// The keys that work in a window now: those of all of it first, then those of its parts that can have the focus. Parts
// with the same keys are one group.
QVector<KeyGroup> keysOf(const QWidget &window);

// Shows the keys of the window that has the focus when F1 is pressed anywhere in the application, and takes them away
// again with the next F1, Enter or Escape.
class KeyHelp : public QObject
{
    Q_OBJECT

public:
    explicit KeyHelp(QApplication &application);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace tradewick
