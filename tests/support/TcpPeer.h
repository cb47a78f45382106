#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "support/Bytes.h"
#include "support/Sockets.h"

// An accepted descriptor; whoever takes it closes it.
struct AcceptedSocket {
    int descriptor;
};

// The far end of a TCP connection over loopback, driven by a test.
//
// It receives and sends with calls that SocketFaults does not replace. Throws std::system_error on
// failure.
class TcpPeer {
public:
    // Connects to 127.0.0.1; the server may accept later. With a small receive buffer, in bytes,
    // the server has to send a large answer in parts.
    explicit TcpPeer(std::uint16_t port, int receiveBuffer = 0);
    // Begins to connect; see IsConnected.
    struct WithoutWaiting {};
    TcpPeer(std::uint16_t port, WithoutWaiting);
    explicit TcpPeer(AcceptedSocket accepted);
    ~TcpPeer();
    TcpPeer(const TcpPeer&) = delete;
    TcpPeer& operator=(const TcpPeer&) = delete;

    bool IsConnected() const;

    // Sends all bytes; blocks only if the other side does not read.
    void Send(const Bytes& bytes) const;
    // Waits until the server's system has received all that was sent, read or not; false if it has
    // no room.
    bool IsDelivered() const;
    // What has arrived so far, at most `max` bytes. Never waits.
    Bytes Receive(std::size_t max = std::numeric_limits<std::size_t>::max());
    // Waits, with a deadline, for `size` bytes. Fewer if the connection ends first.
    Bytes Await(std::size_t size);
    // The same without allocating. Return the number of bytes.
    std::size_t ReceiveInto(unsigned char* bytes, std::size_t max);
    std::size_t AwaitInto(unsigned char* bytes, std::size_t size);
    // Whether an earlier Receive met the other side's orderly end, or a reset.
    bool SawEnd() const { return sawEnd; }
    bool SawReset() const { return sawReset; }
    bool HasEnded() const { return sawEnd || sawReset; }

    // The port of this end.
    std::uint16_t Port() const;

    // Closes the sending direction; can still receive.
    void HalfClose() const;
    // Closing a second time does nothing. With a reset, the other side gets no orderly end.
    void Close();
    void CloseWithReset();

private:
    int socket = -1;
    bool sawEnd = false;
    bool sawReset = false;
};
