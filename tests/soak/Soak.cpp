#include "soak/Soak.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

constexpr int kFramesPerRound = 2000;
constexpr int kReports = 10;
// A round for every shape that the clients' messages take.
constexpr std::size_t kWarmRounds = 40;

} // namespace

Soak::Soak(std::chrono::seconds flownDuration) : duration(flownDuration), clients(simulator) {}

bool Soak::Run() {
    bool flat = true;
    for (int part = 1; part <= kReports; ++part) {
        const auto end = begin + duration * part / kReports;
        while (Clock::now() < end || round < kWarmRounds) {
            play();
        }
        flat = report() && flat;
    }
    std::printf("%s after %ld loops\n", flat ? "flat" : "NOT FLAT", simulator.AskNumber("frames"));
    simulator.Quit();
    return flat;
}

void Soak::play() {
    changeAircraft();
    clients.Play(round);
    order("command begin sim/flight_controls/flaps_down");
    simulator.Step(kFramesPerRound);
    order("command end sim/flight_controls/flaps_down");
    ++round;
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
    const SoakFigures figures = SoakFigures::Of(simulator);
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

double Soak::elapsed() const {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}
