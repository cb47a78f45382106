#include "support/LoopbackListener.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/Sockets.h"

LoopbackListener::LoopbackListener(std::uint16_t port, std::optional<int> backlog)
    : socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    // Connections of an earlier test may linger on the port.
    setOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    sockaddr_in address = loopbackAddress(port);
    socklen_t length = sizeof(address);
    checked(::bind(socket, reinterpret_cast<const sockaddr*>(&address), length), "bind");
    if (backlog) {
        checked(::listen(socket, *backlog), "listen");
    }
    checked(::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length), "getsockname");
    this->port = ntohs(address.sin_port);
}

LoopbackListener::~LoopbackListener() {
    ::close(socket);
}

int LoopbackListener::Accept() const {
    if (!waitReadable(socket)) {
        return -1;
    }
    return checked(::accept4(socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC), "accept");
}
