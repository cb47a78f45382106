#include "Link.h"

#include <algorithm>
#include <utility>

#include "Discovery.h"
#include "UnexpectedAnswer.h"
#include "UnknownHost.h"

namespace orvane::detail {

namespace {

constexpr const char* kDeclaring = "repeating the declarations";
// Declarations can be torn like any other request.
constexpr int kTriesToDeclare = 2;

} // namespace

Link::Link(Options givenOptions, ISession& session)
    : options(std::move(givenOptions)), isHostSought(options.host == kAnyHost), session(session) {
    connectFirst();
}

void Link::connectFirst() {
    try {
        connection = connectAnywhere();
    } catch (const UnknownHost&) {
        throw; // probably mistyped
    } catch (const Error&) {
        if (options.onStart == OnStart::Throw) {
            throw;
        }
        backOffUntilConnected();
    }
}

// Commands are held at the server of before, and it knows the declarations: it comes first.
std::unique_ptr<Connection> Link::connectAnywhere() {
    if (!isHostSought) {
        return std::make_unique<Connection>(options);
    }
    if (options.host != kAnyHost) {
        try {
            return std::make_unique<Connection>(options);
        } catch (const CancelledError&) {
            throw;
        } catch (const Error&) {
            // It may be elsewhere now.
        }
    }
    return connectToHeard(options);
}

template <typename Call>
auto Link::releasingIfCancelled(Call call) {
    try {
        return call();
    } catch (const CancelledError& cancelled) {
        std::string text = cancelled.what();
        try {
            release();
        } catch (const Error& error) {
            text += std::string("; ") + error.what();
        }
        connection.reset();
        throw CancelledError(text);
    }
}

void Link::waitUntil(Clock::time_point moment, const std::string& doing) {
    releasingIfCancelled([&] {
        if (sleepUntil(moment, options.cancelled) == Waited::Cancelled) {
            throw CancelledError(place(doing) + "was cancelled");
        }
    });
}

Link::Outcome Link::carryOut(const std::string& doing, Repeat repeat, const Work& work) {
    return releasingIfCancelled([&] { return tryToCarryOut(doing, repeat, work); });
}

Link::Outcome Link::tryToCarryOut(const std::string& doing, Repeat repeat, const Work& work) {
    ensureConnected(doing);
    try {
        attempt(doing, work);
        return Outcome::Done;
    } catch (const ProtocolError&) {
        if (!repeat.whenTorn) {
            throw;
        }
        connectAgain(1);
    } catch (const ClosedError&) {
        if (options.onLoss == OnLoss::Throw) {
            throw;
        }
        backOffUntilConnected();
        if (!repeat.whenLost) {
            return Outcome::NotRepeated;
        }
    }
    attempt(doing, work);
    return Outcome::Done;
}

void Link::reconnect() {
    releasingIfCancelled([this] {
        try {
            releaseHere(fromNow(options.releaseWithin));
        } catch (const Error&) {
            // The new connection releases instead.
        }
        backOffUntilConnected();
    });
}

void Link::backOffUntilConnected() {
    connection.reset();
    const auto end = fromNow(options.backoff.within);
    auto delay = options.backoff.firstDelay;
    for (int tries = 1;; ++tries) {
        const std::optional<std::string> reason = tryToConnect();
        if (!reason) {
            return;
        }
        const auto next = fromNow(delay);
        if (next >= end) {
            throw ConnectError(*reason + "; gave up at try " + std::to_string(tries));
        }
        if (sleepUntil(next, options.cancelled) == Waited::Cancelled) {
            throw CancelledError(*reason + "; was cancelled at try " + std::to_string(tries));
        }
        delay = std::min(delay * 2, options.backoff.longestDelay);
    }
}

std::optional<std::string> Link::tryToConnect() {
    try {
        connectAgain(kTriesToDeclare);
        return std::nullopt;
    } catch (const ConnectError& error) {
        return error.what();
    } catch (const TimeoutError& error) {
        return error.what();
    } catch (const ClosedError& error) {
        return error.what();
    }
}

void Link::renew() {
    releasingIfCancelled([this] {
        if (options.onLoss == OnLoss::Reconnect) {
            backOffUntilConnected();
        } else {
            connectAgain(kTriesToDeclare);
        }
    });
}

void Link::connectAgain(int triesToDeclare) {
    connection.reset();
    connection = makeDeclared(triesToDeclare);
    releaseFailed = false;
    if (callbacks.connected) {
        callbacks.connected();
    }
}

void Link::ensureConnected(const std::string& doing) {
    if (isConnected()) {
        return;
    }
    if (options.onLoss == OnLoss::Throw) {
        throw ClosedError(place(doing) + "not connected: the connection was closed before");
    }
    backOffUntilConnected();
}

void Link::attempt(const std::string& doing, const Work& work) {
    try {
        work(*connection);
    } catch (const UnexpectedAnswer& answer) {
        const ProtocolError error(place(doing) + answer.what());
        drop(error);
        throw error;
    } catch (const Error& error) {
        drop(error);
        throw;
    } catch (...) {
        connection.reset();
        throw;
    }
}

std::unique_ptr<Connection> Link::makeDeclared(int tries) {
    for (;; --tries) {
        auto made = connectAnywhere();
        try {
            if (!session.held().empty()) {
                session.releaseByName(*made, releasing());
            }
            session.declare(*made);
            return made;
        } catch (const UnexpectedAnswer& answer) {
            if (tries <= 1) {
                throw ProtocolError(place(kDeclaring) + answer.what());
            }
        }
    }
}

void Link::drop(const Error& reason) {
    connection.reset();
    if (callbacks.disconnected) {
        callbacks.disconnected(reason);
    }
}

} // namespace orvane::detail
