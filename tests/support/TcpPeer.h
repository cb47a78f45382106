#pragma once

#include <cstddef>
#include <cstdint>

#include "support/Bytes.h"

// The far end of a TCP connection over loopback, driven by a test.
//
// It uses `read` and `write` only, so that planned failures of the socket calls of the code under
// test do not hit it. Set-up failures throw std::system_error.
class TcpPeer final {
public:
    // Connects to 127.0.0.1.
    explicit TcpPeer(std::uint16_t port);
    ~TcpPeer();
    TcpPeer(const TcpPeer&) = delete;
    TcpPeer& operator=(const TcpPeer&) = delete;

    // Sends all of it; blocks only if the other side never reads.
    void Send(const Bytes& bytes) const;
    // What has arrived so far, at most `max` bytes. Never waits.
    Bytes Receive(std::size_t max = 0x100000);
    // The same without allocating. Returns the number of bytes.
    std::size_t ReceiveInto(unsigned char* bytes, std::size_t max);
    // Whether an earlier Receive ran into the other side's orderly end, or into a reset.
    bool SawEnd() const { return sawEnd; }
    bool SawReset() const { return sawReset; }

    void HalfClose() const;
    void Close();
    // The other side gets a reset instead of an orderly end.
    void CloseWithReset();

private:
    int socket = -1;
    bool sawEnd = false;
    bool sawReset = false;
};

// A listening socket on a port that the system chooses.
class LoopbackListener final {
public:
    LoopbackListener();
    ~LoopbackListener();
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    std::uint16_t Port() const { return port; }
    // Waits for a client. The socket is non-blocking and the caller's.
    int Accept() const;

private:
    int socket = -1;
    std::uint16_t port = 0;
};

// Wait, with a deadline, until the socket has something to read, or has met an error or a hang-up.
bool waitReadable(int socket);
bool waitBroken(int socket);
