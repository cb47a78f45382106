#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/files/LineFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/record/Recording.h"
#include "tools/orvane/terminal/Progress.h"
#include "tools/orvane/terminal/StatusLine.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

namespace {

constexpr double kUsualRate = 20;
constexpr double kSlowestRecordRate = 0.001;
constexpr double kFastestRecordRate = 1000;
constexpr double kLongestRecordSeconds = 31'536'000;
constexpr std::uint64_t kMostRows = 1'000'000'000'000;

constexpr const char* kRecordFooter =
    "A name is NAME:TYPE, as for \"orvane get\"; the types are found out where they are not given\n"
    "and a value is not 0 at the start, else float is recorded. All datarefs of a row are read\n"
    "together, and each row is written as a whole and at once: whatever ends a recording, its "
    "file\n"
    "is complete up to its last line. Ctrl-C is the usual end.\n"
    "\n"
    "The file is CSV: \"time\" in seconds, then a column for each dataref, headed NAME:TYPE. An "
    "array\n"
    "is one field in quotes. \"orvane replay\" writes it all back.\n"
    "\n"
    "Examples:\n"
    "  orvane record sim/flightmodel/position/theta:float -o theta.csv\n"
    "  orvane record 'sim/flightmodel/position/q:float[4]' sim/time/zulu_time_sec:float \\\n"
    "      --rate 50 -T 60 -o minute.csv";

struct RecordOptions {
    std::vector<std::string> names;
    std::string file;
    bool force = false;
    double rate = kUsualRate;
    double seconds = std::numeric_limits<double>::infinity();
    std::uint64_t count = std::numeric_limits<std::uint64_t>::max();
};

// One run of the command.
class Recorder final {
public:
    Recorder(const RecordOptions& recordOptions, const GlobalOptions& globals)
        : options(recordOptions),
          client(clientOptions(globals)),
          reader(client, parseDatarefArguments(options.names)) {}

    ExitCode Run() {
        for (const std::string& name : reader.Unknown()) {
            tell(fmt::format("{}: the simulator has no such dataref", name));
        }
        if (!reader.Unknown().empty()) {
            return ExitCode::NotFoundOrRefused;
        }
        reader.FindTypes();
        begin();
        try {
            recordRows();
        } catch (const CancelledError&) {
            // The row that was asked for last is left out.
        } catch (...) {
            summarize();
            throw;
        }
        summarize();
        return ExitCode::Done;
    }

private:
    static Options clientOptions(const GlobalOptions& globals) {
        Options result = globals.ForClient();
        result.cancelled = isInterrupted;
        return result;
    }

    void begin() {
        std::vector<velmar::Dataref> datarefs;
        for (const DatarefArgument& argument : reader.Known()) {
            datarefs.push_back(argument.Dataref());
            names.push_back(argument.name);
        }
        file.emplace(options.file,
                     options.force ? LineFile::Existing::Overwrite : LineFile::Existing::Keep);
        file->Append(recordingHeader(datarefs));
    }

    void recordRows() {
        Pace pace(options.rate);
        while (rows < options.count && pace.Due() < options.seconds && pace.WaitUntil(pace.Due())) {
            const std::vector<velmar::Value> values = client.read(names);
            elapsed = pace.Elapsed();
            file->Append(recordingRow(elapsed, values));
            ++rows;
            if (status.IsDue()) {
                status.Show(progressText(elapsed, rows, file->Bytes()));
            }
            pace.Advance();
        }
    }

    void summarize() {
        status.Clear();
        printError(fmt::format("{}: {}", options.file, progressText(elapsed, rows, file->Bytes())));
    }

    const RecordOptions& options;
    velmar::Client client;
    DatarefReader reader;
    std::vector<std::string> names;
    std::optional<LineFile> file;
    StatusLine status;
    std::uint64_t rows = 0;
    double elapsed = 0;
};

} // namespace

void addRecord(CLI::App& app, const GlobalOptions& globals, Work& work) {
    CLI::App* const command =
        app.add_subcommand("record", "Writes the values of datarefs to a file as time goes by");
    command->footer(kRecordFooter);
    const auto options = std::make_shared<RecordOptions>();
    command->add_option("NAME", options->names, "What to record: NAME or NAME:TYPE")->required();
    command->add_option("-o,--output", options->file, "The file")->required();
    command->add_flag("--force", options->force, "Overwrite the file");
    command->add_option("--rate", options->rate, "Rows per second")
        ->check(CLI::Range(kSlowestRecordRate, kFastestRecordRate))
        ->capture_default_str();
    command->add_option("-n,--count", options->count, "End after so many rows")
        ->check(CLI::Range(std::uint64_t{1}, kMostRows));
    command->add_option("-T,--seconds", options->seconds, "End after so many seconds")
        ->check(CLI::Range(0.0, kLongestRecordSeconds));
    command->callback([options, &globals, &work] {
        work = [options, &globals] { return Recorder(*options, globals).Run(); };
    });
}

} // namespace orvane::tool
