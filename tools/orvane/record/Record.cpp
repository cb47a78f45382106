#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>

#include "headless/tracks/Track.h"
#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/OutputOption.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/datarefs/DatarefPoller.h"
#include "tools/orvane/files/LineFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/record/FdrFlight.h"
#include "tools/orvane/record/Recording.h"
#include "tools/orvane/terminal/Progress.h"
#include "tools/orvane/terminal/StatusLine.h"

namespace orvane::tool {

namespace {

constexpr double kDefaultRate = 20;

constexpr Description kRecord{
    "record", "Record the values of datarefs in a file",
    R"(A name is NAME:TYPE, NAME[3] or NAME[2:5], as for "orvane get". Without a type,
it is found from a value that is not 0 at the start; otherwise float is recorded.
All datarefs of a row are read together, and each row is written whole and at
once: however a recording ends, its file is complete up to the last line. Ctrl-C
is the usual end.

The file is CSV: "time" in seconds, then a column for each dataref, headed
NAME:TYPE. An array is one field in quotes. "orvane replay" writes it all back.
With -o - the rows go to standard output, and the summary to standard error.

If its name ends in .fdr, the file is the text of the simulator's flight data
recorder, version 4: in every row the position and attitude of the aircraft, and
then the datarefs, of which there may be none. "headless-sim --replay" flies it.

Examples:
  orvane record sim/flightmodel/position/theta:float -o theta.csv
  orvane record 'sim/flightmodel/position/q:float[4]' sim/time/zulu_time_sec:float \
      --rate 50 -T 60 -o minute.csv
  orvane record sim/flightmodel/position/theta:float -n 3 -o - | tail -n 1
  orvane record sim/cockpit2/controls/flap_ratio:float -o approach.fdr)"};

struct RecordOptions {
    std::vector<std::string> names;
    OutputOption output;
    std::optional<double> rate;
    Limits limits;
};

// One run of the command.
class Recorder final {
public:
    Recorder(const RecordOptions& options, const GlobalOptions& globals)
        : options(options),
          isFdr(headless::isFdrFile(options.output.path)),
          client(globals.ForClient()),
          poller(client, datarefs(), DatarefPoller::Types::Fixed) {}

    ExitCode Run() {
        if (reportUnknown() > 0) {
            return ExitCode::NotFoundOrRefused;
        }
        poller.FindTypes();
        const DatarefReader& reader = poller.Datarefs();
        for (std::size_t i = 0; i < reader.Known().size(); ++i) {
            if (reader.IsZeroInEveryType(i)) {
                tell(fmt::format("{}: 0 in every type, and recorded as {}", reader.Known()[i].name,
                                 reader.Known()[i].NameAndType()));
            }
        }
        begin();
        try {
            recordRows();
        } catch (const CancelledError&) {
            // The last row is incomplete and is dropped.
        } catch (...) {
            summarize();
            throw;
        }
        summarize();
        return ExitCode::Done;
    }

private:
    std::vector<DatarefArgument> datarefs() const {
        std::vector<DatarefArgument> asked = parseDatarefArguments(options.names);
        return isFdr ? withPosition(std::move(asked)) : asked;
    }

    // How many of those that were asked for the simulator lacks. Of the others a .fdr can lack
    // some.
    std::size_t reportUnknown() {
        std::size_t count = 0;
        for (const DatarefArgument& asked : parseDatarefArguments(options.names)) {
            const std::vector<std::string>& unknown = poller.Datarefs().Unknown();
            if (std::find(unknown.begin(), unknown.end(), asked.name) != unknown.end()) {
                reportUnknownDataref(asked.name);
                ++count;
            }
        }
        return count;
    }

    void begin() {
        const std::vector<DatarefArgument>& known = poller.Datarefs().Known();
        std::vector<std::string> head{recordingHeader(known)};
        if (isFdr) {
            head = flight.emplace(client, known, options.names.size()).Head();
        }
        file.emplace(options.output.path, options.output.Existing());
        for (const std::string& line : head) {
            file->Append(line);
        }
    }

    void recordRows() {
        Pace pace(1 / options.rate.value_or(kDefaultRate));
        const Limits& limits = options.limits;
        while (rows < limits.MaxCount() && pace.Due() < limits.MaxSeconds() &&
               pace.WaitUntil(pace.Due())) {
            poller.Poll();
            elapsed = pace.Elapsed();
            file->Append(flight ? flight->Row(elapsed, poller.Values())
                                : recordingRow(elapsed, poller.Values()));
            ++rows;
            if (!file->IsTerminal() && status.IsDue()) {
                status.Show(progressText(elapsed, rows, file->Bytes()));
            }
            pace.Advance();
        }
    }

    void summarize() {
        printError(fmt::format("{}: {}", file->Name(), progressText(elapsed, rows, file->Bytes())));
    }

    const RecordOptions& options;
    const bool isFdr;
    velmar::Client client;
    DatarefPoller poller;
    std::optional<LineFile> file;
    std::optional<FdrFlight> flight; // if isFdr
    StatusLine status;
    std::uint64_t rows = 0;
    double elapsed = 0;
};

ExitCode record(const GlobalOptions& globals, const RecordOptions& options) {
    if (options.names.empty() && !headless::isFdrFile(options.output.path)) {
        throw Failure(ExitCode::WrongUsage, "NAME is required, unless FILE ends in .fdr");
    }
    return Recorder(options, globals).Run();
}

} // namespace

void addRecord(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<RecordOptions>(kRecord, record);
    command.add_option("NAME", options.names, "What to record: NAME or NAME:TYPE")
        ->type_name("DATAREF");
    declareOutput(command, options.output, "The file: .fdr, or CSV; - for standard output")
        ->required();
    declareRate(command, options.rate, "Rows per second; 20 if not given");
    declareEnds(command, options.limits, "rows");
}

} // namespace orvane::tool
