#include "tools/orvane/cli/GlobalOptions.h"

#include "tools/orvane/cli/Interrupt.h"

#include <CLI/CLI.hpp>

#include <chrono>

namespace orvane::tool {

namespace {

constexpr double kShortestTimeoutSeconds = 0.001;
constexpr double kLongestTimeoutSeconds = 86'400.0;

} // namespace

Format GlobalOptions::OutputFormat() const {
    if (json) {
        return Format::Json;
    }
    return csv ? Format::Csv : Format::Text;
}

Options GlobalOptions::ForClient(OnLoss onLoss) const {
    Options options;
    options.host = host;
    options.port = port;
    options.timeout = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(timeoutSeconds));
    options.onLoss = onLoss;
    options.cancelled = isInterrupted;
    return options;
}

void declareGlobalOptions(CLI::App& app, GlobalOptions& globals) {
    const std::string group = "Options of every command";
    app.add_option("--host", globals.host, "Where the simulator runs")
        ->capture_default_str()
        ->group(group);
    app.add_option("--port", globals.port, "The server's port")
        ->check(CLI::Range(1, 65535))
        ->capture_default_str()
        ->group(group);
    app.add_option("--timeout", globals.timeoutSeconds,
                   "Seconds to wait for a connection, and for each answer")
        ->check(CLI::Range(kShortestTimeoutSeconds, kLongestTimeoutSeconds))
        ->capture_default_str()
        ->group(group);
    auto* json = app.add_flag("--json", globals.json, "A JSON object per line")->group(group);
    app.add_flag("--csv", globals.csv, "Comma-separated records, where there are records")
        ->excludes(json)
        ->group(group);
}

} // namespace orvane::tool
