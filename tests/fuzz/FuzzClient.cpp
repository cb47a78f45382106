#include "fuzz/FuzzClient.h"

#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "support/Sockets.h"

namespace {

constexpr std::size_t kLargestRead = 64UL * 1024;

} // namespace

void FuzzClient::connect() {
    socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopbackAddress(kPluginPort);
    ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

bool FuzzClient::Send(const Bytes& bytes) {
    if (socket == -1) {
        connect();
    }
    // Without SIGPIPE, which would be a finding in the plugin.
    return ::syscall(SYS_sendto, socket, bytes.data(), bytes.size(), MSG_NOSIGNAL, nullptr, 0) > 0;
}

bool FuzzClient::IsDelivered() const {
    int unacknowledged = 0;
    return ::ioctl(socket, SIOCOUTQ, &unacknowledged) == 0 && unacknowledged == 0;
}

bool FuzzClient::CanReceive() const {
    pollfd readable{socket, POLLIN, 0};
    return ::poll(&readable, 1, 0) == 1;
}

Bytes FuzzClient::Receive() {
    // Not on the heap, where the sanitizer fills all of it at each read.
    static std::array<unsigned char, kLargestRead> received;
    const ssize_t count = ::read(socket, received.data(), received.size());
    return {received.begin(), received.begin() + std::max<ssize_t>(count, 0)};
}

void FuzzClient::Close() {
    ::syscall(SYS_close, socket);
    socket = -1;
}

void FuzzClient::Reset() {
    const linger atOnce{1, 0};
    ::syscall(SYS_setsockopt, socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
    Close();
}

void FuzzClient::HalfClose() {
    ::shutdown(socket, SHUT_WR);
}
