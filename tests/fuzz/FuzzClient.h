#pragma once

#include "support/Bytes.h"

// A client of the plugin's port that never waits. It avoids the calls that SocketFaults
// replaces, so that only the plugin's calls fail.
class FuzzClient final {
public:
    FuzzClient() = default;
    ~FuzzClient() { Reset(); }
    FuzzClient(const FuzzClient&) = delete;
    FuzzClient& operator=(const FuzzClient&) = delete;

    // Connects first if needed. What the socket does not accept is lost: false if it is nothing.
    bool Send(const Bytes& bytes);
    // The plugin's side has all that was sent.
    bool IsDelivered() const;
    // Bytes, or the end of the connection.
    bool CanReceive() const;
    // What has come so far, at most 64 KiB.
    Bytes Receive();

    void Close();
    // The server sees an error.
    void Reset();
    // Sends nothing more; answers can still arrive.
    void HalfClose();

private:
    void connect();

    int socket = -1;
};
