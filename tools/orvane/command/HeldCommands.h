#pragma once

#include "tools/orvane/cli/GlobalOptions.h"

#include <chrono>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

// Commands that are held down for as long as it is told, and are released in any case: at the end
// of the time, at an interrupt, after a failure, and, on a new connection, after the loss of the
// first, since the server does not release what a client held that is gone.
class HeldCommands final {
public:
    // Connects. Failure: a name that the simulator does not have; nothing is begun then.
    HeldCommands(const GlobalOptions& globals, std::vector<std::string> names);

    // Begins them, waits for `end` or an interrupt, and releases them. A failure of the waiting is
    // thrown when they are released. Failure: they could not be released.
    void HoldUntil(std::chrono::steady_clock::time_point end);

private:
    Options optionsOf(const GlobalOptions& globals) const;
    void begin();
    void wait(std::chrono::steady_clock::time_point end);
    void release();
    void releaseOnNewConnection();
    void endAll();

    const std::vector<std::string> names;
    bool isReleasing = false;
    std::size_t begun = 0;
    velmar::Client client;
};

// Registers commands. Failure, and a line for each: the simulator does not have them.
void registerOrRefuse(velmar::Client& client, const std::vector<std::string>& names);

} // namespace orvane::tool
