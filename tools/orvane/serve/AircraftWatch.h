#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/serve/Hub.h"

namespace orvane::tool {

// Asks once a second which aircraft is loaded, on a connection and a thread of its own, and tells
// the hub when it is another one. Silent about its own connection.
class AircraftWatch final {
public:
    AircraftWatch(const GlobalOptions& globals, Hub& hub);
    ~AircraftWatch();
    AircraftWatch(const AircraftWatch&) = delete;
    AircraftWatch& operator=(const AircraftWatch&) = delete;

private:
    void watch();
    void watchOneConnection();
    // False at the end.
    bool rest();
    bool isOver();

    const GlobalOptions& globals;
    Hub& hub;
    std::mutex mutex;
    std::condition_variable changed;
    bool isEnding = false;
    std::thread thread;
};

} // namespace orvane::tool
