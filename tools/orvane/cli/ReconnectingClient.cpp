#include "tools/orvane/cli/ReconnectingClient.h"

#include <algorithm>
#include <utility>

#include "orvane/Errors.h"
#include "tools/orvane/cli/Interrupt.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::hours kVeryLong(24 * 365);
constexpr std::chrono::seconds kRetryInterval(1);

} // namespace

ReconnectingClient::ReconnectingClient(const GlobalOptions& globals, steady_clock::time_point end,
                                       Tell tell)
    : end(end), tell(std::move(tell)), client(optionsOf(globals)) {}

Options ReconnectingClient::optionsOf(const GlobalOptions& globals) const {
    Options options = globals.ForClient();
    options.backoff.longestDelay = std::chrono::seconds(2);
    options.backoff.within = kVeryLong;
    options.cancelled = [this] { return IsOver(); };
    return options;
}

bool ReconnectingClient::IsOver() const {
    return isInterrupted() || steady_clock::now() >= end;
}

bool ReconnectingClient::Try(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const CancelledError&) {
        return false;
    } catch (const ClosedError& error) {
        tell(error.what());
    } catch (const TimeoutError& error) {
        tell(error.what());
    }
    restore();
    return false;
}

// A simulator that has just started may not have all datarefs of its other plugins yet.
void ReconnectingClient::restore() {
    while (!IsOver()) {
        try {
            client.reconnect();
            tell("");
            return;
        } catch (const CancelledError&) {
            return;
        } catch (const Error& error) {
            tell(error.what());
            sleepUntil(std::min(end, steady_clock::now() + kRetryInterval));
        }
    }
}

} // namespace orvane::tool
