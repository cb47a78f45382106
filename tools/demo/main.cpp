// orvane-demo: flies a little with the plugin, with a client of each protocol at the same time, and
// shows what goes in and what comes back.

#include "tools/demo/DemoSession.h"
#include "tools/demo/LiveTable.h"
#include "tools/demo/Panel.h"
#include "tools/demo/TcpClient.h"
#include "tools/demo/VelmarPanel.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>

namespace {

constexpr int kExitOk = 0;
constexpr int kExitUsage = 1;
constexpr int kExitNoServer = 2;
constexpr int kExitServerFailed = 5;

constexpr std::chrono::seconds kConnectTimeout(10);
constexpr double kMaxSeconds = 86'400.0;
constexpr double kMaxHz = 1000.0;

constexpr const char* kFooter =
    "Exit status: 0 done, 1 wrong usage, 2 no connection, 5 the server closed or sent nonsense.\n"
    "\n"
    "Examples:\n"
    "  orvane-demo                             10 seconds with the simulator on this machine\n"
    "  orvane-demo --seconds 60 --hz 20        a minute, 20 requests per second\n"
    "  orvane-demo --host 192.0.2.7 | cat      another machine, plain lines";

struct Options {
    std::string host = "127.0.0.1";
    std::uint16_t port = 48000;
    double seconds = 10.0;
    double hz = 60.0;
};

void declareOptions(CLI::App& app, Options& options) {
    app.add_option("--host", options.host, "Where the simulator runs")->capture_default_str();
    app.add_option("--port", options.port, "The server's port")
        ->check(CLI::Range(1, 65535))
        ->capture_default_str();
    app.add_option("--seconds", options.seconds, "How long to fly")
        ->check(CLI::Range(0.0, kMaxSeconds))
        ->capture_default_str();
    app.add_option("--hz", options.hz, "Requests per second, at most; an answer takes two frames")
        ->check(CLI::Range(0.1, kMaxHz))
        ->capture_default_str();
    app.footer(kFooter);
}

class Stopwatch final {
public:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

private:
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

std::string aircraftText(std::uint32_t id) {
    return id == 0 ? "none loaded" : fmt::format("0x{:08X}", id);
}

// Returns the seconds that it took.
double fly(demo::DemoSession& session, demo::VelmarPanel& gauges, const demo::Panel& panel,
           const Options& options) {
    using Clock = std::chrono::steady_clock;
    const auto interval =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / options.hz));
    demo::LiveTable table(panel);
    const Stopwatch watch;
    auto next = Clock::now();
    while (watch.Seconds() < options.seconds) {
        const auto items = panel.PositionsAt(watch.Seconds());
        gauges.Send();
        const demo::OutputStream stream = session.Exchange(items);
        gauges.Receive();
        table.Show(
            {watch.Seconds(), options.seconds, session.Times().Count(), session.Times().Last()},
            items, stream, gauges.Values());
        // What the server's frames have delayed is not made up for.
        next = std::max(next + interval, Clock::now());
        std::this_thread::sleep_until(next);
    }
    table.Finish();
    return watch.Seconds();
}

void summarise(const demo::RoundTripTimes& times, double seconds, std::uint32_t aircraftId) {
    fmt::print("\n");
    fmt::print("  exchanges    {} in {:.1f} s, {:.1f} per second\n", times.Count(), seconds,
               seconds > 0.0 ? static_cast<double>(times.Count()) / seconds : 0.0);
    fmt::print("  round trips  min {} us, median {} us, p95 {} us, max {} us\n",
               times.Minimum().count(), times.Median().count(), times.Percentile95().count(),
               times.Maximum().count());
    fmt::print("  aircraft     {}\n", aircraftText(aircraftId));
}

void run(const Options& options) {
    demo::TcpClient client(options.host, options.port, kConnectTimeout);
    const demo::Panel panel;
    demo::DemoSession session(client, panel);
    const demo::VersionAnswer answer = session.ShakeHands();
    fmt::print("  server       {}:{}, protocol version {}\n", options.host, options.port,
               fmt::join(answer.version, "."));
    session.Declare();
    demo::TcpClient secondClient(options.host, options.port, kConnectTimeout);
    demo::VelmarPanel gauges(secondClient);
    gauges.Register();
    fmt::print("  declared     {} inputs, {} outputs; a second client speaks Velmar\n\n",
               panel.Inputs().size(), panel.Outputs().size());
    std::fflush(stdout);
    const double seconds = fly(session, gauges, panel, options);
    const demo::RoundTripTimes times = session.Times();
    // A held button would stay pressed after we are gone.
    const demo::OutputStream last = session.Exchange(panel.RestPositions());
    summarise(times, seconds, last.aircraftId);
}

int complain(const std::exception& error, int status, const char* prefix = "") {
    std::fflush(stdout);
    std::fprintf(stderr, "orvane-demo: %s%s\n", prefix, error.what());
    return status;
}

int flyOrComplain(const Options& options) {
    try {
        run(options);
        return kExitOk;
    } catch (const demo::ConnectError& error) {
        return complain(error, kExitNoServer);
    } catch (const demo::WireError& error) {
        return complain(error, kExitServerFailed, "the server sent nonsense: ");
    } catch (const std::exception& error) {
        return complain(error, kExitServerFailed);
    }
}

int start(int argc, char** argv) {
    CLI::App app("Drives an axis and more through the plugin, and shows what comes back.",
                 "orvane-demo");
    Options options;
    declareOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    }
    return flyOrComplain(options);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return start(argc, argv);
    } catch (const std::exception& error) {
        return complain(error, kExitUsage);
    }
}
