#include "bench/BenchWorld.h"

#include <algorithm>
#include <numeric>

#include "bench/Figure.h"

namespace {

// As large as the buffers of a connection.
constexpr int kBufferSize = 0x0FFFFFFF;

// Five digits, so that names are equally long.
std::string numbered(const std::string& prefix, std::int64_t number) {
    return prefix + std::to_string(10'000 + number);
}

void setValue(headless::DatarefTable& datarefs, const std::string& name, XPLMDataTypeID type,
              std::int64_t number) {
    const auto first = static_cast<int>(number + 1);
    const auto size = static_cast<std::size_t>(datarefs.Lookup(name)->Definition().elements);
    std::vector<int> ints(size);
    std::iota(ints.begin(), ints.end(), first);
    switch (type) {
    case xplmType_Int:
        datarefs.SetInt(name, first);
        break;
    case xplmType_Float:
        datarefs.SetFloat(name, static_cast<float>(first) + 0.5F);
        break;
    case xplmType_IntArray:
        datarefs.SetIntArray(name, ints);
        break;
    case xplmType_FloatArray:
        datarefs.SetFloatArray(name, {ints.begin(), ints.end()});
        break;
    default:
        failCheck(name + ": no such type of dataref");
    }
}

// The calls that `action` makes to the simulator, with their arguments.
std::vector<std::string> callsOf(headless::CallRecorder& recorder,
                                 const std::function<void()>& action) {
    recorder.Clear();
    recorder.Enable();
    action();
    recorder.Disable();
    if (!recorder.RecentRefusals().empty()) {
        const auto& refused = recorder.RecentRefusals().front();
        failCheck("the simulator refused " + refused.function + " of " + refused.detail);
    }
    std::vector<std::string> calls;
    for (const auto& call : recorder.Calls()) {
        calls.push_back(call.function + "(" + call.arguments + ")");
    }
    recorder.Clear();
    return calls;
}

} // namespace

BenchWorld::BenchWorld() : in(kBufferSize, &logger), out(kBufferSize, &logger) {
    logger.SetLogLevel(LogLevelWarning);
    simulator.Datarefs().SetBytes("sim/aircraft/view/acf_descrip", "Glider of the benchmarks");
    simState.SetPlaneLoaded(true);
    simState.ReadPlaneId();
}

std::vector<std::string> BenchWorld::DefineDatarefs(const std::string& kind, XPLMDataTypeID type,
                                                    std::int64_t count, int elements) {
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < count; ++i) {
        names.push_back(numbered("sim/bench/" + kind + "/dataref_", i));
        simulator.Datarefs().Define({.name = names.back(), .types = type, .elements = elements});
        setValue(simulator.Datarefs(), names.back(), type, i);
    }
    return names;
}

std::vector<std::string> BenchWorld::DefineCommands(std::int64_t count) {
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < count; ++i) {
        names.push_back(numbered("sim/bench/command_", i));
        simulator.Commands().Define(names.back(), "A command of the benchmarks");
    }
    return names;
}

void BenchWorld::RequireSameCalls(const std::function<void()>& ours,
                                  const std::function<void()>& floor) {
    const std::vector<std::string> oursCalls = callsOf(simulator.Recorder(), ours);
    const std::vector<std::string> floorCalls = callsOf(simulator.Recorder(), floor);
    if (oursCalls.size() != floorCalls.size()) {
        failCheck("the plugin makes " + std::to_string(oursCalls.size()) +
                  " calls, and the floor " + std::to_string(floorCalls.size()));
    }
    const auto [differing, others] =
        std::mismatch(oursCalls.begin(), oursCalls.end(), floorCalls.begin());
    if (differing != oursCalls.end()) {
        failCheck("the plugin calls " + *differing + ", and the floor " + *others);
    }
}

void requireSameBytes(const Bytes& ours, const Bytes& floor) {
    if (ours.size() != floor.size()) {
        failCheck("the plugin has " + std::to_string(ours.size()) + " bytes, and the floor " +
                  std::to_string(floor.size()));
    }
    const auto differing = std::mismatch(ours.begin(), ours.end(), floor.begin()).first;
    if (differing != ours.end()) {
        failCheck("byte " + std::to_string(differing - ours.begin()) +
                  " is not the same in the floor");
    }
}
