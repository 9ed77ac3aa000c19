// The main window: menus, tool bar, side bar, status band, and the forms that their commands open.
#pragma once

#include "shell/dispatch.h"

#include <QHash>
#include <QMainWindow>

#include <optional>

class QLabel;
class QTime;

namespace tradewick
{

struct Tool;
class OpenForms;
class Picture;
class SideBar;

// The time of day as the clock and the status text show it.
QString timeText(const QTime &time);

// The lengths, in twips, from which the free area follows.
struct WindowLengths {
    double width, height, toolBandHeight, sideBandWidth;
};

// Where the picture stands in the main window, in twips; below leaves that much room under it. No value where the
// window is too small to have a free area.
std::optional<QRectF> freeArea(const WindowLengths &lengths, double below);

class main_FRM : public QMainWindow
{
    Q_OBJECT

public:
    main_FRM();

    // Makes a command unavailable for the rest of the process.
    void switchOff(const QString &tool);
    // The text in the status band.
    void setStatusText(const QString &text);
    // Shows a form in front of this window, where it stays: a new one, or the one that is open already. A name that has
    // no form does nothing. Gives its window, nullptr without one.
    QWidget *openForm(const QString &form);

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QAction *addCommand(const Tool &tool);
    void buildMenus();
    void buildToolBar();
    void buildSideBar();
    void buildStatusBand();
    void startClock();
    void execute(const Tool &tool);
    void openRecord(const QString &form, const QString &column, const QVariant &value);
    bool confirmsExit();
    void layPicture(double below);
    void addWindowKeys();
    void place(QWidget *form, Placement placement, int step) const;

    QHash<QString, QAction *> m_commands;
    QHash<QString, QLabel *> m_texts; // of the status band
    OpenForms *m_forms;
    QToolBar *m_toolBar = nullptr;
    SideBar *m_sideBar = nullptr;
    Picture *m_picture = nullptr;
};

} // namespace tradewick
