#pragma once

#include <chrono>

namespace orvane::tool {

// Ctrl-C, SIGTERM and SIGHUP ask the tool to end in good order: what it holds is released, what it
// writes is finished. From `catchInterrupts` on they only set a flag, and end what waits.
void catchInterrupts();
bool isInterrupted();

// Sleeps until `moment` or an interrupt, whichever is first; false when interrupted.
bool sleepUntil(std::chrono::steady_clock::time_point moment);

} // namespace orvane::tool
