// The password of a new user, kept out of the command line, which other users of the machine see.
#pragma once

#include <QString>

namespace tradewick
{

// TRADEWICK_USER_PASSWORD of the environment where it is set; otherwise asked for twice on the terminal, without
// showing it; without a terminal the first line of the standard input. Throws CommandError when the two differ or
// nothing comes.
QString newPassword();

} // namespace tradewick
