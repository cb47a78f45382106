#include "Discovery.h"

#include <utility>

#include "Beacon.h"
#include "BeaconListener.h"
#include "Texts.h"
#include "orvane/Errors.h"

namespace orvane {

namespace detail {

namespace {

// The attempts to connect to what is heard.
class Attempts final {
public:
    explicit Attempts(Options& options) : options(options) {}

    // Null if nobody answers there.
    std::unique_ptr<Connection> connectTo(const HeardSimulator& simulator) {
        options.host = simulator.address;
        try {
            return std::make_unique<Connection>(options);
        } catch (const ConnectError& error) {
            reasons.emplace_back(error.what());
        } catch (const TimeoutError& error) {
            reasons.emplace_back(error.what());
        }
        options.host = kAnyHost;
        return nullptr;
    }

    [[noreturn]] void fail(std::chrono::milliseconds listenTime) const {
        const std::string place = errorPrefix(options, "connecting");
        if (!reasons.empty()) {
            throw ConnectError(place + "a simulator was heard, but its plugin does not answer: " +
                               listed(reasons));
        }
        throw ConnectError(place + "no simulator was heard within " +
                           std::to_string(listenTime.count()) + " ms (UDP multicast " +
                           kBeaconGroup + ", port " + std::to_string(kBeaconPort) +
                           "); is one running on this network? Otherwise give its address");
    }

private:
    Options& options;
    std::vector<std::string> reasons;
};

std::unique_ptr<Connection> tryWhatIsHeard(Options& options, std::chrono::milliseconds listenTime) {
    const auto end = fromNow(listenTime);
    BeaconListener listener(options);
    Attempts attempts(options);
    std::vector<HeardSimulator> others;
    while (auto heard = listener.next(end)) {
        if (heard->role != SimulatorRole::Master) {
            others.push_back(*std::move(heard));
        } else if (auto connection = attempts.connectTo(*heard)) {
            return connection;
        }
    }
    for (const HeardSimulator& other : others) {
        if (auto connection = attempts.connectTo(other)) {
            return connection;
        }
    }
    attempts.fail(listenTime);
}

} // namespace

std::unique_ptr<Connection> connectToHeard(Options& options, std::chrono::milliseconds listenTime) {
    const std::string before = std::exchange(options.host, kAnyHost);
    try {
        return tryWhatIsHeard(options, listenTime);
    } catch (...) {
        options.host = before;
        throw;
    }
}

} // namespace detail

std::vector<HeardSimulator> discover(const Options& options, std::chrono::milliseconds listenTime) {
    Options used = options;
    used.host = kAnyHost;
    const auto end = detail::fromNow(listenTime);
    std::vector<HeardSimulator> heard;
    {
        detail::BeaconListener listener(used);
        while (auto next = listener.next(end)) {
            heard.push_back(*std::move(next));
        }
    }
    detail::Attempts attempts(used);
    for (HeardSimulator& simulator : heard) {
        simulator.hasServer = attempts.connectTo(simulator) != nullptr;
    }
    return heard;
}

} // namespace orvane
