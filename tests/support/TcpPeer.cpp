#include "support/TcpPeer.h"

#include <linux/sockios.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "support/Deadline.h"
#include "support/Sockets.h"

namespace {

// Only Send and Await may wait, and they would not if the socket were non-blocking.
void setNonBlocking(int socket, bool isNonBlocking) {
    int enabled = isNonBlocking ? 1 : 0;
    checked(::ioctl(socket, FIONBIO, &enabled), "FIONBIO");
}

} // namespace

TcpPeer::TcpPeer(std::uint16_t port, int receiveBuffer)
    : socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    if (receiveBuffer > 0) {
        setOption(socket, SOL_SOCKET, SO_RCVBUF, receiveBuffer);
    }
    const sockaddr_in address = loopbackAddress(port);
    checked(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
            "connect");
}

TcpPeer::TcpPeer(std::uint16_t port, WithoutWaiting)
    : socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_in address = loopbackAddress(port);
    setNonBlocking(socket, true);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1 &&
        errno != EINPROGRESS) {
        checked(-1, "connect");
    }
    setNonBlocking(socket, false);
}

TcpPeer::TcpPeer(AcceptedSocket accepted) : socket(accepted.descriptor) {
    setNonBlocking(socket, false);
}

TcpPeer::~TcpPeer() {
    Close();
}

bool TcpPeer::IsConnected() const {
    return isWritable(socket);
}

void TcpPeer::Send(const Bytes& bytes) const {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t result =
            ::sendto(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL, nullptr, 0);
        sent += static_cast<std::size_t>(checked(result, "send"));
    }
}

bool TcpPeer::IsDelivered() const {
    int underWay = 0;
    const auto look = [&] { checked(::ioctl(socket, SIOCOUTQ, &underWay), "SIOCOUTQ"); };
    look();
    return driveUntil(look, [&] { return underWay == 0; });
}

Bytes TcpPeer::Receive(std::size_t max) {
    Bytes bytes;
    std::array<unsigned char, 0x10000> chunk;
    std::size_t received = 0;
    do {
        received = ReceiveInto(chunk.data(), std::min(chunk.size(), max - bytes.size()));
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + static_cast<long>(received));
    } while (received == chunk.size());
    return bytes;
}

Bytes TcpPeer::Await(std::size_t size) {
    Bytes bytes(size);
    bytes.resize(AwaitInto(bytes.data(), size));
    return bytes;
}

std::size_t TcpPeer::AwaitInto(unsigned char* bytes, std::size_t size) {
    std::size_t received = 0;
    while (received < size && !HasEnded() && waitReadable(socket)) {
        received += ReceiveInto(bytes + received, size - received);
    }
    return received;
}

std::size_t TcpPeer::ReceiveInto(unsigned char* bytes, std::size_t max) {
    std::size_t received = 0;
    while (received < max && isReadable(socket)) {
        const ssize_t result = ::read(socket, bytes + received, max - received);
        if (result <= 0) {
            sawEnd = result == 0;
            sawReset = result == -1 && errno == ECONNRESET;
            break;
        }
        received += static_cast<std::size_t>(result);
    }
    return received;
}

std::uint16_t TcpPeer::Port() const {
    return portOf(socket, ::getsockname);
}

void TcpPeer::HalfClose() const {
    checked(::shutdown(socket, SHUT_WR), "shutdown");
}

void TcpPeer::Close() {
    if (socket != -1) {
        ::close(socket);
        socket = -1;
    }
}

void TcpPeer::CloseWithReset() {
    if (socket == -1) {
        return;
    }
    const linger atOnce{1, 0};
    checked(::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce)), "SO_LINGER");
    Close();
}
