#include <unistd.h>

#include <optional>
#include <string>

#include <CLI/App.hpp>
#include <fmt/core.h>

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
#include "tools/orvane/terminal/Progress.h"

namespace orvane::tool {

namespace {

constexpr double kShortestPeriod = 0.01;

constexpr Description kDrive{"drive", "Play a session from a profile",
                             R"(A profile is a TOML file:

  [connection]           # optional; --host, --port and --rate override it
  host = "127.0.0.1"
  port = 48000
  rate = 50              # exchanges per second

  [[input]]
  name = "pitch"         # a column of the table; several inputs may share one
  dataref = "sim/cockpit2/controls/yoke_pitch_ratio"
  type = "float"         # or "int"; element = 3 for that element of an array
  scaling = { float_range = [-1.0, 1.0] }  # or int_range, or datarefs = ["MIN", "MAX"]

  [[input]]
  name = "brakes"
  command = "sim/flight_controls/brakes_max"
  hold = true            # or repeat_ms = 200
  skip = { while_positive = "sim/time/paused", type = "int" }
                         # or while_zero, or when_value = 0 or 1

  [[output]]
  name = "speed"
  dataref = "sim/flightmodel/position/indicated_airspeed"
  type = "float"         # count = 4 and first = 0 for elements of an array;
                         # or command = "kyr/..."
  unit = "kt"            # only shown

"fixed" sends a fixed value to a dataref or command, "action" sets the number of a
name on the wire. The page docs/orvane.md describes every key.

A table is CSV with the names of inputs on its first line and the whole numbers to
send: 0 to 65535 for an axis, 1 presses a command, 0 releases it. An empty field
sends nothing. A column "time" says when each row is due, in seconds; without one
there is a row for each exchange. A waveform moves all inputs that are floats, and
no others. In a profile, "wave" and "steps" move single inputs.

Names that the simulator does not have are reported at the start; with --strict
they end the session with exit status 3.

An answer shows the values from before its exchange. If something was sent, one
more exchange at the end releases held commands and shows the effect of the last
row. Ctrl-C and failures release held commands as well.

On a terminal a table shows all inputs, with a bar for an axis and a mark for a
command that is down, and all outputs with a curve of their last four seconds.
Elsewhere, and with --plain, a line is printed for each exchange.

Examples:
  orvane drive examples/profiles/demo.toml
  orvane drive --check examples/profiles/yoke.toml
  orvane drive examples/profiles/yoke.toml --input sine --period 8 -T 30
  orvane drive examples/profiles/yoke.toml --input examples/profiles/yoke.csv --csv
  printf 'pitch,roll\n65535,32768\n' | \
      orvane drive examples/profiles/yoke.toml --input - -o outputs.csv)"};

struct DriveOptions {
    std::string profile;
    bool check = false;
    std::string input;
    Wave waveform;
    std::optional<double> rate;
    Limits limits;
    OutputOption output;
    bool reconnect = false;
    bool strict = false;
    bool plain = false;
    bool summary = false;
};

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
    view.output = options.output;
    // Rows typed on a terminal must stay visible, which a table would prevent.
    view.isPlain = options.plain || (options.input == "-" && ::isatty(STDIN_FILENO) == 1);
    view.hasSummary = options.summary;
    view.port = client.port;
    view.seconds = options.limits.seconds;
    return view;
}

ExitCode drive(const GlobalOptions& globals, const DriveOptions& options) {
    Problems problems;
    const Profile profile = readProfile(readWholeFile(options.profile), problems);
    if (!problems.empty()) {
        printProblems(options.profile, problems);
        return ExitCode::WrongUsage;
    }
    const InputSource source = openDriveInput(options.input, profile, options.waveform, problems);
    if (!problems.empty()) {
        printProblems(options.input, problems);
        return ExitCode::WrongUsage;
    }
    if (options.check) {
        return reportChecked(options.profile, profile);
    }
    const Options client = clientOptions(options, globals, profile);
    DriveOutput output(profile, viewOf(options, globals, client));
    DriveSession session(profile, client,
                         options.strict ? UnknownNames::Refuse : UnknownNames::Warn, output);
    session.Run(source, options.rate.value_or(profile.rate), options.limits);
    return ExitCode::Done;
}

void declareOptions(CLI::App& command, DriveOptions& options) {
    command.add_option("PROFILE", options.profile, "The file that describes the session")
        ->type_name("FILE")
        ->required();
    command.add_flag("--check", options.check, "Only check whether the profile is valid");
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
                    "Amplitude of a waveform, where 1 is the full range")
        ->check(between(0.0, 1.0))
        ->type_name("RATIO")
        ->capture_default_str();
    declareRate(command, options.rate, "Exchanges per second; the profile's if not given");
    declareEnds(command, options.limits, "exchanges");
    declareOutput(
        command, options.output,
        "Write the outputs to this file, - for standard output: CSV, or JSON with --json");
    command.add_flag("--reconnect", options.reconnect,
                     "Wait for the simulator when it goes away, and go on");
    command.add_flag("--strict", options.strict,
                     "Send nothing if the simulator lacks a name of the profile");
    command.add_flag("--plain", options.plain,
                     "Print lines instead of a table, even on a terminal");
    command.add_flag("--summary", options.summary,
                     "Print the number of exchanges and their round trips at the end");
}

} // namespace

void addDrive(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<DriveOptions>(kDrive, drive);
    declareOptions(command, options);
}

} // namespace orvane::tool
