// The drawings of the commands, one family: lines of one width on a grid of 24, in the colour that the palette has for
// texts, so that they are read on a dark ground as well. They stand in resources/icons.
#pragma once

#include <QIcon>

namespace tradewick
{

// The drawing of that name, sharp at any size and scale. Ends the program for one that is not there, which is a fault
// of the table that names it.
QIcon commandIcon(const QString &name);

} // namespace tradewick
