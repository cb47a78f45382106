#include "tools/orvane/cli/GlobalOptions.h"

#include <chrono>

#include <CLI/App.hpp>

#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Interrupt.h"

namespace orvane::tool {

namespace {

constexpr double kShortestTimeoutSeconds = 0.001;

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
    app.add_option("--host", globals.host, "The simulator's host; auto: the one that is heard")
        ->each([&globals](const std::string&) { globals.hasHost = true; })
        ->type_name("HOST|auto")
        ->capture_default_str()
        ->group(kGlobalGroup);
    app.add_option("--port", globals.port, "The server's port")
        ->each([&globals](const std::string&) { globals.hasPort = true; })
        ->check(wholeBetween(1, 65535))
        ->type_name("PORT")
        ->capture_default_str()
        ->group(kGlobalGroup);
    app.add_option("--timeout", globals.timeoutSeconds,
                   "Seconds to wait for a connection or an answer")
        ->check(between(kShortestTimeoutSeconds, kSecondsPerDay, "a millisecond and a day"))
        ->type_name("SECONDS")
        ->capture_default_str()
        ->group(kGlobalGroup);
    auto* const json =
        app.add_flag("--json", globals.json, "Print a JSON object per line")->group(kGlobalGroup);
    app.add_flag("--csv", globals.csv, "Print comma-separated records under a header")
        ->excludes(json)
        ->group(kGlobalGroup);
}

} // namespace orvane::tool
