// What a desktop does while it waits for the server: asks whether the reading goes on.
#pragma once

#include "data/mariadb_server.h"

#include <QVariant>

namespace tradewick
{

// From now on waiting for the server's answers asks Watch; a reading that is stopped is ended on the server, too, over
// a second connection to the source.
//   driverHandle: of the driver of an open connection; nothing happens for another driver's.
void watchAnswers(const QVariant &driverHandle, const MariaDbSource &source);

} // namespace tradewick
