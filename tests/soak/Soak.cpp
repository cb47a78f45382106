#include "soak/Soak.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

constexpr int kFramesPerRound = 2000;
constexpr int kReports = 10;
// A round for every shape that the clients' messages take.
constexpr std::size_t kWarmRounds = 40;
constexpr std::chrono::milliseconds kSceneryLoads(100);
constexpr const char* kSceneryLoaded = "message 104 0";

} // namespace

Soak::Soak(const SoakLength& flownLength)
    : length(flownLength), clients(simulator), library(simulator) {
    if (length.withPython) {
        python = std::make_unique<SoakPython>(simulator);
    }
}

bool Soak::Run() {
    bool flat = true;
    for (int part = 1; part <= kReports; ++part) {
        while (flown() * kReports < part || round < kWarmRounds) {
            play();
        }
        flat = report() && flat;
    }
    std::printf("%s after %ld loops\n", flat ? "flat" : "NOT FLAT", simulator.AskNumber("frames"));
    simulator.Quit();
    return flat;
}

void Soak::play() {
    disturb();
    changeAircraft();
    clients.Play(round);
    library.Play(round);
    if (python != nullptr) {
        python->Play(round);
    }
    order("command begin sim/flight_controls/flaps_down");
    simulator.Step(kFramesPerRound);
    order("command end sim/flight_controls/flaps_down");
    ++round;
}

// In every twentieth round each, so that all of them belong to the warm-up.
void Soak::disturb() {
    switch (round % 20) {
    case 4:
        clients.Storm();
        break;
    case 8:
        loadScenery();
        break;
    case 12:
        restart("reload");
        break;
    case 16:
        order("stop");
        restart("start");
        break;
    default:
        break;
    }
}

void Soak::loadScenery() {
    std::this_thread::sleep_for(kSceneryLoads);
    order(kSceneryLoaded);
    simulator.Step();
}

// After a start, the plugin learns of the aircraft when the next one is loaded.
void Soak::restart(const std::string& command) {
    order(command);
    clients.Reconnect();
}

void Soak::changeAircraft() {
    if (round % 4 == 0) {
        order("aircraft unload");
        simulator.Step();
    }
    order("aircraft load Soak aircraft " + std::to_string(round % 8));
}

void Soak::order(const std::string& command) {
    const std::string reply = simulator.Ask(command);
    if (!reply.starts_with("ok")) {
        throw std::runtime_error(command + " was answered with: " + reply);
    }
}

bool Soak::report() {
    const SoakFigures figures = SoakFigures::Of(simulator, clients.Resets());
    if (!isWarm) {
        warm = figures;
        isWarm = true;
    }
    const std::string growth = figures.GrowthSince(warm);
    std::printf("%6.1f s  %9ld loops  %6zu clients  %s%s%s\n", elapsed(),
                simulator.AskNumber("frames"), clients.Served(), figures.Text().c_str(),
                growth.empty() ? "" : "  GREW:", growth.c_str());
    std::fflush(stdout);
    return growth.empty();
}

double Soak::flown() {
    if (length.frames == 0) {
        return elapsed() / static_cast<double>(length.duration.count());
    }
    return static_cast<double>(simulator.AskNumber("frames")) / static_cast<double>(length.frames);
}

double Soak::elapsed() const {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}
