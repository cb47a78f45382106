#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <stdexcept>

// A TCP socket on the plugin's port: another program that listens there, or a client.
class LoopbackSocket final {
public:
    LoopbackSocket() : socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP)) {
        // Connections of an earlier test may linger on the port.
        const int enabled = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &enabled, sizeof(enabled));
    }
    ~LoopbackSocket() { ::close(socket); }
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    void Listen() {
        const sockaddr_in address = pluginAddress(INADDR_ANY);
        if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
            ::listen(socket, 1) != 0) {
            throw std::runtime_error("the port of the plugin is taken already");
        }
    }

    // 0, or why the plugin cannot be reached.
    int Connect() {
        const sockaddr_in address = pluginAddress(INADDR_LOOPBACK);
        const int result =
            ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        return result == 0 ? 0 : errno;
    }

private:
    static sockaddr_in pluginAddress(in_addr_t host) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(48000);
        address.sin_addr.s_addr = htonl(host);
        return address;
    }

    int socket;
};
