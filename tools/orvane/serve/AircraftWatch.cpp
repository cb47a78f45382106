#include "tools/orvane/serve/AircraftWatch.h"

#include <chrono>
#include <cstdint>

#include "orvane/Errors.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

constexpr std::chrono::seconds kInterval(1);

} // namespace

AircraftWatch::AircraftWatch(const GlobalOptions& globals, Hub& hub)
    : globals(globals), hub(hub), thread([this] { watch(); }) {}

AircraftWatch::~AircraftWatch() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_one();
    thread.join();
}

void AircraftWatch::watch() {
    do {
        try {
            watchOneConnection();
        } catch (const Error&) {
            // The reader of values says so; here it is tried again.
        }
    } while (rest());
}

void AircraftWatch::watchOneConnection() {
    Options options = globals.ForClient(OnLoss::Throw);
    options.cancelled = [this] { return isOver(); };
    tarnel::Client client(options);
    std::uint32_t aircraft = client.define({}).aircraftId;
    while (rest()) {
        const std::uint32_t latest = client.exchange().aircraftId;
        if (latest != aircraft) {
            hub.Tell(LiveState::Aircraft, latest == 0 ? "the aircraft was unloaded"
                                                      : "aircraft " + aircraftText(latest));
        }
        aircraft = latest;
    }
}

bool AircraftWatch::rest() {
    std::unique_lock lock(mutex);
    return !changed.wait_for(lock, kInterval, [this] { return isEnding; });
}

bool AircraftWatch::isOver() {
    const std::lock_guard lock(mutex);
    return isEnding;
}

} // namespace orvane::tool
