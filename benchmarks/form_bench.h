// What runs in a process of its own, so that start and memory are measured alone.
#pragma once

#include <QStringList>

namespace tradewick
{

// arguments: "--child-login", or "--child-memory" with a database; gives the exit status.
int benchmarkChild(const QStringList &arguments);

} // namespace tradewick
