#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/core.h>

#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/drive/ProfileReader.h"
#include "tools/orvane/files/InputFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/find/ListOptions.h"
#include "tools/orvane/find/NameLists.h"
#include "tools/orvane/record/RecordingFile.h"
#include "tools/orvane/serve/AircraftWatch.h"
#include "tools/orvane/serve/Controls.h"
#include "tools/orvane/serve/HttpServer.h"
#include "tools/orvane/serve/Hub.h"
#include "tools/orvane/serve/LiveReader.h"
#include "tools/orvane/serve/NameSearch.h"
#include "tools/orvane/serve/ReplayReader.h"
#include "tools/orvane/serve/RequestCheck.h"
#include "tools/orvane/serve/Routes.h"
#include "tools/orvane/serve/StartText.h"

namespace orvane::tool {

namespace {

constexpr std::uint16_t kDefaultPort = 48080;

constexpr Description kServe{
    "serve", "Show datarefs as curves in a browser, and press commands there",
    R"(Prints the address of a page, which shows the datarefs as they move. On the page
you add and drop names, set values, and press and hold commands. A name is
NAME[:TYPE][@UNIT], as for "orvane watch". With a profile of "orvane drive" the
page shows its inputs and outputs; with --replay it shows a recording instead of
a simulator.

Only this machine can reach the page, unless --bind names another address. Whoever
has the page's address can write to the simulator: it contains a token that is new
in each run. A page that is opened without the token shows values but cannot write.

A command that a page holds is released when the page is closed, when nothing is
heard of it for two seconds, and when orvane ends. If the simulator is not there,
serve waits for it. The page offers names from the lists that "orvane find" reads.

Examples:
  orvane serve sim/flightmodel/position/indicated_airspeed:float@kt --open
  orvane serve --profile examples/profiles/yoke.toml
  orvane serve --replay flight.csv)"};

struct ServeOptions {
    std::vector<std::string> names;
    std::vector<std::string> commands;
    std::string profile;
    std::string replay;
    ListFiles lists;
    std::uint16_t port = kDefaultPort;
    std::string address = "127.0.0.1";
    bool open = false;
};

Profile profileIn(const std::string& file) {
    Problems problems;
    Profile profile = readProfile(readWholeFile(file), problems);
    if (!problems.empty()) {
        printProblems(file, problems);
        throw Failure(ExitCode::WrongUsage, fmt::format("{} is not a valid profile", file));
    }
    return profile;
}

Recording recordingIn(const std::string& file) {
    std::optional<Recording> recording = readRecordingFile(file);
    if (!recording || recording->rows.empty()) {
        throw Failure(ExitCode::UnexpectedAnswer, fmt::format("{} has nothing to show", file));
    }
    return std::move(*recording);
}

NameLists namesIn(const ListFiles& files) {
    NameLists lists = NameLists::Read(files);
    for (const std::string& warning : lists.warnings) {
        printError(warning);
    }
    return lists;
}

// Nobody has asked for these: if they cannot be read, the page offers no names.
NameLists installedNames() {
    try {
        return NameLists::Read(installedLists());
    } catch (const std::runtime_error& error) {
        printError(error.what());
        return {};
    }
}

std::string problemOfAddress(const std::string& text) {
    return hostOf(text) ? "" : fmt::format("\"{}\" is not an IP address", text);
}

// Does not wait for the browser.
void openBrowser(std::string address) {
    std::string program = "xdg-open";
    std::array<char*, 3> arguments{program.data(), address.data(), nullptr};
    // In a group of its own, so that Ctrl-C does not end it. Only the tool ignores SIGPIPE.
    posix_spawnattr_t attributes;
    sigset_t usual;
    ::sigemptyset(&usual);
    ::sigaddset(&usual, SIGPIPE);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigdefault(&attributes, &usual);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    pid_t child = -1;
    if (::posix_spawnp(&child, program.c_str(), nullptr, &attributes, arguments.data(), environ) !=
        0) {
        tell("xdg-open is missing: open the address yourself");
    }
    ::posix_spawnattr_destroy(&attributes);
}

// One run of the command.
class Server final {
public:
    Server(const GlobalOptions& globals, const ServeOptions& options)
        : globals(globals),
          options(options),
          names(options.lists.IsEmpty() ? installedNames() : namesIn(options.lists)),
          http(options.address, options.port) {
        site = {options.address, http.Port(), randomToken()};
    }

    void Live(const std::string& start) {
        Controls controls(globals);
        const std::jthread aircraft(
            [this](const std::stop_token& end) { watchAircraft(end, globals, hub); });
        const Routes routes(hub, &controls, names, start);
        serve(routes, [this] { LiveReader(globals, hub).Run(); });
    }

    void Replay(const Recording& recording, const std::string& start) {
        const Routes routes(hub, nullptr, names, start);
        serve(routes, [&] { ReplayReader(recording, hub).Run(); });
    }

private:
    void serve(const Routes& routes, const std::function<void()>& read) {
        http.Start({[this](const HttpRequest& request) { return refusalOf(request, site); },
                    [&](const HttpRequest& request) { return routes.Answer(request); }});
        announce();
        read();
        hub.CloseAll();
        http.Stop();
    }

    void announce() const {
        const std::string host = hostOf(site.address).value();
        const bool isAll = host == "0.0.0.0";
        const std::string address = fmt::format("http://{}:{}/#token={}",
                                                isAll ? "127.0.0.1" : host, site.port, site.token);
        if (host != "127.0.0.1") {
            tell(
                fmt::format("others on the network can reach {}:{}; the connection is not "
                            "encrypted, and whoever has the address can write",
                            host, site.port));
        }
        printLine(address);
        if (options.open) {
            openBrowser(address);
        }
    }

    const GlobalOptions& globals;
    const ServeOptions& options;
    const NameSearch names;
    Site site;
    Hub hub;
    HttpServer http;
};

ExitCode serve(const GlobalOptions& globals, const ServeOptions& options) {
    StartText start;
    parseDatarefArguments(options.names);
    for (const std::string& name : options.names) {
        start.AddName(name);
    }
    for (const std::string& command : options.commands) {
        start.AddCommand(command);
    }
    GlobalOptions place = globals;
    if (!options.profile.empty()) {
        const Profile profile = profileIn(options.profile);
        place.host = globals.hasHost ? place.host : profile.host.value_or(place.host);
        place.port = globals.hasPort ? place.port : profile.port.value_or(place.port);
        start.Add(profile);
    }
    if (options.replay.empty()) {
        Server(place, options)
            .Live(start.Text(fmt::format("{}:{}", place.host, place.port), false));
        return ExitCode::Done;
    }
    const Recording recording = recordingIn(options.replay);
    for (const DatarefArgument& dataref : recording.datarefs) {
        start.AddName(dataref.text);
    }
    Server(place, options).Replay(recording, start.Text(options.replay, true));
    return ExitCode::Done;
}

} // namespace

void addServe(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<ServeOptions>(kServe, serve);
    command.add_option("NAME", options.names, "NAME[:TYPE][@UNIT]");
    command.add_option("--command", options.commands, "A command to show and to press")
        ->type_name("NAME")
        ->expected(1)
        ->take_all();
    declareFile(command, "--profile", options.profile, "Show what this profile of drive uses");
    declareFile(command, "--replay", options.replay, "Show a recording instead of a simulator");
    declareLists(command, options.lists);
    command
        .add_option("--port", options.port,
                    "The port of the page, 0 for a free one; give that of the simulator before "
                    "\"serve\"")
        ->check(wholeBetween(0, 65535))
        ->type_name("PORT")
        ->capture_default_str();
    command
        .add_option("--bind", options.address,
                    "The address to listen on; any but 127.0.0.1 lets other machines in")
        ->check(CLI::Validator(problemOfAddress, ""))
        ->type_name("ADDRESS")
        ->capture_default_str();
    command.add_flag("--open", options.open, "Open the page in the browser");
}

} // namespace orvane::tool
