#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "headless/host/IFrameListener.h"

namespace headless {

// Announces the simulator on the network: after a frame, at most once a second of real time, it
// sends a datagram to UDP multicast 239.255.1.1, port 49707. Never waits: what cannot be sent at
// once is lost.
//
// The datagrams go where the system routes multicast; without such a route, only to this computer.
class Beacon final : public IFrameListener {
public:
    // The version as the simulator's dataref reports it, 121400. Throws std::system_error if there
    // are no sockets left.
    explicit Beacon(int simulatorVersion);
    ~Beacon() override;
    Beacon(const Beacon&) = delete;
    Beacon& operator=(const Beacon&) = delete;

    void BeforeFrame(double /*seconds*/) override {}
    void AfterFrame() override;

private:
    bool send() const;

    const std::vector<std::uint8_t> datagram;
    int socket;
    std::chrono::steady_clock::time_point due;
};

} // namespace headless
