#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/record/RecordingFile.h"
#include "tools/orvane/terminal/Progress.h"
#include "tools/orvane/terminal/StatusLine.h"

namespace orvane::tool {

namespace {

constexpr double kSlowest = 0.01;
constexpr double kFastest = 1000;
// Smaller delays are normal: an exchange waits for frames.
constexpr double kNoticedSeconds = 0.5;

constexpr Description kReplay{
    "replay", "Write recorded values back at the pace of their recording",
    R"(The file comes from "orvane record". It is read completely before anything is
written, and refused with exit status 5 if any line is wrong; a last line that was
cut off is skipped, with a note. Ctrl-C ends a replay; the values then stay as
they are.

Of a .fdr file the position, the attitude and the DREF columns are written; what
else it sets is named. Its headings are written as true ones.

A write takes two frames of the simulator, and four if it has elements of arrays.
If that delays rows, a note at the end says by how much.

The simulator drops what it cannot write, and keeps changing what it drives
itself. At the end the datarefs are read once, and those that do not have their
last values are named.

Examples:
  orvane record 'sim/cockpit2/engine/actuators/throttle_ratio:float[8]' -T 5 -o flight.csv
  orvane replay flight.csv
  orvane replay flight.csv --speed 4
  orvane replay flight.csv --loop
  orvane replay approach.fdr)"};

struct ReplayOptions {
    std::string file;
    double speed = 1;
    bool loop = false;
};

// One run of the command.
class Replayer final {
public:
    Replayer(const ReplayOptions& options, const Recording& recording, const GlobalOptions& globals)
        : options(options), recording(recording), client(clientOptions(globals)) {
        std::vector<velmar::Dataref> datarefs;
        for (const DatarefArgument& dataref : recording.datarefs) {
            datarefs.push_back(dataref.Dataref());
            names.push_back(datarefs.back().name);
            hasElements = hasElements || dataref.elements;
        }
        client.registerDatarefs(datarefs);
    }

    ExitCode Run() {
        isPlaying = true;
        try {
            do {
                wholeRounds += play() ? 1U : 0U;
            } while (options.loop && written > 0 && !isInterrupted());
            if (!isInterrupted() && written > 0) {
                noteUnwritten();
            }
        } catch (...) {
            summarize();
            throw;
        }
        summarize();
        return ExitCode::Done;
    }

private:
    Options clientOptions(const GlobalOptions& globals) const {
        Options result = globals.ForClient();
        // A row that has begun is written completely.
        result.cancelled = [this] { return !isPlaying && isInterrupted(); };
        return result;
    }

    // False if an interrupt ended it.
    bool play() {
        const Pace pace(0);
        for (const RecordedRow& row : recording.rows) {
            const double due = (row.seconds - recording.rows.front().seconds) / options.speed;
            if (!pace.WaitUntil(due)) {
                return false;
            }
            secondsLate = std::max(secondsLate, pace.Elapsed() - due);
            write(row);
            if (status.IsDue()) {
                status.Show(progress(pace.Elapsed()));
            }
        }
        return true;
    }

    std::string progress(double seconds) const {
        const std::size_t rows = recording.rows.size();
        const std::string round =
            options.loop ? fmt::format("round {}, ", wholeRounds + 1) : std::string();
        return fmt::format("{}{:.1f} s, {} of {}", round, seconds, written - wholeRounds * rows,
                           rowsText(rows));
    }

    void write(const RecordedRow& row) {
        const std::vector<velmar::Value> before =
            hasElements ? client.read(names) : std::vector<velmar::Value>();
        client.write(wholeValues(recording.datarefs, row.values, before));
        ++written;
    }

    void noteUnwritten() {
        const std::vector<velmar::Value> values = client.read(names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const DatarefArgument& dataref = recording.datarefs[i];
            const std::string wanted = valueText(recording.rows.back().values[i]);
            const std::string read = valueText(dataref.ValueIn(values[i]));
            if (read != wanted) {
                tell(fmt::format("{} did not take or keep {}; it is {}", dataref.name, wanted,
                                 read));
            }
        }
    }

    void summarize() {
        if (secondsLate > kNoticedSeconds) {
            tell(fmt::format("could not keep up: rows were up to {:.1f} s late", secondsLate));
        }
        const std::string rounds = options.loop ? fmt::format(", {} whole {}", wholeRounds,
                                                              wholeRounds == 1 ? "round" : "rounds")
                                                : std::string();
        printError(fmt::format("{}: {} written{}", options.file, rowsText(written), rounds));
    }

    const ReplayOptions& options;
    const Recording& recording;
    bool isPlaying = false;
    velmar::Client client;
    std::vector<std::string> names;
    // Then each write needs the rest of the arrays.
    bool hasElements = false;
    StatusLine status;
    std::size_t written = 0;
    std::size_t wholeRounds = 0;
    double secondsLate = 0; // the latest row
};

ExitCode replay(const GlobalOptions& globals, const ReplayOptions& options) {
    const std::optional<Recording> recording = readRecordingFile(options.file);
    if (!recording) {
        return ExitCode::UnexpectedAnswer;
    }
    if (recording->hasSettings) {
        printError(fmt::format("{}: its aircraft, tail number, time and weather are not set",
                               options.file));
    }
    return Replayer(options, *recording, globals).Run();
}

} // namespace

void addReplay(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<ReplayOptions>(kReplay, replay);
    command
        .add_option("FILE", options.file,
                    "What \"orvane record\" wrote: .fdr, or CSV; - for standard input")
        ->type_name("FILE")
        ->required();
    command.add_option("--speed", options.speed, "Speed relative to the recording")
        ->check(between(kSlowest, kFastest))
        ->type_name("FACTOR")
        ->capture_default_str();
    command.add_flag("--loop", options.loop, "Start again at the end, until Ctrl-C");
}

} // namespace orvane::tool
