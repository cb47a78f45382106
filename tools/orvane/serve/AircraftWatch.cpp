#include "tools/orvane/serve/AircraftWatch.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "orvane/Errors.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/serve/Hub.h"

namespace orvane::tool {

namespace {

constexpr std::chrono::seconds kInterval(1);

// False at the end.
bool rest(const std::stop_token& end) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any never;
    never.wait_for(lock, end, kInterval, [] { return false; });
    return !end.stop_requested();
}

void watchOneConnection(const std::stop_token& end, const GlobalOptions& globals, Hub& hub) {
    Options options = globals.ForClient();
    options.cancelled = [&end] { return end.stop_requested(); };
    tarnel::Client client(options);
    std::uint32_t aircraft = client.define({}).aircraftId;
    while (rest(end)) {
        const std::uint32_t latest = client.exchange().aircraftId;
        if (latest != aircraft) {
            hub.Tell(LiveState::Aircraft, latest == 0 ? "the aircraft was unloaded"
                                                      : "aircraft " + aircraftText(latest));
        }
        aircraft = latest;
    }
}

} // namespace

void watchAircraft(const std::stop_token& end, const GlobalOptions& globals, Hub& hub) {
    do {
        try {
            watchOneConnection(end, globals, hub);
        } catch (const Error&) {
            // The reader of values says so; here it is tried again.
        }
    } while (rest(end));
}

} // namespace orvane::tool
