// From process start to the login form.
#pragma once

#include <chrono>

namespace tradewick
{

// How long the splash stays up before the main window appears.
constexpr std::chrono::milliseconds splashTime{600};

// Opens the shared connection, loads the company profile, shows splash, main window and, modally, the login. Returns
// when the login form is closed; where the connection fails the settings dialog is shown and the process ends.
// Throws DataError for failures that nothing handles.
void Main(std::chrono::milliseconds splash = splashTime);

// Shows the splash, reads the local settings, sets gConnStr and opens gConn. Gives whether start-up goes on: the error
// left pending by then must be the one of a Null among the settings, an empty password in the ordinary case.
// Otherwise the settings dialog has been shown and the process told to end.
bool OpenDataLink();

} // namespace tradewick
