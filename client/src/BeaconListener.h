#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "Waiting.h"
#include "orvane/Discovery.h"

namespace orvane::detail {

// Hears the beacons that reach any network interface of this computer.
class BeaconListener final {
public:
    // ConnectError: beacons cannot be received. Error texts begin like those of a connection with
    // these options, which must outlive the listener.
    explicit BeaconListener(const Options& options);
    ~BeaconListener();
    BeaconListener(const BeaconListener&) = delete;
    BeaconListener& operator=(const BeaconListener&) = delete;

    // The next simulator at an address that was not returned before; nothing when the time is over.
    // CancelledError.
    std::optional<HeardSimulator> next(Clock::time_point end);

private:
    void open();
    bool joinOnAllInterfaces() const;
    std::optional<HeardSimulator> receive();
    [[noreturn]] void fail(const std::string& why) const;

    const Options& options;
    std::set<std::uint32_t> known;
    int socket = -1;
};

} // namespace orvane::detail
