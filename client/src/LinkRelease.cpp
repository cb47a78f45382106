// The part of Link that sees to it that no command stays down.

#include <algorithm>

#include "Link.h"
#include "Texts.h"
#include "UnexpectedAnswer.h"

namespace orvane::detail {

namespace {

using std::chrono::milliseconds;

// A plugin that is reloaded listens again within a frame or two.
constexpr milliseconds kRetryInterval(20);

} // namespace

void Link::close() noexcept {
    try {
        release();
    } catch (...) {
        // The callback knows; nobody else can be told.
    }
    connection.reset();
}

void Link::closeForGood() noexcept {
    callbacks = {};
    if (!releaseFailed) {
        close();
    }
}

void Link::releaseHere() {
    try {
        releaseHere(fromNow(options.releaseWithin));
    } catch (const Error&) {
        if (options.onLoss == OnLoss::Throw) {
            throw;
        }
    }
}

// A connection that does not answer may be out of step; a new one may still be answered.
void Link::release() {
    const auto half = fromNow(options.releaseWithin / 2);
    const auto end = fromNow(options.releaseWithin);
    try {
        releaseHere(half);
    } catch (const Error&) {
        // Another connection may work.
    }
    if (session.held().empty()) {
        return;
    }
    try {
        releaseElsewhere(end);
    } catch (const Error& error) {
        releaseFailed = true;
        if (callbacks.notReleased) {
            callbacks.notReleased(session.held(), error);
        }
        throw;
    }
}

void Link::releaseHere(Clock::time_point end) {
    if (!isConnected() || session.held().empty()) {
        return;
    }
    const std::string doing = releasing();
    const Options limited = optionsUntil(end);
    connection->use(limited);
    attempt(doing, [&](Connection& on) { session.release(on, doing); });
    connection->use(options);
}

void Link::releaseElsewhere(Clock::time_point end) {
    const std::string doing = releasing();
    for (;;) {
        try {
            const Options limited = optionsUntil(end);
            Connection other(limited, doing);
            session.releaseByName(other, doing);
            return;
        } catch (const ConnectError&) {
            const auto next = Clock::now() + kRetryInterval;
            if (next >= end) {
                throw;
            }
            sleepUntil(next, {});
        } catch (const UnexpectedAnswer& answer) {
            throw ProtocolError(place(doing) + answer.what());
        }
    }
}

Options Link::optionsUntil(Clock::time_point end) const {
    Options limited = options;
    limited.timeout =
        std::max(milliseconds(1), std::chrono::ceil<milliseconds>(end - Clock::now()));
    limited.cancelled = nullptr;
    return limited;
}

std::string Link::releasing() const {
    return "releasing " + listed(session.held());
}

} // namespace orvane::detail
