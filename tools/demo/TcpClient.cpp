#include "tools/demo/TcpClient.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <thread>

namespace demo {

namespace {

constexpr std::chrono::milliseconds kRetryInterval(50);

using Address = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

std::string place(const std::string& host, std::uint16_t port) {
    return host + ":" + std::to_string(port);
}

std::string errorText(int error) {
    return std::generic_category().message(error);
}

Address resolve(const std::string& host, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int result = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (result != 0) {
        throw ConnectError("cannot connect to " + place(host, port) + ": " +
                           ::gai_strerror(result));
    }
    return {found, &::freeaddrinfo};
}

// Rounded up, so that a wait does not end just before its deadline. 0 once it is over.
int millisecondsUntil(std::chrono::steady_clock::time_point deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1'000'000'000));
}

// Waits for a connection under way. Returns 0 or an error number.
int finishConnecting(int socket, std::chrono::steady_clock::time_point deadline) {
    pollfd waited{socket, POLLOUT, 0};
    const int ready = ::poll(&waited, 1, millisecondsUntil(deadline));
    if (ready <= 0) {
        return ready == 0 ? ETIMEDOUT : errno;
    }
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

} // namespace

TcpClient::TcpClient(const std::string& serverHost, std::uint16_t serverPort, Milliseconds timeout)
    : host(serverHost), port(serverPort) {
    const auto deadline = Clock::now() + timeout;
    const Address address = resolve(host, port);
    for (;;) {
        try {
            connectOnce(*address, deadline);
            return;
        } catch (const ConnectError&) {
            closeSocket();
            if (Clock::now() + kRetryInterval >= deadline) {
                throw;
            }
        }
        std::this_thread::sleep_for(kRetryInterval);
    }
}

TcpClient::~TcpClient() {
    closeSocket();
}

void TcpClient::Send(std::span<const std::uint8_t> bytes, Milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN) {
            waitFor(POLLOUT, deadline, "sending a request");
        } else if (errno != EINTR) {
            failWithErrno("sending a request");
        }
    }
}

Bytes TcpClient::ReceiveFrame(Milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    std::array<std::uint8_t, kFrameHeaderSize> header{};
    receive(header, deadline);
    Bytes payload(DecodeFrameHeader(header));
    receive(payload, deadline);
    return payload;
}

void TcpClient::connectOnce(const addrinfo& address, Clock::time_point deadline) {
    socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) {
        throw ConnectError("cannot make a socket: " + errorText(errno));
    }
    int error = ::connect(socket, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        error = finishConnecting(socket, deadline);
    }
    if (error != 0) {
        throw ConnectError("cannot connect to " + place(host, port) + ": " + errorText(error));
    }
    // A request is one small write that waits for its answer; nothing is gained by holding it back.
    const int one = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

void TcpClient::receive(std::span<std::uint8_t> target, Clock::time_point deadline) {
    constexpr const char* kDoing = "waiting for an answer";
    while (!target.empty()) {
        const ssize_t received = ::recv(socket, target.data(), target.size(), 0);
        if (received > 0) {
            target = target.subspan(static_cast<std::size_t>(received));
        } else if (received == 0) {
            fail(kDoing, "the server closed the connection");
        } else if (errno == EAGAIN) {
            waitFor(POLLIN, deadline, kDoing);
        } else if (errno != EINTR) {
            failWithErrno(kDoing);
        }
    }
}

void TcpClient::waitFor(short events, Clock::time_point deadline, const char* doing) const {
    pollfd waited{socket, events, 0};
    const int ready = ::poll(&waited, 1, millisecondsUntil(deadline));
    if (ready == 0) {
        fail(doing, "the time is over");
    }
    if (ready < 0 && errno != EINTR) {
        failWithErrno(doing);
    }
}

void TcpClient::closeSocket() {
    if (socket >= 0) {
        ::close(socket);
        socket = -1;
    }
}

void TcpClient::fail(const char* doing, const std::string& why) const {
    throw NetworkError(place(host, port) + ": " + doing + ": " + why);
}

void TcpClient::failWithErrno(const char* doing) const {
    fail(doing, errorText(errno));
}

} // namespace demo
