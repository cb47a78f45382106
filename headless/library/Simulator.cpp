#include "orvane/headless/Simulator.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "XPLMPlugin.h"
#include "headless/host/Session.h"
#include "headless/library/PluginState.h"
#include "headless/metering/CallCounts.h"
#include "headless/world/World.h"
#include "headless/xplm/FunctionTable.h"
#include "headless/xplm/menus/MenuTable.h"

namespace orvane::headless {

namespace {

using ::headless::CommandTable;
using ::headless::DatarefTable;
using ::headless::MenuTable;

constexpr int kTypeBits[] = {xplmType_Int,      xplmType_Float,      xplmType_Double,
                             xplmType_IntArray, xplmType_FloatArray, xplmType_Data};

template <class Result, class Values>
std::vector<Result> convert(const Values& values) {
    std::vector<Result> result;
    result.reserve(values.size());
    std::transform(values.begin(), values.end(), std::back_inserter(result),
                   [](auto value) { return static_cast<Result>(value); });
    return result;
}

::headless::Command& find(const CommandTable& commands, std::string_view name) {
    ::headless::Command* const command = commands.Lookup(name);
    if (command == nullptr) {
        throw std::out_of_range(std::string(name) + ": no such command");
    }
    return *command;
}

void listItems(const MenuTable& menus, const ::headless::Menu& menu, const std::string& prefix,
               std::vector<MenuItem>& listed) {
    for (const ::headless::MenuItem& item : menu.Items()) {
        if (item.separator) {
            continue;
        }
        listed.push_back({prefix + item.text, item.enabled, item.check == xplm_Menu_Checked});
        if (const ::headless::Menu* below = menus.Below(item)) {
            listItems(menus, *below, listed.back().path + " > ", listed);
        }
    }
}

} // namespace

struct Simulator::State final : ::headless::IPluginObserver {
    explicit State(const World& world)
        : filled(simulator,
                 {world.datarefsFile, world.commandsFile, world.version, world.groundMetres}),
          frameSeconds(1.0 / world.framesPerSecond),
          aircraftFlies(world.aircraftFlies) {
        simulator.Recorder().Enable();
        simulator.Observe(this);
        filled.LoadAircraft(::headless::Session::kDefaultAircraft);
    }

    void FrameBegan() override {}
    void FrameEnded(double /*seconds*/) override {}
    void Called(const char* function) override { counts.Add(function); }
    void Switched(int /*plugin*/) override {}
    void Logged(const char* /*text*/) override {}

    // Whether the dataref exists and has one of the types.
    bool Offers(std::string_view name, int types) {
        const ::headless::Dataref* dataref = simulator.Datarefs().Lookup(name);
        return dataref != nullptr && dataref->Offers(types);
    }

    ::headless::Simulator simulator;
    ::headless::World filled;
    ::headless::CallCounts counts;
    const double frameSeconds;
    const bool aircraftFlies;
    std::vector<std::unique_ptr<Plugin>> plugins;
};

Simulator::Simulator(const World& world) : state(std::make_unique<State>(world)) {}

Simulator::~Simulator() {
    while (!state->plugins.empty()) {
        state->plugins.pop_back();
    }
    state->simulator.Observe(nullptr);
}

Plugin& Simulator::load(const std::string& file) {
    withPublicErrors([&] { adopt(std::make_unique<Plugin::State>(state->simulator, file)); });
    return *state->plugins.back();
}

Plugin& Simulator::start(const EntryPoints& entryPoints) {
    const ::headless::PluginEntryPoints linked{entryPoints.start, entryPoints.stop,
                                               entryPoints.enable, entryPoints.disable,
                                               entryPoints.receiveMessage};
    withPublicErrors([&] {
        adopt(std::make_unique<Plugin::State>(state->simulator, "the linked plugin", linked));
    });
    return *state->plugins.back();
}

bool Simulator::unload(Plugin& plugin) {
    const bool gone = plugin.state->host.Unload();
    std::erase_if(state->plugins, [&](const auto& one) { return one.get() == &plugin; });
    return gone;
}

void Simulator::runFrames(int count) {
    for (int i = 0; i < count; ++i) {
        const double seconds = state->frameSeconds;
        state->filled.Advance(seconds, state->aircraftFlies ? seconds : 0.0);
        state->simulator.RunFrame(seconds);
    }
}

void Simulator::runSeconds(double seconds) {
    // A small margin, so that rounding does not lose a frame.
    constexpr double kMargin = 1e-6;
    runFrames(std::max(1, static_cast<int>(std::floor(seconds / state->frameSeconds + kMargin))));
}

double Simulator::seconds() const {
    return state->simulator.Clock().Now();
}

void Simulator::define(const std::string& dataref, Type type, int elements, bool writable) {
    state->simulator.Datarefs().Define({.name = dataref,
                                        .types = kTypeBits[static_cast<std::size_t>(type)],
                                        .elements = elements,
                                        .writable = writable});
}

bool Simulator::hasDataref(std::string_view dataref) const {
    return state->simulator.Datarefs().Lookup(dataref) != nullptr;
}

double Simulator::number(std::string_view dataref) const {
    const DatarefTable& datarefs = state->simulator.Datarefs();
    if (state->Offers(dataref, xplmType_Double)) {
        return datarefs.GetDouble(dataref);
    }
    return state->Offers(dataref, xplmType_Float) ? static_cast<double>(datarefs.GetFloat(dataref))
                                                  : datarefs.GetInt(dataref);
}

void Simulator::setNumber(std::string_view dataref, double value) {
    DatarefTable& datarefs = state->simulator.Datarefs();
    if (state->Offers(dataref, xplmType_Double)) {
        datarefs.SetDouble(dataref, value);
    } else if (state->Offers(dataref, xplmType_Float)) {
        datarefs.SetFloat(dataref, static_cast<float>(value));
    } else {
        datarefs.SetInt(dataref, static_cast<int>(value));
    }
}

std::vector<double> Simulator::numbers(std::string_view dataref) const {
    const DatarefTable& datarefs = state->simulator.Datarefs();
    return state->Offers(dataref, xplmType_FloatArray)
               ? convert<double>(datarefs.GetFloatArray(dataref))
               : convert<double>(datarefs.GetIntArray(dataref));
}

void Simulator::setNumbers(std::string_view dataref, const std::vector<double>& values) {
    DatarefTable& datarefs = state->simulator.Datarefs();
    if (state->Offers(dataref, xplmType_FloatArray)) {
        datarefs.SetFloatArray(dataref, convert<float>(values));
    } else {
        datarefs.SetIntArray(dataref, convert<int>(values));
    }
}

std::string Simulator::text(std::string_view dataref) const {
    return state->simulator.Datarefs().GetText(dataref);
}

void Simulator::setText(std::string_view dataref, const std::string& text) {
    state->simulator.Datarefs().SetBytes(dataref, text);
}

void Simulator::defineCommand(const std::string& command, const std::string& description) {
    state->simulator.Commands().Define(command, description);
}

bool Simulator::hasCommand(std::string_view command) const {
    return state->simulator.Commands().Lookup(command) != nullptr;
}

void Simulator::once(std::string_view command) {
    CommandTable& commands = state->simulator.Commands();
    commands.Once(&find(commands, command));
}

void Simulator::begin(std::string_view command) {
    CommandTable& commands = state->simulator.Commands();
    commands.Begin(&find(commands, command));
}

void Simulator::end(std::string_view command) {
    CommandTable& commands = state->simulator.Commands();
    commands.End(&find(commands, command));
}

CommandCounts Simulator::counts(std::string_view command) const {
    const ::headless::PhaseCounts& pressed = find(state->simulator.Commands(), command).pressed;
    return {pressed[xplm_CommandBegin], pressed[xplm_CommandContinue], pressed[xplm_CommandEnd]};
}

std::vector<MenuItem> Simulator::menu() const {
    const MenuTable& menus = state->simulator.Menus();
    std::vector<MenuItem> items;
    listItems(menus, menus.PluginsMenu(), "", items);
    return items;
}

void Simulator::click(const std::string& path) {
    state->simulator.Menus().Click(path);
}

void Simulator::loadAircraft(const std::string& description) {
    state->filled.LoadAircraft(description);
}

std::vector<std::string> Simulator::log() const {
    return state->simulator.Log().Lines();
}

std::size_t Simulator::calls(std::string_view function) const {
    if (::headless::findSdkFunction(function) == nullptr) {
        throw std::invalid_argument(std::string(function) + ": the SDK has no such function");
    }
    return state->counts.Of(function);
}

std::vector<std::string> Simulator::trace() const {
    std::vector<std::string> lines;
    for (const ::headless::RecordedCall& call : state->simulator.Recorder().Calls()) {
        lines.push_back(call.function + "(" + call.arguments + ")");
    }
    return lines;
}

std::vector<std::string> Simulator::mistakes() const {
    std::vector<std::string> lines;
    for (const ::headless::RefusedCall& refused : state->simulator.Recorder().RecentRefusals()) {
        lines.push_back(refused.function + ": " +
                        ::headless::CallRecorder::Describe(refused.reason) + ": " + refused.detail);
    }
    return lines;
}

void Simulator::forget() {
    state->simulator.Recorder().Clear();
    state->counts.Clear();
}

void Simulator::adopt(std::unique_ptr<Plugin::State> plugin) {
    ::headless::PluginHost& host = plugin->host;
    host.Start();
    host.Enable();
    state->plugins.push_back(std::unique_ptr<Plugin>(new Plugin(std::move(plugin))));
    host.SendLoadedMessages();
}

} // namespace orvane::headless
