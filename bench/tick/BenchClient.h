#pragma once

#include <functional>

#include "support/TcpPeer.h"

// A client of the plugin on the flight loop's own thread: it never waits for a frame that only the
// caller can run. An answer that does not come throws std::runtime_error.
class BenchClient final : public TcpPeer {
public:
    // Connects; the plugin accepts in one of its next ticks.
    BenchClient() : TcpPeer(kPluginPort) {}

    // Runs frames until the plugin has accepted this client. Returns the descriptor, in this
    // process, of the plugin's end of the connection.
    int AwaitAcceptance(const std::function<void()>& runFrame) const;

    // Fills `answer` to its size, and takes no memory for it.
    void TakeAnswer(Bytes& answer);

private:
    // -1 until accepted.
    int acceptedSocket() const;
};
