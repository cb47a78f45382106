#pragma once

#include <chrono>

namespace orvane::tool {

// Ctrl-C, SIGTERM and SIGHUP ask the tool to end cleanly: held commands are released, files
// finished. After `catchInterrupts` they only set a flag and end a wait.
void catchInterrupts();
bool isInterrupted();

// Sleeps until `moment` or an interrupt, whichever is first; false when interrupted.
bool sleepUntil(std::chrono::steady_clock::time_point moment);

} // namespace orvane::tool
