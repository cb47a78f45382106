#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "support/Bytes.h"
#include "support/Sockets.h"

// A descriptor that somebody accepted, to be closed by whoever takes it.
struct AcceptedSocket {
    int descriptor;
};

// The far end of a TCP connection over loopback, driven by a test.
//
// It receives and sends by calls that SocketFaults leaves alone, so that planned failures of the
// code under test do not hit it. What fails throws std::system_error.
class TcpPeer {
public:
    // Connects to 127.0.0.1; the server may accept later. With a small receive buffer, in bytes,
    // the server has to send a large answer in parts.
    explicit TcpPeer(std::uint16_t port, int receiveBuffer = 0);
    // Begins to connect; IsConnected tells when.
    struct WithoutWaiting {};
    TcpPeer(std::uint16_t port, WithoutWaiting);
    explicit TcpPeer(AcceptedSocket accepted);
    ~TcpPeer();
    TcpPeer(const TcpPeer&) = delete;
    TcpPeer& operator=(const TcpPeer&) = delete;

    bool IsConnected() const;

    // Sends all of it; blocks only if the other side never reads.
    void Send(const Bytes& bytes) const;
    // Waits until the server's system has taken all that was sent, whether or not the server has
    // looked at it; false if it has no room.
    bool IsDelivered() const;
    // What has arrived so far, at most `max` bytes. Never waits.
    Bytes Receive(std::size_t max = std::numeric_limits<std::size_t>::max());
    // Waits, with a deadline, for so many bytes. Fewer when the connection ends before.
    Bytes Await(std::size_t size);
    // The same without allocating. Return the number of bytes.
    std::size_t ReceiveInto(unsigned char* bytes, std::size_t max);
    std::size_t AwaitInto(unsigned char* bytes, std::size_t size);
    // Whether an earlier Receive ran into the other side's orderly end, or into a reset.
    bool SawEnd() const { return sawEnd; }
    bool SawReset() const { return sawReset; }
    bool HasEnded() const { return sawEnd || sawReset; }

    // Of this end.
    std::uint16_t Port() const;

    // Says that no more comes, and goes on receiving.
    void HalfClose() const;
    // Closing a second time does nothing. With a reset, the other side gets no orderly end.
    void Close();
    void CloseWithReset();

private:
    int socket = -1;
    bool sawEnd = false;
    bool sawReset = false;
};
