// The commands of the main window as data: bands and the Tools in them.
#pragma once

#include <QString>

#include <vector>

namespace tradewick
{

struct Tool {
    QString name;
    QString caption; // empty: a separator
    QString opens;   // form that a click opens, or exitCommand; empty: a click does nothing
    QString icon{};  // name of its drawing (shell/icons); none for texts and separators
};

inline const QString exitCommand = QStringLiteral("exit");

struct Band {
    QString name;
    QString caption;
    std::vector<Tool> tools;
    QString head; // of a drop-down menu: the Tool of the menu bar that opens it
};

const std::vector<Band> &menuBands(); // drop-down menus in the order of the menu bar
const std::vector<Band> &sideBands(); // child bands of the side bar
const Band &toolBand();               // the tool bar; a Tool without a caption is a separator
const Band &statusBand();             // its Tools are texts, one without a caption is blank

inline const QString clockTool = QStringLiteral("Tool23");
inline const QString statusTextTool = QStringLiteral("Tool27");

} // namespace tradewick
