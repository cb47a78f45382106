#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/OutputOption.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/drive/DriveInput.h"
#include "tools/orvane/drive/DriveOutput.h"
#include "tools/orvane/drive/DriveSession.h"
#include "tools/orvane/drive/ProfileReader.h"
#include "tools/orvane/files/InputFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/terminal/PrintableText.h"
#include "tools/orvane/terminal/Progress.h"

namespace orvane::tool {

namespace {

constexpr double kShortestPeriod = 0.01;

constexpr const char* kDriveFooter =
    "A profile is a TOML file:\n"
    "\n"
    "  [connection]           # all of it may be left out; --host, --port and --rate go first\n"
    "  host = \"127.0.0.1\"\n"
    "  port = 48000\n"
    "  rate = 50              # exchanges per second\n"
    "\n"
    "  [[input]]\n"
    "  name = \"pitch\"         # a column of the table; several inputs may share one\n"
    "  dataref = \"sim/cockpit2/controls/yoke_pitch_ratio\"\n"
    "  type = \"float\"         # or \"int\"; element = 3 for that element of an array\n"
    "  scaling = { float_range = [-1.0, 1.0] }  # or int_range, or datarefs = [\"MIN\", \"MAX\"]\n"
    "\n"
    "  [[input]]\n"
    "  name = \"brakes\"\n"
    "  command = \"sim/flight_controls/brakes_max\"\n"
    "  hold = true            # or repeat_ms = 200\n"
    "  skip = { while_positive = \"sim/time/paused\", type = \"int\" }\n"
    "                         # or while_zero, or when_value = 0 or 1\n"
    "\n"
    "  [[output]]\n"
    "  name = \"speed\"\n"
    "  dataref = \"sim/flightmodel/position/indicated_airspeed\"\n"
    "  type = \"float\"         # count = 4 and first = 0 for elements of an array;\n"
    "                         # or command = \"kyr/...\"\n"
    "  unit = \"kt\"            # only shown\n"
    "\n"
    "\"fixed\" sends a value of its own to a dataref or command, \"action\" gives the number that "
    "a\n"
    "name has on the wire. The page docs/orvane.md describes every key.\n"
    "\n"
    "A table is CSV with the names of inputs on its first line, and whole numbers as they are "
    "sent:\n"
    "0 to 65535 for an axis, 1 presses a command, 0 releases it. An empty field sends nothing. A\n"
    "column \"time\" says when each row is due, in seconds; without one there is a row for each\n"
    "exchange. A waveform moves all inputs that are floats, and no others. In a profile, \"wave\" "
    "and\n"
    "\"steps\" move inputs one by one.\n"
    "\n"
    "Names that the simulator does not have are told at the start; with --strict they end the\n"
    "session with exit status 3.\n"
    "\n"
    "An answer shows the values from before its exchange. Where something was sent, one more\n"
    "exchange at the end releases what is held and shows what the last row did. Ctrl-C and "
    "failures\n"
    "release held commands as well.\n"
    "\n"
    "On a terminal a table shows all inputs, with a bar for an axis and a mark for a command that "
    "is\n"
    "down, and all outputs with a curve of their last four seconds. Elsewhere, and with --plain, a "
    "line\n"
    "is printed for each exchange.\n"
    "\n"
    "Examples:\n"
    "  orvane drive examples/profiles/demo.toml\n"
    "  orvane drive --check examples/profiles/yoke.toml\n"
    "  orvane drive examples/profiles/yoke.toml --input sine --period 8 -T 30\n"
    "  orvane drive examples/profiles/yoke.toml --input examples/profiles/yoke.csv --csv\n"
    "  printf 'pitch,roll\\n65535,32768\\n' | \\\n"
    "      orvane drive examples/profiles/yoke.toml --input - -o outputs.csv";

struct DriveOptions {
    std::string profile;
    bool check = false;
    std::string input;
    Wave waveform;
    std::optional<double> rate;
    Limits limits;
    std::string file;
    bool force = false;
    bool reconnect = false;
    bool strict = false;
    bool plain = false;
    bool summary = false;
};

ExitCode complainOf(const std::string& file, const Problems& problems) {
    fmt::print(stderr, "{}", problemLines(file, problems));
    return ExitCode::WrongUsage;
}

ExitCode reportChecked(const std::string& file, const Profile& profile) {
    const tarnel::Definitions& definitions = profile.definitions;
    writeOut(fmt::format("{}: valid: {} inputs, {} outputs; definitions of {}, answers of {}\n",
                         file, definitions.inputs().size(), definitions.outputs().size(),
                         sizeText(definitions.requestSize()), sizeText(definitions.answerSize())));
    return ExitCode::Done;
}

Options clientOptions(const DriveOptions& options, const GlobalOptions& globals,
                      const Profile& profile) {
    Options result = globals.ForClient(options.reconnect ? OnLoss::Reconnect : OnLoss::Throw);
    if (!globals.hasHost) {
        result.host = profile.host.value_or(result.host);
    }
    if (!globals.hasPort) {
        result.port = profile.port.value_or(result.port);
    }
    return result;
}

DriveView viewOf(const DriveOptions& options, const GlobalOptions& globals, const Options& client) {
    DriveView view;
    view.format = globals.OutputFormat();
    view.file = options.file;
    view.existing = options.force ? LineFile::Existing::Overwrite : LineFile::Existing::Keep;
    // Who types rows wants to see them, and not where a table is drawn.
    view.isPlain = options.plain || (options.input == "-" && ::isatty(STDIN_FILENO) == 1);
    view.hasSummary = options.summary;
    view.place = fmt::format("{}:{}", printable(client.host), client.port);
    view.seconds = options.limits.seconds;
    return view;
}

DriveLimits limitsOf(const DriveOptions& options, const Profile& profile) {
    DriveLimits limits;
    limits.rate = options.rate.value_or(profile.rate);
    limits.seconds = options.limits.MostSeconds();
    limits.exchanges = options.limits.MostTurns();
    return limits;
}

ExitCode drive(const GlobalOptions& globals, const DriveOptions& options) {
    Problems problems;
    const Profile profile = readProfile(readWholeFile(options.profile), problems);
    if (!problems.empty()) {
        return complainOf(options.profile, problems);
    }
    const auto source = openDriveInput(options.input, profile, options.waveform, problems);
    if (!problems.empty()) {
        return complainOf(options.input, problems);
    }
    if (options.check) {
        return reportChecked(options.profile, profile);
    }
    const Options client = clientOptions(options, globals, profile);
    DriveOutput output(profile, viewOf(options, globals, client));
    DriveSession session(profile, client,
                         options.strict ? UnknownNames::Refuse : UnknownNames::Warn, output);
    session.Run(*source, limitsOf(options, profile));
    return ExitCode::Done;
}

void declareOptions(CLI::App& command, DriveOptions& options) {
    command.add_option("PROFILE", options.profile, "The file that describes the session")
        ->type_name("FILE")
        ->required();
    command.add_flag("--check", options.check, "Only say whether the profile is valid");
    command
        .add_option("--input", options.input,
                    "What to send: a table, - for one on standard input, or a waveform; without "
                    "it the inputs move as the profile says, or nothing is sent")
        ->type_name("FILE|-|sine|triangle|square|sweep");
    command
        .add_option("--period", options.waveform.periodSeconds, "Seconds of a waveform's period")
        ->check(between(kShortestPeriod, kSecondsPerDay, "0.01 and a day"))
        ->type_name("SECONDS")
        ->capture_default_str();
    command
        .add_option("--amplitude", options.waveform.amplitude,
                    "Amplitude of a waveform, where 1 is from end to end")
        ->check(between(0.0, 1.0))
        ->type_name("RATIO")
        ->capture_default_str();
    declareRate(command, options.rate, "Exchanges per second; the profile's if not given");
    declareEnds(command, options.limits, "exchanges");
    declareOutput(
        command, options.file, options.force,
        "Write the outputs to this file, - for standard output: CSV, or JSON with --json");
    command.add_flag("--reconnect", options.reconnect,
                     "Wait for the simulator when it goes away, and go on");
    command.add_flag("--strict", options.strict,
                     "Send nothing if the simulator lacks a name of the profile");
    command.add_flag("--plain", options.plain, "Print lines on a terminal, too, and no table");
    command.add_flag("--summary", options.summary,
                     "Say at the end how many exchanges there were, and how long they took");
}

} // namespace

void addDrive(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<DriveOptions>(
        {"drive", "Play a session that a profile describes", kDriveFooter}, drive);
    declareOptions(command, options);
}

} // namespace orvane::tool
