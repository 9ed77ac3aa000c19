// The texts of the toolkit's own dialogs and menus, in Chinese.
#pragma once

namespace tradewick
{

// Makes the toolkit speak Chinese for the rest of the process: print and file dialogs, buttons, the menus of text
// fields, dates and numbers. What its own catalogue lacks is here. Needs the application object.
void speakChinese();

} // namespace tradewick
