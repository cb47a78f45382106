#pragma once

#include <memory>

#include "support/TcpPeer.h"

// A client that does not wait for its connection, but tries again.
class EagerClient final {
public:
    EagerClient() { connect(); }

    // Sends the request once connected, and receives what has arrived.
    void Advance(const Bytes& request) {
        if (!isSent && !peer->IsConnected()) {
            connect();
            return;
        }
        if (!isSent) {
            peer->Send(request);
            isSent = true;
        }
        received = join({received, peer->Receive()});
    }

    const Bytes& Received() const { return received; }

private:
    void connect() { peer = std::make_unique<TcpPeer>(kPluginPort, TcpPeer::WithoutWaiting{}); }

    std::unique_ptr<TcpPeer> peer;
    bool isSent = false;
    Bytes received;
};
