#pragma once

#include <functional>

#include "support/TcpPeer.h"

// A client of the plugin on the flight loop's own thread: it never waits for a frame, since only
// the caller can run one. Throws std::runtime_error when an answer does not come.
class BenchClient final : public TcpPeer {
public:
    // Connects; the plugin accepts in one of its next ticks.
    BenchClient() : TcpPeer(kPluginPort) {}

    // Runs frames until the plugin has accepted this client. Returns the plugin's end of the
    // connection, a descriptor of this process.
    int AwaitAcceptance(const std::function<void()>& runFrame) const;

    // Fills `answer` to its size, without allocating.
    void TakeAnswer(Bytes& answer);

private:
    // -1 until accepted.
    int acceptedSocket() const;
};
