#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/serve/HttpMessages.h"
#include "tools/orvane/serve/RequestBody.h"

namespace orvane::tool {

// Carries out what pages ask of the simulator, on a connection of its own, so that no reading waits
// for it. Usable from several threads; each call waits for the simulator's answer.
//
// A command is held as long as its page repeats this, and released two seconds after it last did;
// the destructor releases all.
class Controls final {
public:
    static constexpr std::chrono::seconds kHoldsFor{2};

    explicit Controls(const GlobalOptions& globals);
    ~Controls();
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    HttpAnswer Set(const Assignment& assignment);
    HttpAnswer Press(const std::string& command);
    HttpAnswer Hold(const CommandRequest& request);
    HttpAnswer Release(const CommandRequest& request);

private:
    using Clock = std::chrono::steady_clock;
    // The pages that hold a command, and until when.
    using Holders = std::map<std::string, Clock::time_point>;

    HttpAnswer carryOut(const std::function<HttpAnswer(velmar::Client&)>& task);
    velmar::Client& connected();
    bool renew(const CommandRequest& request);
    void releaseOverdue();
    void endOverdue();
    void end(const std::string& command);
    bool isHeld(const std::string& command);
    std::optional<std::string> takeOverdue(Clock::time_point now);
    Clock::time_point nextDeadline() const;

    const GlobalOptions& globals;
    // For the client; taken before the other.
    std::timed_mutex clientMutex;
    std::optional<velmar::Client> client;

    std::mutex mutex; // for all below
    std::condition_variable changed;
    std::map<std::string, Holders> held;
    bool isEnding = false;
    std::thread releaser;
};

} // namespace orvane::tool
