#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "orvane/Export.h"

namespace orvane {

// What can go wrong between a client and the server. The text names the host, the port and the
// call, and, where it applies, what was expected and what came instead.
class ORVANE_API Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The server was not reached: no such host, nobody listens, no route.
class ORVANE_API ConnectError : public Error {
public:
    using Error::Error;
};

// No answer in time. The simulator may be loading scenery, or the request was lost in the server's
// buffer. The connection is closed, since a late answer would be taken for the next one.
class ORVANE_API TimeoutError final : public Error {
public:
    using Error::Error;
};

// The connection ended while it was in use, usually because the simulator did.
class ORVANE_API ClosedError final : public Error {
public:
    using Error::Error;
};

// Twice in a row, the answer did not fit the request. The connection is closed.
class ORVANE_API ProtocolError final : public Error {
public:
    using Error::Error;
};

// Options::cancelled returned true. The connection is closed, for the same reason as after a
// TimeoutError. Held commands were released, or the text names those that may still be down.
class ORVANE_API CancelledError final : public Error {
public:
    using Error::Error;
};

// The simulator does not have some of the names.
class ORVANE_API Refused final : public Error {
public:
    Refused(const std::string& message, std::vector<std::string> names)
        : Error(message), refused(std::move(names)) {}

    // All names that were refused in this call, in its order.
    const std::vector<std::string>& refusedNames() const noexcept { return refused; }

private:
    std::vector<std::string> refused;
};

} // namespace orvane
