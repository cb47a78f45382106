#pragma once

#include "tools/demo/TarnelWire.h"

#include <chrono>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

struct addrinfo;

namespace demo {

// What went wrong on the way, with host, port and what was being done.
class NetworkError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Nobody was reached; any other NetworkError comes from a connection that had been made.
class ConnectError final : public NetworkError {
public:
    using NetworkError::NetworkError;
};

// A connection to a Tarnel server, closed with the object.
//
// Every call blocks until it is done or its time is over, and then throws a NetworkError. After an
// error the connection is of no further use. IPv4 only, as the server is.
class TcpClient final {
public:
    using Milliseconds = std::chrono::milliseconds;

    // Tries again and again until `timeout` is over, for a server that is still starting.
    TcpClient(const std::string& host, std::uint16_t port, Milliseconds timeout);
    ~TcpClient();
    TcpClient(const TcpClient&) = delete;
    TcpClient& operator=(const TcpClient&) = delete;

    // Hands all to the system, in one piece where it takes it so.
    void Send(std::span<const std::uint8_t> bytes, Milliseconds timeout);

    // Payload of the next answer frame, and not a byte beyond it. WireError: an impossible length.
    Bytes ReceiveFrame(Milliseconds timeout);

    // The socket itself, for a client that wants to misbehave. Stays ours.
    int Socket() const { return socket; }

private:
    using Clock = std::chrono::steady_clock;

    void connectOnce(const addrinfo& address, Clock::time_point deadline);
    void receive(std::span<std::uint8_t> target, Clock::time_point deadline);
    void waitFor(short events, Clock::time_point deadline, const char* doing) const;
    void closeSocket();
    [[noreturn]] void fail(const char* doing, const std::string& why) const;
    [[noreturn]] void failWithErrno(const char* doing) const;

    const std::string host;
    const std::uint16_t port;
    int socket = -1;
};

} // namespace demo
