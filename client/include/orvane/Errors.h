#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "orvane/Export.h"

namespace orvane {

// What can go wrong between a client and the server. The text of each says host, port, what was
// being done, and, where that applies, what was expected and what came instead.
class ORVANE_API Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The server was not reached: no such host, nobody listens, no way there.
class ORVANE_API ConnectError : public Error {
public:
    using Error::Error;
};

// No answer in time. The simulator may be loading scenery, when it serves nobody; or a request was
// lost in the server's buffer. The connection is closed, since a late answer would be taken for
// that of another request.
class ORVANE_API TimeoutError final : public Error {
public:
    using Error::Error;
};

// The connection ended while it was in use: most often the simulator did.
class ORVANE_API ClosedError final : public Error {
public:
    using Error::Error;
};

// The answer was not one that this request can have, twice in a row. The connection is closed.
class ORVANE_API ProtocolError final : public Error {
public:
    using Error::Error;
};

// Options::cancelled said so. The connection is closed, for the same reason as after a
// TimeoutError. What the client held was let go, or the text names what may still be down.
class ORVANE_API CancelledError final : public Error {
public:
    using Error::Error;
};

// The server answered, and the answer is no: the simulator does not have some of the names.
class ORVANE_API Refused final : public Error {
public:
    Refused(const std::string& message, std::vector<std::string> names)
        : Error(message), refused(std::move(names)) {}

    // All that were refused in this call, in the order of the call.
    const std::vector<std::string>& refusedNames() const noexcept { return refused; }

private:
    std::vector<std::string> refused;
};

} // namespace orvane
