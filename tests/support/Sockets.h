#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

// Helpers for sockets in tests.

constexpr std::uint16_t kPluginPort = 48000;

// The result of a system call; throws std::system_error when it failed.
template <typename Result>
Result checked(Result result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

// 127.0.0.1.
sockaddr_in loopbackAddress(std::uint16_t port);
void setOption(int socket, int level, int option, int value);

// The port that ::getsockname or ::getpeername returns; 0 if there is none.
template <class GetName>
std::uint16_t portOf(int socket, GetName getName) {
    sockaddr_in address{};
    socklen_t length = sizeof(address);
    const bool found = getName(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
                       address.sin_family == AF_INET;
    return found ? ntohs(address.sin_port) : std::uint16_t{0};
}

// Whether something can be read now: bytes, the end, or an error.
bool isReadable(int socket);
// Whether the socket is connected and can send now.
bool isWritable(int socket);
// Wait, with a deadline, until the socket has something to read, or an error or hang-up.
bool waitReadable(int socket);
bool waitBroken(int socket);
