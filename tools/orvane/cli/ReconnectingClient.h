#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

// A client for commands that run until they are stopped: when the simulator goes away, it waits and
// reconnects.
class ReconnectingClient final {
public:
    using Tell = std::function<void(const std::string&)>;

    // Connects. An interrupt or `end` stops it without a failure. `tell` gets a line when the
    // connection is lost, and an empty one when it is back.
    ReconnectingClient(const GlobalOptions& globals, std::chrono::steady_clock::time_point end,
                       Tell tell);

    velmar::Client& Client() { return client; }
    bool IsOver() const;

    // Carries out `step`. False if the connection was lost or an answer did not come; by then it
    // has reconnected, or is over.
    bool Try(const std::function<void()>& step);

private:
    Options optionsOf(const GlobalOptions& globals) const;
    void restore();

    const std::chrono::steady_clock::time_point end;
    const Tell tell;
    velmar::Client client;
};

} // namespace orvane::tool
