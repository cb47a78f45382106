#pragma once

#include <string>
#include <vector>

#include "Connection.h"

namespace orvane::detail {

// What a link needs from its session. All but `held` may throw what `Connection::exchange` does.
class ISession {
public:
    virtual ~ISession() = default;

    // Repeats the declarations on a new connection. Refused.
    virtual void declare(Connection& on) = 0;

    // The commands that were begun and may still be down, each once.
    virtual std::vector<std::string> held() const = 0;
    // Ends them on the connection that they were begun on, in the session's own protocol.
    virtual void release(Connection& on, const std::string& doing) = 0;
    // Ends them by name on a new connection, before anything is declared on it.
    virtual void releaseByName(Connection& on, const std::string& doing) = 0;
};

} // namespace orvane::detail
