#include "shell/style.h"

#include <QApplication>
#include <QFont>

namespace tradewick
{

namespace
{

// Widths and paddings follow the font, colours the palette: both are the system's to choose.
const char *const sheet = R"(
QMenuBar, QToolBar, QStatusBar { background: palette(window); }
QMenuBar { padding: 2px; border-bottom: 1px solid palette(midlight); }
QMenuBar::item { padding: 4px 8px; border-radius: 4px; }
QMenuBar::item:selected { background: palette(highlight); color: palette(highlighted-text); }
QToolBar { spacing: 4px; padding: 4px; border: 0; border-bottom: 1px solid palette(mid); }
#tools QToolBar { border: 0; }
QToolBar QLabel { padding: 0 10px; }
QToolBar QToolButton, #Band8 QToolButton { padding: 4px 8px; border: 1px solid transparent; border-radius: 4px; }
QToolBar QToolButton:hover, #Band8 QToolButton:hover { background: palette(midlight); }
QToolBar QToolButton:focus, #Band8 QToolButton:focus { border-color: palette(highlight); }
QToolBar QToolButton:pressed, QToolBar QToolButton:checked, #Band8 QToolButton:pressed { background: palette(mid); }
#Band8, #sideBarContent { background: palette(base); }
#Band8 QToolButton:disabled { color: palette(mid); }
#Band8 QToolButton[open="true"] { background: palette(window); border-left: 3px solid palette(highlight); font-weight: bold; }
#Band8 QToolButton[header="true"] { font-weight: bold; background: palette(window); }
QStatusBar { border-top: 1px solid palette(mid); }
QStatusBar::item { border: 0; }
QStatusBar QLabel { padding: 2px 4px; }
QPushButton { padding: 4px 14px; }
QLineEdit, QPlainTextEdit, QTextEdit { padding: 2px 4px; border: 1px solid palette(mid); border-radius: 3px; background: palette(base); }
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus { border-color: palette(highlight); }
QLineEdit:read-only, QPlainTextEdit:read-only, QTextEdit:read-only, QLineEdit:disabled { background: palette(window); border-color: palette(midlight); }
QLineEdit:read-only:focus, QPlainTextEdit:read-only:focus, QTextEdit:read-only:focus { border-color: palette(highlight); }
QTableView, QTreeView { border: 1px solid palette(mid); }
QTableView:focus, QTreeView:focus { border-color: palette(highlight); }
QComboBox QLineEdit { border: 0; padding: 0; }
QTableView { gridline-color: palette(midlight); }
QHeaderView::section { padding: 4px 6px; border: 0; border-right: 1px solid palette(midlight); border-bottom: 1px solid palette(mid); background: palette(window); }
#state { padding: 4px 10px; border-left: 6px solid palette(mid); }
#state[busy="true"] { border-left-color: palette(highlight); background: palette(base); font-weight: bold; }
QLabel[required="true"] { color: #b3261e; }
#lblTitle, #brand { font-size: 14pt; font-weight: bold; }
)";

} // namespace

void applyStyle(QApplication &application)
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    // Latin first: asked for a single Chinese face, the system would take it for Latin letters too.
    QFont font = QApplication::font();
    font.setFamilies(
        {"Liberation Sans", "WenQuanYi Zen Hei", "Noto Sans CJK SC", "Microsoft YaHei UI", "AR PL UMing CN"});
    QApplication::setFont(font);
    application.setStyleSheet(QString::fromUtf8(sheet));
}

} // namespace tradewick
