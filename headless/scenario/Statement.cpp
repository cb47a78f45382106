#include "headless/scenario/Statement.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "headless/scenario/Statements.h"

namespace headless {

namespace {

constexpr const char* kAircraftUsage = "aircraft load TEXT, aircraft unload";
constexpr const char* kCommandUsage = "command once|begin|end NAME";

constexpr StatementKind kKinds[] = {
    {"get", "get NAME", "Prints the value of a dataref.", &readGet, NamedThing::Dataref},
    {"set", "set NAME VALUE[,VALUE...]",
     "Sets a dataref as the simulator itself would, also where plugins may not.", &readSet,
     NamedThing::Dataref},
    {"expect", "expect NAME == VALUE [within E] [for 2s]",
     "Fails unless the condition holds, with a time in each of its frames; also != < <= > >=.",
     &readExpect, NamedThing::Dataref},
    {"press", "press COMMAND", "Begins and ends a command.", &readPress, NamedThing::Command},
    {"begin", "begin COMMAND", "Begins a command, which is then held.", &readBegin,
     NamedThing::Command},
    {"end", "end COMMAND", "Ends a command that was begun.", &readEnd, NamedThing::Command},
    {"command", kCommandUsage, "The same as press, begin and end.", &readCommand},
    {"events", "events COMMAND",
     "Prints how often each phase of a command reached the simulator, and how often it was "
     "pressed.",
     &readEvents, NamedThing::Command},
    {"handlers", "handlers", "Prints how many command handlers there are.", &readHandlers},
    {"click", "click MENU > ITEM", "Chooses an item of the plugins menu.", &readClick},
    {"aircraft", kAircraftUsage, "Loads an aircraft of that description, or unloads it.",
     &readAircraft},
    {"message", "message NUMBER PARAMETER", "Sends a message of the simulator to all plugins.",
     &readMessage},
    {"wait", "wait 2s, wait up to 10s until NAME == VALUE [within E]",
     "Lets simulated time pass; the second form until the condition holds, and fails if that takes "
     "longer.",
     &readWait},
    {"frames", "frames [N]", "Runs this many frames, or prints how many have run.", &readFrames},
    {"step", "step N", "Runs this many frames, while paused.", &readStep},
    {"pause", "pause", "Stops all frames except those that statements ask for.", &readPause},
    {"resume", "resume", "Lets frames run by themselves again.", &readResume},
    {"run", "run", "The same as resume.", &readResume},
    {"rate", "rate N", "Frames per second from now on.", &readRate},
    {"plugins", "plugins", "Lists the plugins, and which of them are enabled.", &readPlugins},
    {"reload", "reload [PLUGIN]", "Unloads a plugin and loads it again.", &readReload,
     NamedThing::Plugin},
    {"disable", "disable [PLUGIN]", "Disables a plugin.", &readDisable, NamedThing::Plugin},
    {"enable", "enable [PLUGIN]", "Enables a plugin.", &readEnable, NamedThing::Plugin},
    {"stop", "stop [PLUGIN]", "Disables and stops a plugin.", &readStop, NamedThing::Plugin},
    {"start", "start [PLUGIN]", "Starts and enables a plugin that was stopped.", &readStart,
     NamedThing::Plugin},
    {"log", "log expect TEXT", "Fails unless a line of the log has the text.", &readLog},
    {"worst", "worst", "Prints the longest time that plugins took in a frame, in microseconds.",
     &readWorst},
    {"rss", "rss", "Prints the resident memory in kilobytes.", &readResidentMemory},
    {"fds", "fds", "Prints how many files and sockets are open.", &readFileDescriptors},
    {"help", "help [STATEMENT]", "Lists the statements, or says what one does.", &readHelp,
     NamedThing::Statement},
    {"quit", "quit [STATUS]", "Ends the run with an exit status, 0 if none is given.", &readQuit},
};

} // namespace

std::span<const StatementKind> statementKinds() {
    return kKinds;
}

const StatementKind& statementKind(const std::string& word) {
    const auto* const found =
        std::find_if(std::begin(kKinds), std::end(kKinds),
                     [&](const StatementKind& kind) { return word == kind.word; });
    if (found == std::end(kKinds)) {
        throw std::invalid_argument("unknown statement \"" + word + "\"; see help");
    }
    return *found;
}

Statement readStatement(const std::string& line) {
    const std::string text = withoutComment(line);
    const std::size_t wordEnd = std::min(text.find_first_of(" \t"), text.size());
    const StatementKind& kind = statementKind(text.substr(0, wordEnd));
    Arguments arguments(std::string_view(text).substr(wordEnd));
    return kind.read(arguments);
}

std::string replyTo(const std::string& line, Flight& flight) {
    try {
        const bool isComment = !line.empty() && withoutComment(line).empty();
        return isComment ? kOk : readStatement(line).execute(flight);
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what();
    }
}

std::string withoutComment(const std::string& line) {
    bool isQuoted = false;
    std::size_t end = 0;
    for (; end < line.size(); ++end) {
        const bool isAfterBlank = end == 0 || line[end - 1] == ' ' || line[end - 1] == '\t';
        if (line[end] == '#' && isAfterBlank && !isQuoted) {
            break;
        }
        if (line[end] == '"' && (isQuoted || isAfterBlank)) {
            isQuoted = !isQuoted;
        } else if (line[end] == '\\' && isQuoted) {
            ++end;
        }
    }
    return std::string(trimmed(std::string_view(line).substr(0, end)));
}

Statement acting(Arguments& arguments, std::function<void(Flight&)> act) {
    arguments.RequireEnd();
    return {[act = std::move(act)](Flight& flight) {
                act(flight);
                return std::string(kOk);
            },
            Statement::Purpose::Act};
}

Statement reporting(Arguments& arguments, std::function<std::string(Flight&)> report) {
    arguments.RequireEnd();
    return {std::move(report), Statement::Purpose::Report};
}

Statement checking(Arguments& arguments, std::function<void(Flight&)> check) {
    Statement statement = acting(arguments, std::move(check));
    statement.purpose = Statement::Purpose::Check;
    return statement;
}

} // namespace headless
