#include "fuzz/FuzzWorld.h"

#include <array>
#include <utility>

namespace {

constexpr double kFrameSeconds = 0.02;
constexpr std::int64_t kClockStepMs = 10;

constexpr std::array kCommands = {"sim/up", "sim/down", "kyr/press"};

FuzzWorld* current = nullptr;

int handleCommand(void* command, int phase, void* refcon) {
    return current->observer.HandleCommand(command, phase, refcon);
}

int readInt(void* refcon) {
    return current->provider.GetInt(refcon);
}

void writeInt(void* refcon, int value) {
    current->provider.SetInt(refcon, value);
}

float readFloat(void* refcon) {
    return current->provider.GetFloat(refcon);
}

void writeFloat(void* refcon, float value) {
    current->provider.SetFloat(refcon, value);
}

double readDouble(void* refcon) {
    return current->provider.GetDouble(refcon);
}

void writeDouble(void* refcon, double value) {
    current->provider.SetDouble(refcon, value);
}

int readInts(void* refcon, int* values, int offset, int max) {
    return current->provider.GetIntArray(refcon, values, offset, max);
}

void writeInts(void* refcon, int* values, int offset, int count) {
    current->provider.SetIntArray(refcon, values, offset, count);
}

int readFloats(void* refcon, float* values, int offset, int max) {
    return current->provider.GetFloatArray(refcon, values, offset, max);
}

void writeFloats(void* refcon, float* values, int offset, int count) {
    current->provider.SetFloatArray(refcon, values, offset, count);
}

int readBytes(void* refcon, void* values, int offset, int max) {
    return current->provider.GetBytes(refcon, values, offset, max);
}

void writeBytes(void* refcon, void* values, int offset, int count) {
    current->provider.SetBytes(refcon, values, offset, count);
}

} // namespace

FuzzWorld::FuzzWorld(std::vector<std::string_view> documentedEnds)
    : logger(std::move(documentedEnds)),
      observer(handleCommand),
      provider(&logger, readInt, writeInt, readFloat, writeFloat, readDouble, writeDouble, readInts,
               writeInts, readFloats, writeFloats, readBytes, writeBytes) {
    current = this;
    simulator.Log().KeepInMemory(false);
    auto& datarefs = simulator.Datarefs();
    datarefs.Define({.name = "sim/int", .types = xplmType_Int});
    datarefs.Define({.name = "sim/float", .types = xplmType_Float | xplmType_Double});
    datarefs.Define({.name = "sim/ints", .types = xplmType_IntArray, .elements = 4});
    datarefs.Define({.name = "sim/floats", .types = xplmType_FloatArray, .elements = 4});
    datarefs.Define({.name = "sim/fixed", .types = xplmType_Float, .writable = false});
    datarefs.Define(
        {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
    for (const char* const command : kCommands) {
        simulator.Commands().Define(command, command);
    }
}

FuzzWorld::~FuzzWorld() {
    current = nullptr;
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
