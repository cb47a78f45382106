#include "headless/host/Console.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "headless/host/DatarefText.h"
#include "headless/host/ProcessInfo.h"

namespace headless {

namespace {

constexpr const char* kOk = "ok";

// The first word of a text and what follows the blank after it.
std::pair<std::string, std::string> splitWord(const std::string& text) {
    const std::size_t blank = text.find(' ');
    if (blank == std::string::npos) {
        return {text, {}};
    }
    return {text.substr(0, blank), text.substr(blank + 1)};
}

template <class Number>
Number parseNumber(const std::string& text) {
    Number number{};
    const char* const last = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc{} || stopped != last) {
        throw std::invalid_argument("\"" + text + "\" is no number that fits here");
    }
    return number;
}

const Dataref& findDataref(Session& session, const std::string& name) {
    const Dataref* dataref = session.Simulator().Datarefs().Lookup(name);
    if (dataref == nullptr) {
        throw std::invalid_argument("no such dataref: " + name);
    }
    return *dataref;
}

Command& findCommand(Session& session, const std::string& name) {
    Command* command = session.Simulator().Commands().Lookup(name);
    if (command == nullptr) {
        throw std::invalid_argument("no such command: " + name);
    }
    return *command;
}

std::string describeCounts(const std::string& prefix, const PhaseCounts& counts) {
    return " " + prefix + "begin=" + std::to_string(counts[xplm_CommandBegin]) + " " + prefix +
           "continue=" + std::to_string(counts[xplm_CommandContinue]) + " " + prefix +
           "end=" + std::to_string(counts[xplm_CommandEnd]);
}

} // namespace

const Console::Entry Console::kEntries[] = {
    {"get", &Console::get, "get NAME"},
    {"set", &Console::set, "set NAME VALUE[,VALUE...]"},
    {"command", &Console::command, "command once|begin|end NAME"},
    {"events", &Console::events, "events NAME"},
    {"handlers", &Console::handlers, "handlers"},
    {"aircraft", &Console::aircraft, "aircraft load TEXT, aircraft unload"},
    {"message", &Console::message, "message NUMBER PARAMETER"},
    {"pause", &Console::pause, "pause"},
    {"step", &Console::step, "step FRAMES"},
    {"run", &Console::run, "run"},
    {"frames", &Console::frames, "frames"},
    {"worst", &Console::worstFrame, "worst"},
    {"rss", &Console::residentMemory, "rss"},
    {"fds", &Console::fileDescriptors, "fds"},
    {"plugins", &Console::plugins, "plugins"},
    {"disable", &Console::disable, "disable [PLUGIN]"},
    {"enable", &Console::enable, "enable [PLUGIN]"},
    {"stop", &Console::stop, "stop [PLUGIN]"},
    {"start", &Console::start, "start [PLUGIN]"},
    {"reload", &Console::reload, "reload [PLUGIN]"},
    {"help", &Console::help, "help"},
    {"quit", &Console::end, "quit"},
};

Console::Console(Session& drivenSession, std::function<bool()> interrupted)
    : session(drivenSession), isInterrupted(std::move(interrupted)) {}

std::string Console::Execute(const std::string& line) {
    const auto [name, arguments] = splitWord(line);
    const Entry* entry = find(name);
    if (entry == nullptr) {
        return "error: unknown command \"" + name + "\"; try help";
    }
    try {
        return (this->*entry->handler)(arguments);
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what();
    }
}

const Console::Entry* Console::find(const std::string& name) {
    const auto* const found = std::find_if(std::begin(kEntries), std::end(kEntries),
                                           [&](const Entry& entry) { return name == entry.name; });
    return found == std::end(kEntries) ? nullptr : found;
}

std::string Console::get(const std::string& arguments) {
    return arguments + " = " + formatDataref(findDataref(session, arguments));
}

std::string Console::set(const std::string& arguments) {
    const auto [name, value] = splitWord(arguments);
    parseDataref(findDataref(session, name), value);
    return kOk;
}

std::string Console::command(const std::string& arguments) {
    const auto [how, name] = splitWord(arguments);
    CommandTable& commands = session.Simulator().Commands();
    Command& target = findCommand(session, name);
    if (how == "once") {
        commands.Once(&target);
    } else if (how == "begin") {
        commands.Begin(&target);
    } else if (how == "end") {
        commands.End(&target);
    } else {
        throw std::invalid_argument("a command is run once, begun or ended, not \"" + how + "\"");
    }
    return kOk;
}

std::string Console::events(const std::string& arguments) {
    const Command& counted = findCommand(session, arguments);
    return arguments + describeCounts("", counted.passedOn) +
           describeCounts("pressed-", counted.pressed);
}

std::string Console::handlers(const std::string& /*arguments*/) {
    const CommandTable& commands = session.Simulator().Commands();
    std::size_t count = 0;
    for (const std::string& name : commands.Names()) {
        count += commands.Lookup(name)->handlers.size();
    }
    return "handlers " + std::to_string(count);
}

std::string Console::aircraft(const std::string& arguments) {
    const auto [what, description] = splitWord(arguments);
    if (what == "load") {
        session.LoadAircraft(description);
    } else if (what == "unload") {
        session.UnloadAircraft();
    } else {
        throw std::invalid_argument("an aircraft is loaded or unloaded, not \"" + what + "\"");
    }
    return kOk;
}

std::string Console::message(const std::string& arguments) {
    const auto [number, parameter] = splitWord(arguments);
    // The simulator passes small numbers, such as an aircraft's index, as the pointer itself.
    const auto pointer = std::bit_cast<void*>(parseNumber<std::intptr_t>(parameter));
    session.Simulator().Plugins().Broadcast(parseNumber<int>(number), pointer);
    return kOk;
}

std::string Console::pause(const std::string& /*arguments*/) {
    session.SetPaused(true);
    return kOk;
}

std::string Console::step(const std::string& arguments) {
    const auto count = parseNumber<std::int64_t>(arguments);
    if (!session.IsPaused()) {
        throw std::invalid_argument("frames are stepped while paused");
    }
    if (count < 0) {
        throw std::invalid_argument("frames cannot be taken back");
    }
    for (std::int64_t i = 0; i < count && !isInterrupted(); ++i) {
        session.RunFrame();
    }
    return "frame " + std::to_string(session.Statistics().Frames());
}

std::string Console::run(const std::string& /*arguments*/) {
    session.SetPaused(false);
    return kOk;
}

std::string Console::frames(const std::string& /*arguments*/) {
    return "frames " + std::to_string(session.Statistics().Frames());
}

// In microseconds.
std::string Console::worstFrame(const std::string& /*arguments*/) {
    const auto worst = session.Statistics().Worst();
    return "worst " +
           std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(worst).count());
}

std::string Console::residentMemory(const std::string& /*arguments*/) {
    return "rss " + std::to_string(residentKilobytes());
}

std::string Console::fileDescriptors(const std::string& /*arguments*/) {
    return "fds " + std::to_string(openFileDescriptors());
}

std::string Console::plugins(const std::string& /*arguments*/) {
    return "plugins " + session.Plugins().Describe();
}

std::string Console::disable(const std::string& arguments) {
    session.Plugin(arguments).Disable();
    return kOk;
}

std::string Console::enable(const std::string& arguments) {
    session.Plugin(arguments).Enable();
    return kOk;
}

std::string Console::stop(const std::string& arguments) {
    session.Plugin(arguments).Stop();
    return kOk;
}

std::string Console::start(const std::string& arguments) {
    PluginHost& plugin = session.Plugin(arguments);
    plugin.Start();
    plugin.Enable();
    return kOk;
}

std::string Console::reload(const std::string& arguments) {
    session.ReloadPlugin(arguments);
    return kOk;
}

std::string Console::help(const std::string& /*arguments*/) {
    std::string text = kOk;
    for (const Entry& entry : kEntries) {
        text += entry.name == std::begin(kEntries)->name ? ": " : "; ";
        text += entry.usage;
    }
    return text;
}

std::string Console::end(const std::string& /*arguments*/) {
    quit = true;
    return kOk;
}

} // namespace headless
