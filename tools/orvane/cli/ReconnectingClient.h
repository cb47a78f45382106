#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

// A client for commands that go on until they are told to end: when the simulator goes away, it
// waits and connects again.
class ReconnectingClient final {
public:
    using Tell = std::function<void(const std::string&)>;

    // Connects. An interrupt and `end` end it without a failure. `tell` gets a line when the
    // connection is lost, and an empty one when it is there again.
    ReconnectingClient(const GlobalOptions& globals, std::chrono::steady_clock::time_point end,
                       Tell tell);

    velmar::Client& Client() { return client; }
    bool IsOver() const;

    // Carries out `step`. False when it failed because the connection was lost or an answer did not
    // come; the connection is there again then, or the end has come.
    bool Try(const std::function<void()>& step);

private:
    Options optionsOf(const GlobalOptions& globals) const;
    void restore();

    const std::chrono::steady_clock::time_point end;
    const Tell tell;
    velmar::Client client;
};

} // namespace orvane::tool
