#pragma once

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "Bytes.h"
#include "Waiting.h"
#include "orvane/Options.h"

namespace orvane::detail {

// One TCP connection to the server: request, answer, request, answer.
//
// The destructor closes it. After any exception it can no longer be used.
class Connection final {
public:
    // Connects within Options::timeout, which does not include looking up a name. ConnectError
    // (UnknownHost), TimeoutError, CancelledError; their texts mention `doing`. The options must
    // outlive the connection.
    explicit Connection(const Options& options, std::string doing = "connecting");
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Sets the timeout and the cancellation of later exchanges.
    void use(const Options& others) { options = &others; }

    // Sends one request and returns the payload of its answer. Error texts mention `doing`:
    // TimeoutError, ClosedError, CancelledError; UnexpectedAnswer if more than `most` bytes are
    // announced, or bytes arrived before the request.
    Bytes exchange(std::span<const std::uint8_t> request, const std::string& doing,
                   std::size_t most);

private:
    void connectToAny(Clock::time_point deadline);
    // Returns 0 or an error number.
    int connectTo(const sockaddr_in& address, Clock::time_point deadline);
    void checkNothingUnread(const std::string& doing) const;
    void send(std::span<const std::uint8_t> request, const std::string& doing,
              Clock::time_point deadline) const;
    // Waits for the first byte of an answer.
    void awaitAnswer(const std::string& doing, Clock::time_point deadline) const;
    // `expected` describes what `target` will hold.
    void receive(std::span<std::uint8_t> target, const std::string& doing,
                 const std::string& expected, Clock::time_point deadline) const;
    // Throws unless `waited` is Ready.
    void check(Waited waited, const std::string& doing, const std::string& expected,
               const std::string& got) const;
    std::string timeoutText() const;
    void closeSocket() noexcept;

    const Options* options;
    const std::string connecting;
    int socket = -1;
};

// "host:port: doing: ", the beginning of every error text.
std::string errorPrefix(const Options& options, const std::string& doing);

} // namespace orvane::detail
