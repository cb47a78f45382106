#include "fuzz/FuzzWorld.h"

#include <array>
#include <utility>

namespace {

constexpr double kFrameSeconds = 0.02;
constexpr std::int64_t kClockStepMs = 10;

constexpr std::array kCommands = {"sim/up", "sim/down", "kyr/press"};

} // namespace

FuzzWorld::FuzzWorld(std::vector<std::string_view> documentedEnds)
    : PluginWorld(std::move(documentedEnds)) {
    auto& datarefs = simulator.Datarefs();
    datarefs.Define({.name = "sim/int", .types = xplmType_Int});
    datarefs.Define({.name = "sim/float", .types = xplmType_Float | xplmType_Double});
    datarefs.Define({.name = "sim/ints", .types = xplmType_IntArray, .elements = 4});
    datarefs.Define({.name = "sim/floats", .types = xplmType_FloatArray, .elements = 4});
    datarefs.Define({.name = "sim/fixed", .types = xplmType_Float, .writable = false});
    for (const char* const command : kCommands) {
        simulator.Commands().Define(command, command);
    }
}

void FuzzWorld::Play(const Step& step) {
    switch (step.kind) {
    case Step::Kind::Press:
        press(step.argument);
        break;
    case Step::Kind::Aircraft:
        changeAircraft(step.argument % 2 == 1);
        break;
    case Step::Kind::Clock:
        utilities.nowMs += step.argument * kClockStepMs;
        break;
    default:
        break;
    }
}

void FuzzWorld::press(std::uint8_t argument) {
    auto& commands = simulator.Commands();
    const auto command = commands.Find(kCommands[argument / 4 % kCommands.size()]);
    switch (argument % 4) {
    case 0:
        commands.Begin(command);
        break;
    case 1:
        commands.End(command);
        break;
    case 2:
        commands.Once(command);
        break;
    default:
        simulator.RunFrame(kFrameSeconds);
        break;
    }
}

void FuzzWorld::changeAircraft(bool loaded) {
    simState.SetPlaneLoaded(loaded);
    if (loaded) {
        simState.ReadPlaneId();
    }
}
