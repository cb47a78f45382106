// Prints a gauge ten times a second: airspeed, altitude and heading.
//
// Usage: gauge [HOST [SECONDS]]

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "orvane/velmar/Client.h"

namespace {

namespace velmar = orvane::velmar;

constexpr std::chrono::milliseconds kStep(100);

const std::vector<std::string> kNames{
    "sim/cockpit2/gauges/indicators/airspeed_kts_pilot",
    "sim/cockpit2/gauges/indicators/altitude_ft_pilot",
    "sim/cockpit2/gauges/indicators/heading_AHARS_deg_mag_pilot",
};

void show(velmar::Client& client, double secondsToShow) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    const auto end = begin + std::chrono::duration<double>(secondsToShow);
    for (auto next = begin; next < end; next += kStep) {
        std::this_thread::sleep_until(next);
        const std::vector<velmar::Value> values = client.read(kNames);
        std::printf("%5.1f kt  %7.0f ft  %03.0f deg\n", std::get<float>(values[0]),
                    std::get<float>(values[1]), std::get<float>(values[2]));
    }
}

} // namespace

int main(int argc, char** argv) {
    orvane::Options options;
    options.host = argc > 1 ? argv[1] : options.host;
    options.onStart = orvane::OnStart::Wait;
    options.backoff.within = std::chrono::hours(24);
    const double seconds = argc > 2 ? std::atof(argv[2]) : 10.0;
    std::fprintf(stderr, "waiting for the simulator at %s\n", options.host.c_str());
    try {
        velmar::Client client(options);
        for (const std::string& name : kNames) {
            client.registerDataref({name, velmar::Type::Float});
        }
        show(client, seconds);
    } catch (const orvane::Error& error) {
        std::fprintf(stderr, "gauge: %s\n", error.what());
        return 1;
    }
}
