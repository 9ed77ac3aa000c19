// The clients of a server, each in a process of its own.
#pragma once

#include <QStringList>

namespace tradewick
{

// arguments: "--child-saves", "--child-painted-saves" or "--child-bare-saves", the server's data source, the client's
// number, the number of its first contract, how many it saves and, for the bare one, the file of a save's statements.
// Gives the exit status.
int serverBenchmarkChild(const QStringList &arguments);

} // namespace tradewick
