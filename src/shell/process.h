// The end of the process and where its local files lie.
#pragma once

#include <QString>

#include <functional>

namespace tradewick
{

// Ends the process at once with that exit code: no window is asked and nothing is stored. Returns only where another
// end was set.
void endProcess(int code);
// Sets what endProcess does; an empty function restores the real end.
void setEndProcess(std::function<void(int)> end);

// The folder of the local settings file: that of the executable unless another was set.
QString applicationDirectory();
void setApplicationDirectory(const QString &directory);

// The local settings file, and its connection string.
QString localSettingsFile();
QString localConnectionString();

} // namespace tradewick
