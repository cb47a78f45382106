#include "support/LoopbackListener.h"

#include <sys/socket.h>
#include <unistd.h>

#include "support/Sockets.h"

LoopbackListener::LoopbackListener(std::uint16_t port, std::optional<int> backlog)
    : socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    // Connections of an earlier test may linger on the port.
    setOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    const sockaddr_in address = loopbackAddress(port);
    checked(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), "bind");
    if (backlog) {
        checked(::listen(socket, *backlog), "listen");
    }
}

LoopbackListener::~LoopbackListener() {
    ::close(socket);
}

std::uint16_t LoopbackListener::Port() const {
    return portOf(socket, ::getsockname);
}

int LoopbackListener::Accept() const {
    if (!waitReadable(socket)) {
        return -1;
    }
    return checked(::accept4(socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC), "accept");
}
