#include "soak/SoakLibrary.h"

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "e2e/SimulatorProcess.h"

namespace {

using namespace orvane;
using std::chrono::milliseconds;

constexpr const char* kRoll = "sim/cockpit2/controls/yoke_roll_ratio";
constexpr const char* kFlaps = "sim/cockpit2/controls/flap_ratio";
constexpr const char* kGear = "sim/flight_controls/landing_gear_toggle";

Options options() {
    Options options;
    options.timeout = milliseconds(60'000);
    options.releaseWithin = milliseconds(60'000);
    options.backoff = {milliseconds(1), milliseconds(20), milliseconds(60'000)};
    return options;
}

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(std::string("the client library ") + what);
    }
}

// Carries out calls that wait, while the simulator flies on.
template <class Calls>
void during(SimulatorProcess& simulator, Calls calls) {
    auto done = std::async(std::launch::async, calls);
    while (done.wait_for(milliseconds(0)) != std::future_status::ready) {
        simulator.Step();
    }
    done.get();
}

} // namespace

// The server accepts one client per frame, so that connecting waits, too.
SoakLibrary::SoakLibrary(SimulatorProcess& flownSimulator) : simulator(flownSimulator) {
    during(simulator, [this] {
        controls = std::make_unique<tarnel::Client>(options());
        panel = std::make_unique<velmar::Client>(options());
        declare();
    });
}

void SoakLibrary::declare() {
    tarnel::Definitions definitions;
    definitions.add(tarnel::Input::toFloat(1, kRoll).scaledByFloatRange(0, 1))
        .add(tarnel::Input::toCommand(2, kGear).held())
        .add(tarnel::Output::ofFloat(1, kRoll));
    controls->define(std::move(definitions));
    panel->registerDataref({kFlaps, velmar::Type::Float});
    panel->registerCommand(kGear);
}

void SoakLibrary::Play(std::size_t round) {
    during(simulator, [=, this] {
        fly();
        look(round);
        visit();
    });
}

// The first call comes back after a restart; values are sent on a connection that is there.
void SoakLibrary::fly() {
    controls->exchange();
    controls->exchange({{1, 65'535}, {2, 1}});
    const float moved = controls->exchange({{1, 0}, {2, 0}}).get<float>(1);
    require(moved == 1.0F, "did not move the axis");
}

void SoakLibrary::look(std::size_t round) {
    const auto position = static_cast<float>(round % 5) / 4;
    panel->poll();
    panel->write(kFlaps, position);
    require(std::get<float>(panel->read(kFlaps)) == position, "did not read what it wrote");
    panel->run(kGear, velmar::Action::Begin);
    panel->run(kGear, velmar::Action::End);
}

// Leaves with a command held down, which the library then ends.
void SoakLibrary::visit() {
    velmar::Client visitor(options());
    visitor.registerCommand(kGear);
    visitor.run(kGear, velmar::Action::Begin);
}
