#include "Connection.h"

#include <netdb.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

#include "ByteReader.h"
#include "UnexpectedAnswer.h"
#include "UnknownHost.h"
#include "orvane/Errors.h"

namespace orvane::detail {

namespace {

constexpr const char* kLength = "the length of an answer";
constexpr std::size_t kHeaderSize = 4;

using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

std::string errorText(int error) {
    return std::generic_category().message(error);
}

std::string countOfBytes(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

Addresses resolve(const Options& options, const std::string& doing) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int result =
        ::getaddrinfo(options.host.c_str(), std::to_string(options.port).c_str(), &hints, &found);
    if (result == EAI_NONAME) {
        throw UnknownHost(errorPrefix(options, doing) + ::gai_strerror(result));
    }
    if (result != 0) {
        throw ConnectError(errorPrefix(options, doing) + ::gai_strerror(result));
    }
    return {found, &::freeaddrinfo};
}

[[noreturn]] void failLost(const Options& options, const std::string& doing,
                           const std::string& expected, const std::string& got) {
    throw ClosedError(errorPrefix(options, doing) + "expected " + expected + ", got " + got);
}

} // namespace

std::string errorPrefix(const Options& options, const std::string& doing) {
    return options.host + ":" + std::to_string(options.port) + ": " + doing + ": ";
}

Connection::Connection(const Options& options, std::string doing)
    : options(&options), connecting(std::move(doing)) {
    try {
        connectToAny(fromNow(options.timeout));
    } catch (...) {
        closeSocket();
        throw;
    }
}

Connection::~Connection() {
    closeSocket();
}

Bytes Connection::exchange(std::span<const std::uint8_t> request, const std::string& doing,
                           std::size_t most) {
    const auto deadline = fromNow(options->timeout);
    checkNothingUnread(doing);
    send(request, doing, deadline);
    std::array<std::uint8_t, kHeaderSize> header{};
    awaitAnswer(doing, deadline);
    receive(header, doing, kLength, deadline);
    const std::uint32_t length = ByteReader(header).readUInt32();
    if (length > most) {
        throw UnexpectedAnswer("an answer of at most " + countOfBytes(most), countOfBytes(length));
    }
    Bytes payload(length);
    receive(payload, doing, "an answer of " + countOfBytes(length), deadline);
    return payload;
}

void Connection::connectToAny(Clock::time_point deadline) {
    const Addresses addresses = resolve(*options, connecting);
    int error = 0;
    for (const addrinfo* next = addresses.get(); next != nullptr; next = next->ai_next) {
        sockaddr_in address{};
        std::memcpy(&address, next->ai_addr, sizeof address);
        error = connectTo(address, deadline);
        if (error == 0) {
            // Requests are single writes that wait for an answer: delaying them gains nothing.
            const int one = 1;
            ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
            return;
        }
        closeSocket();
    }
    throw ConnectError(errorPrefix(*options, connecting) + errorText(error));
}

int Connection::connectTo(const sockaddr_in& address, Clock::time_point deadline) {
    socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) {
        return errno;
    }
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        return 0;
    }
    if (errno != EINPROGRESS) {
        return errno;
    }
    check(waitFor(socket, POLLOUT, deadline, options->cancelled), connecting, "a connection",
          "none");
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

// Detects a connection that has ended or is out of step, before anything is sent on it.
void Connection::checkNothingUnread(const std::string& doing) const {
    std::uint8_t byte = 0;
    ssize_t waiting = 0;
    do {
        waiting = ::recv(socket, &byte, 1, MSG_PEEK);
    } while (waiting < 0 && errno == EINTR);
    if (waiting > 0) {
        throw UnexpectedAnswer("no bytes before the request", "some");
    }
    if (waiting == 0) {
        failLost(*options, doing, "an open connection", "a closed one");
    }
    if (errno != EAGAIN) {
        failLost(*options, doing, "an open connection", errorText(errno));
    }
}

// Usually the first call sends everything; a full socket takes the rest later.
void Connection::send(std::span<const std::uint8_t> request, const std::string& doing,
                      Clock::time_point deadline) const {
    const std::string expected = "room for a request of " + countOfBytes(request.size());
    std::size_t sent = 0;
    while (sent < request.size()) {
        const auto rest = request.subspan(sent);
        const ssize_t taken = ::send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
        if (taken >= 0) {
            sent += static_cast<std::size_t>(taken);
        } else if (errno == EAGAIN) {
            check(waitFor(socket, POLLOUT, deadline, options->cancelled), doing, expected,
                  "room for " + std::to_string(sent));
        } else if (errno != EINTR) {
            failLost(*options, doing, expected, errorText(errno));
        }
    }
}

void Connection::awaitAnswer(const std::string& doing, Clock::time_point deadline) const {
    const Waited waited = waitFor(socket, POLLIN, deadline, options->cancelled);
    if (waited == Waited::Late) {
        throw TimeoutError(errorPrefix(*options, doing) + "no answer within " + timeoutText() +
                           " (is the simulator paused or loading?)");
    }
    check(waited, doing, kLength, countOfBytes(0));
}

void Connection::receive(std::span<std::uint8_t> target, const std::string& doing,
                         const std::string& expected, Clock::time_point deadline) const {
    std::size_t received = 0;
    while (received < target.size()) {
        const auto rest = target.subspan(received);
        const ssize_t result = ::recv(socket, rest.data(), rest.size(), 0);
        const std::string got = countOfBytes(received);
        if (result > 0) {
            received += static_cast<std::size_t>(result);
        } else if (result == 0) {
            failLost(*options, doing, expected, got + " and the end of the connection");
        } else if (errno == EAGAIN) {
            check(waitFor(socket, POLLIN, deadline, options->cancelled), doing, expected, got);
        } else if (errno != EINTR) {
            failLost(*options, doing, expected, got + " and: " + errorText(errno));
        }
    }
}

void Connection::check(Waited waited, const std::string& doing, const std::string& expected,
                       const std::string& got) const {
    if (waited == Waited::Ready) {
        return;
    }
    const std::string text = errorPrefix(*options, doing) + "expected " + expected;
    if (waited == Waited::Late) {
        throw TimeoutError(text + " within " + timeoutText() + ", got " + got);
    }
    throw CancelledError(text + ", was cancelled and got " + got);
}

std::string Connection::timeoutText() const {
    return std::to_string(options->timeout.count()) + " ms";
}

void Connection::closeSocket() noexcept {
    if (socket >= 0) {
        ::close(socket);
        socket = -1;
    }
}

} // namespace orvane::detail
