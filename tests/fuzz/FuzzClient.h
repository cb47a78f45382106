#pragma once

#include "support/Bytes.h"

// A client of the plugin's port that never waits. It goes around the calls that SocketFaults takes
// over, which are the plugin's alone to fail.
class FuzzClient final {
public:
    FuzzClient() = default;
    ~FuzzClient() { Reset(); }
    FuzzClient(const FuzzClient&) = delete;
    FuzzClient& operator=(const FuzzClient&) = delete;

    // Connects first where needed. What the network does not take is lost.
    void Send(const Bytes& bytes);
    // What has come so far, at most 64 KiB.
    Bytes Receive();

    void Close();
    // The server learns of it by an error.
    void Reset();
    // Nothing more is sent; answers can still come.
    void HalfClose();

private:
    void connect();

    int socket = -1;
};
