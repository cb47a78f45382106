#include "support/Sockets.h"

#include <poll.h>
#include <sys/socket.h>

namespace {

constexpr int kPatienceMs = 60'000;

bool waitFor(int socket, short events, short wanted, int timeoutMs) {
    pollfd entry{socket, events, 0};
    return ::poll(&entry, 1, timeoutMs) == 1 && (entry.revents & wanted) != 0;
}

} // namespace

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

bool isReadable(int socket) {
    return waitFor(socket, POLLIN, POLLIN | POLLERR | POLLHUP, 0);
}

bool isWritable(int socket) {
    pollfd entry{socket, POLLOUT, 0};
    return ::poll(&entry, 1, 0) == 1 && entry.revents == POLLOUT;
}

bool waitReadable(int socket) {
    return waitFor(socket, POLLIN, POLLIN, kPatienceMs);
}

bool waitBroken(int socket) {
    return waitFor(socket, 0, POLLERR | POLLHUP, kPatienceMs);
}
