#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/cli/ReconnectingClient.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/DatarefPoller.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/LiveScreen.h"
#include "tools/orvane/terminal/PrintableText.h"
#include "tools/orvane/terminal/Terminal.h"
#include "tools/orvane/watch/DatagramSender.h"
#include "tools/orvane/watch/WatchTable.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;

constexpr double kDefaultWatchInterval = 0.2;
constexpr std::size_t kLastRow = 1'000'000'000;

constexpr Description kWatch{
    "watch", "Show datarefs as they change",
    R"(On a terminal a table is redrawn in place: value, unit as given with @UNIT, the
least and the greatest seen, and a small curve of the latest values; * marks what
has changed. Elsewhere, and with --json or --csv, each reading is a line with the
seconds since the start. For types see "orvane get --help"; a dataref that has no
type and is 0 is read as another type once a second.

With --udp each reading is also sent as one datagram, the object that --json
prints, to a program that plots. It is not known whether anybody listens.

If the simulator goes away, watch says so and waits for it to come back. If the
simulator lacks a name at the start, the exit status is 3.

Examples:
  orvane watch sim/flightmodel/position/indicated_airspeed:float@kt
  orvane watch -T 10 -i 0.05 --csv sim/joystick/yoke_pitch_ratio > pitch.csv
  orvane watch --json -n 1 'sim/flightmodel/position/q:float[4]' | jq .
  orvane watch -i 0.02 --udp localhost:9870 sim/flightmodel/position/vh_ind:float)"};

struct WatchOptions {
    std::vector<std::string> names;
    Limits limits{.count = {}, .seconds = {}, .interval = kDefaultWatchInterval};
    std::size_t firstRow = 1;
    std::string udp;
};

// One run of the command.
class Watch final {
public:
    Watch(const GlobalOptions& globals, const WatchOptions& options)
        : globals(globals),
          options(options),
          arguments(parseDatarefArguments(options.names)),
          records(globals.OutputFormat(), columns()),
          terminal(STDOUT_FILENO),
          client(globals, endOf(options.limits), [this](const std::string& line) { lost(line); }),
          poller(client.Client(), arguments, DatarefPoller::Types::Open) {
        poller.Datarefs().ReportUnknown();
        if (!records.IsWanted() && terminal.IsTerminal()) {
            screen.emplace(terminal);
        }
        if (!options.udp.empty()) {
            datagrams.emplace(options.udp);
        }
    }

    ExitCode Run() {
        if (!poller.Datarefs().Unknown().empty()) {
            return ExitCode::NotFoundOrRefused;
        }
        client.Try([this] { poller.FindTypes(); });
        while (!client.IsOver() && readings < options.limits.MaxCount()) {
            if (client.Try([this] { read(); })) {
                show();
            }
            pace.WaitForNext(options.limits.MaxSeconds());
        }
        if (screen && readings > 0) {
            draw();
        }
        return ExitCode::Done;
    }

private:
    std::vector<std::string> columns() const {
        std::vector<std::string> result{"time"};
        std::transform(arguments.begin(), arguments.end(), std::back_inserter(result),
                       [](const DatarefArgument& argument) { return argument.name; });
        return result;
    }

    void read() {
        poller.Poll();
        ++readings;
    }

    void show() {
        if (datagrams) {
            send();
        }
        if (screen) {
            table.See(shownDatarefs(), poller.Values(), steady_clock::now());
            if (screen->IsDue(steady_clock::now())) {
                draw();
            }
        } else if (records.IsWanted()) {
            records.Write(recordOf());
        } else {
            printLine(lineOf());
        }
    }

    std::vector<DatarefArgument> shownDatarefs() const {
        std::vector<DatarefArgument> datarefs = poller.Datarefs().Known();
        for (DatarefArgument& dataref : datarefs) {
            dataref.name = printable(dataref.name);
            dataref.unit = printable(dataref.unit);
        }
        return datarefs;
    }

    void send() {
        const std::string failure = datagrams->Send(jsonText(recordOf()));
        if (!failure.empty() && failure != lastSendFailure) {
            tell(failure);
        }
        lastSendFailure = failure;
    }

    Record recordOf() const {
        Record record{{"time", toThreeDecimals(pace.Elapsed())}};
        const std::vector<velmar::Value>& values = poller.Values();
        for (std::size_t i = 0; i < values.size(); ++i) {
            record[poller.Datarefs().Known()[i].name] = valueJson(values[i]);
        }
        return record;
    }

    std::string lineOf() const {
        std::string line = fmt::format("{:.3f}", pace.Elapsed());
        const std::vector<velmar::Value>& values = poller.Values();
        for (std::size_t i = 0; i < values.size(); ++i) {
            line += fmt::format(" {}={}", poller.Datarefs().Known()[i].text, valueText(values[i]));
        }
        return line;
    }

    void draw() {
        const std::string state = lostBecause.empty() ? "" : "   (" + lostBecause + ")";
        screen->Draw(table.Lines(fmt::format("{}:{}   {:.1f} s   {} readings{}",
                                             printable(client.Client().host()), globals.port,
                                             pace.Elapsed(), readings, state),
                                 terminal, options.firstRow),
                     steady_clock::now());
    }

    void lost(const std::string& reason) {
        const std::string line = reason.empty() ? "the simulator is back" : reason;
        if (screen && readings > 0) {
            lostBecause = reason.empty() ? "" : "waiting for the simulator";
            draw();
        } else if (line != lastReported) {
            tell(line);
        }
        lastReported = line;
    }

    const GlobalOptions& globals;
    const WatchOptions& options;
    const std::vector<DatarefArgument> arguments;
    RecordWriter records;
    const Terminal terminal;
    Pace pace{options.limits.interval};
    ReconnectingClient client;
    DatarefPoller poller;
    WatchTable table;
    std::uint64_t readings = 0;
    std::string lostBecause;
    std::string lastReported;
    std::optional<LiveScreen> screen;
    std::optional<DatagramSender> datagrams;
    std::string lastSendFailure;
};

ExitCode watch(const GlobalOptions& globals, const WatchOptions& options) {
    return Watch(globals, options).Run();
}

} // namespace

void addWatch(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<WatchOptions>(kWatch, watch);
    declareWords(command, options.names, {"NAME", "NAME[:TYPE][@UNIT]", "DATAREF"});
    declareLimits(command, options.limits, "readings");
    command
        .add_option("--first", options.firstRow,
                    "The first row to show if the terminal is too small for all")
        ->check(wholeBetween(1, kLastRow, "1 and 1000000000"))
        ->type_name("ROW")
        ->capture_default_str();
    command
        .add_option("--udp", options.udp,
                    "Also send each reading to this host and port, as a datagram of JSON")
        ->type_name("HOST:PORT");
}

} // namespace orvane::tool
