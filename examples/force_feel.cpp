// Force feedback: reads the airspeed and the position of the yoke, computes the force that the
// pilot should feel, and shares it with the simulator's other plugins as the plugin's own dataref
// kyr/example/pitch_force.
//
// Usage: force_feel [HOST [SECONDS]]

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "orvane/tarnel/Client.h"

namespace {

namespace tarnel = orvane::tarnel;

constexpr const char* kForceDataref = "kyr/example/pitch_force";
constexpr tarnel::ActionId kSetForce = 1;
enum Outputs : tarnel::OutputId { kYoke = 1, kAirspeed = 2, kForce = 3 };

constexpr float kMostNewtons = 200.0F;
constexpr float kCruiseKnots = 110.0F;
constexpr float kNewtonsAtCruise = 120.0F;
constexpr std::chrono::milliseconds kStep(10);

// The air pushes the elevator back with the square of its speed.
float newtons(float yoke, float knots) {
    const float pressure = (knots / kCruiseKnots) * (knots / kCruiseKnots);
    return std::clamp(-yoke * pressure * kNewtonsAtCruise, -kMostNewtons, kMostNewtons);
}

// Inputs are sent as 0 to 65535, which the server maps to the range of the input.
std::int32_t toRaw(float force) {
    return static_cast<std::int32_t>(
        std::lround((force + kMostNewtons) / (2.0F * kMostNewtons) * 65'535.0F));
}

// Inputs are looked up before outputs are created, so a first define creates the dataref.
void define(tarnel::Client& client) {
    tarnel::Definitions definitions;
    definitions.add(tarnel::Output::ofFloat(kYoke, "sim/cockpit2/controls/yoke_pitch_ratio"));
    definitions.add(
        tarnel::Output::ofFloat(kAirspeed, "sim/cockpit2/gauges/indicators/airspeed_kts_pilot"));
    definitions.add(tarnel::Output::ofFloat(kForce, kForceDataref));
    client.define(definitions);
    definitions.add(tarnel::Input::toFloat(kSetForce, kForceDataref)
                        .scaledByFloatRange(-kMostNewtons, kMostNewtons));
    client.define(definitions);
}

void push(tarnel::Client& client, double secondsToPush) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    const auto end = begin + std::chrono::duration<double>(secondsToPush);
    float force = 0.0F;
    for (auto next = begin; next < end; next += kStep) {
        std::this_thread::sleep_until(next);
        const tarnel::Answer answer = client.exchange({{kSetForce, toRaw(force)}});
        force = newtons(answer.get<float>(kYoke), answer.get<float>(kAirspeed));
        std::printf("%5.1f kt  yoke %+.3f  force %+7.2f N, shared %+7.2f N\n",
                    answer.get<float>(kAirspeed), answer.get<float>(kYoke), force,
                    answer.get<float>(kForce));
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
        define(client);
        push(client, seconds);
    } catch (const orvane::Error& error) {
        std::fprintf(stderr, "force_feel: %s\n", error.what());
        return 1;
    }
}
