#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "orvane/Export.h"
#include "orvane/Options.h"

namespace orvane {

// Options::host for the simulator that is heard on the network.
//
// Simulators send a beacon once a second, as UDP multicast to 239.255.1.1, port 49707. A client
// with this host listens for up to kListenTime, on all network interfaces, and connects to the
// first master whose server answers, as soon as it is heard. If there is none, it then tries the
// others, in the order in which they were heard. A reconnection first tries the address that it
// had, then listens again. Options::timeout applies to each address, not to the listening.
//
// Anybody on the network can send a beacon, and a beacon can name any sender. Give an address if
// that matters, or if there are several simulators.
inline constexpr const char* kAnyHost = "auto";

// Three beacons of a simulator.
inline constexpr std::chrono::milliseconds kListenTime{3'000};

// What a computer does for the simulation.
enum class SimulatorRole { Master, ExternalVisual, InstructorStation, Unknown };

struct HeardSimulator {
    std::string address; // IPv4, of the beacon's sender
    // Whatever the sender says: at most 500 bytes, and not necessarily printable.
    std::string computer;
    std::uint32_t version = 0; // 121400 is 12.1.4
    SimulatorRole role = SimulatorRole::Unknown;
    // Whether a server answers there, on Options::port.
    bool hasServer = false;
};

// Listens this long and returns the simulators that were heard, each address once, at most 64. Then
// looks whether a server answers at each, which takes up to Options::timeout for a computer that
// does not. Uses `port`, `timeout` and `cancelled` of the options. ConnectError: this computer
// cannot listen. CancelledError.
ORVANE_API std::vector<HeardSimulator> discover(const Options& options = {},
                                                std::chrono::milliseconds listenTime = kListenTime);

} // namespace orvane
