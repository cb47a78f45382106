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
// Closed with the object. After an exception of any kind it is of no further use.
class Connection final {
public:
    // Connects, within Options::timeout; looking up a name is not part of that time. ConnectError
    // (UnknownHost), TimeoutError, CancelledError, whose texts begin with `doing`. The options must
    // outlive the connection.
    explicit Connection(const Options& options, std::string doing = "connecting");
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // From now on, exchanges take as long and are cancelled as these say.
    void use(const Options& others) { options = &others; }

    // Sends one request and returns the payload of its answer. `doing` goes into the text of what
    // is thrown: TimeoutError, ClosedError, CancelledError; UnexpectedAnswer when more than `most`
    // bytes are announced, or something arrived that nobody had asked for.
    Bytes exchange(std::span<const std::uint8_t> request, const std::string& doing,
                   std::size_t most);

private:
    void connectToAny(Clock::time_point deadline);
    // Returns 0 or an error number.
    int connectTo(const sockaddr_in& address, Clock::time_point deadline);
    void checkThatNothingWaits(const std::string& doing) const;
    void send(std::span<const std::uint8_t> request, const std::string& doing,
              Clock::time_point deadline) const;
    // Until the first byte of an answer is there.
    void awaitAnswer(const std::string& doing, Clock::time_point deadline) const;
    // `expected` is a text: what `target` will hold.
    void receive(std::span<std::uint8_t> target, const std::string& doing,
                 const std::string& expected, Clock::time_point deadline) const;
    // Throws unless the wait ended in readiness.
    void check(Waited waited, const std::string& doing, const std::string& expected,
               const std::string& got) const;
    std::string timeoutText() const;
    void closeSocket() noexcept;

    const Options* options;
    const std::string connecting;
    int socket = -1;
};

// "host:port: doing: ", with which the text of every error begins.
std::string errorPrefix(const Options& options, const std::string& doing);

} // namespace orvane::detail
