// What runs in a process of its own, so that its memory is measured alone.
#pragma once

#include <QStringList>

namespace tradewick
{

// arguments: "--child-memory" and a database; gives the exit status.
int benchmarkChild(const QStringList &arguments);

} // namespace tradewick
