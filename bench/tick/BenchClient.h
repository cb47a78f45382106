#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "support/Bytes.h"

// A client of the plugin on the flight loop's own thread: it never waits for a frame that only the
// caller can run. Failures throw std::system_error, and so does an answer that does not come.
class BenchClient final {
public:
    // Connects to the plugin's port; the plugin accepts in one of its next ticks.
    BenchClient();
    ~BenchClient();
    BenchClient(const BenchClient&) = delete;
    BenchClient& operator=(const BenchClient&) = delete;

    // Runs frames until the plugin has accepted this client. Returns the descriptor, in this
    // process, of the plugin's end of the connection.
    int AwaitAcceptance(const std::function<void()>& runFrame) const;

    void Send(const Bytes& bytes) const;
    // Fills `bytes` to its size.
    void Receive(Bytes& bytes) const;

private:
    // -1 until accepted.
    int acceptedSocket() const;

    int socket;
    std::uint16_t port;
};
