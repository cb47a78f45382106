#include "support/TcpPeer.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "support/Deadline.h"

namespace {

constexpr int kPatienceMs = 20'000;

int checked(int result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

sockaddr_in loopbackAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void setOption(int socket, int level, int option, int value) {
    checked(::setsockopt(socket, level, option, &value, sizeof(value)), "setsockopt");
}

void setNonBlocking(int socket) {
    int enabled = 1;
    checked(::ioctl(socket, FIONBIO, &enabled), "FIONBIO");
}

bool waitFor(int socket, short events, short wanted, int timeoutMs) {
    pollfd entry{socket, events, 0};
    return ::poll(&entry, 1, timeoutMs) == 1 && (entry.revents & wanted) != 0;
}

bool isReadable(int socket) {
    return waitFor(socket, POLLIN, POLLIN | POLLERR | POLLHUP, 0);
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

TcpPeer::~TcpPeer() {
    Close();
}

void TcpPeer::Send(const Bytes& bytes) const {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t result =
            ::sendto(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL, nullptr, 0);
        sent += static_cast<std::size_t>(checked(static_cast<int>(result), "send"));
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

LoopbackListener::LoopbackListener()
    : socket(checked(::socket(AF_INET, SOCK_STREAM, 0), "socket")) {
    sockaddr_in address = loopbackAddress(0);
    socklen_t length = sizeof(address);
    checked(::bind(socket, reinterpret_cast<const sockaddr*>(&address), length), "bind");
    checked(::listen(socket, 4), "listen");
    checked(::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length), "getsockname");
    port = ntohs(address.sin_port);
}

LoopbackListener::~LoopbackListener() {
    ::close(socket);
}

int LoopbackListener::Accept() const {
    const int accepted = checked(::accept(socket, nullptr, nullptr), "accept");
    setNonBlocking(accepted);
    return accepted;
}

bool waitReadable(int socket) {
    return waitFor(socket, POLLIN, POLLIN, kPatienceMs);
}

bool waitBroken(int socket) {
    return waitFor(socket, 0, POLLERR | POLLHUP, kPatienceMs);
}
