// Moves the yoke back and forth: a sine stands in for the axis of a device.
//
// Usage: axis_sine [HOST [SECONDS]]

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <thread>

#include "orvane/tarnel/Client.h"

namespace {

namespace tarnel = orvane::tarnel;

constexpr const char* kYoke = "sim/cockpit2/controls/yoke_pitch_ratio";
constexpr tarnel::ActionId kAxis = 1;
constexpr tarnel::OutputId kPosition = 1;
constexpr double kPeriodSeconds = 4.0;
constexpr std::chrono::milliseconds kStep(20);

// A raw axis value as a device sends it: 0 to 65535.
std::int32_t rawAxis(double seconds) {
    const double phase = 2.0 * std::numbers::pi * seconds / kPeriodSeconds;
    return static_cast<std::int32_t>(std::lround(32'767.5 + 32'767.5 * std::sin(phase)));
}

void fly(tarnel::Client& client, double secondsToFly) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    for (auto next = begin;; next += kStep) {
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        if (seconds >= secondsToFly) {
            return;
        }
        const tarnel::Answer answer = client.exchange({{kAxis, rawAxis(seconds)}});
        std::printf("%6.2f s  yoke %+.3f\n", seconds, answer.get<float>(kPosition));
        std::this_thread::sleep_until(next);
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
        tarnel::Client client(options);
        tarnel::Definitions definitions;
        definitions.add(tarnel::Input::toFloat(kAxis, kYoke).scaledByFloatRange(-1.0F, 1.0F));
        definitions.add(tarnel::Output::ofFloat(kPosition, kYoke));
        client.define(definitions);
        fly(client, seconds);
    } catch (const orvane::Error& error) {
        std::fprintf(stderr, "axis_sine: %s\n", error.what());
        return 1;
    }
}
