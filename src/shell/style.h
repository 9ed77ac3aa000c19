// The look of the program: one quiet style sheet over Fusion and fonts that have Chinese letters.
#pragma once

class QApplication;

namespace tradewick
{

// Sets style, fonts and style sheet. The colours are those of the system's palette; locked fields are shown as such.
void applyStyle(QApplication &application);

} // namespace tradewick
