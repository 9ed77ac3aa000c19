// What a user of this machine has set up, from program to program. Nothing of it is the office's: that stands in the
// database.
#pragma once

#include <QSettings>

namespace tradewick
{

// The settings of the user who is logged in to the machine. Where no file can be written they hold nothing, and nobody
// is told: the program works as it does for a new user.
QSettings userSettings();

} // namespace tradewick
