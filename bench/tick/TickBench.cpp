// A whole tick of the flight loop over real sockets: processor time of its thread, against a plugin
// that makes the same calls to the system and to the simulator and moves the same bytes.
//
// The count is that of idle clients, or of the outputs of an exchange. An exchange is two ticks.
// Both sides include what the simulator itself does in a frame, a tenth of a microsecond, and for
// an exchange two readings of the clock, which take a little longer.

#include <sys/resource.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "bench/Figure.h"
#include "bench/tick/BenchClient.h"
#include "bench/tick/Exchanges.h"
#include "bench/tick/TickFlight.h"
#include "support/PrivateNetwork.h"

namespace {

constexpr const char* kOurs = XPLANE_ORVANE;
constexpr const char* kFloor = ECHO_PLUGIN;

constexpr int kComparedExchanges = 4;
// What the first frames do once is not measured.
constexpr int kWarmUpTicks = 1000;

using Calls = std::vector<headless::RecordedCall>;

struct Transcript {
    std::vector<Bytes> answers;
    Calls calls;
    std::size_t refusals = 0;
};

Transcript transcriptOf(const char* plugin, int outputs) {
    Exchanges exchanges(plugin, outputs);
    headless::CallRecorder& recorder = exchanges.Simulator().Recorder();
    recorder.Clear();
    recorder.Enable();
    Transcript transcript;
    for (int i = 0; i < kComparedExchanges; ++i) {
        exchanges.SendRequest();
        exchanges.RunTicks();
        transcript.answers.push_back(exchanges.ReceiveAnswer());
    }
    transcript.calls = recorder.Calls();
    transcript.refusals = recorder.RecentRefusals().size();
    return transcript;
}

bool sameCall(const headless::RecordedCall& one, const headless::RecordedCall& other) {
    return one.function == other.function && one.arguments == other.arguments;
}

// A floor must give the same answers and make the same calls to the simulator.
void requireSameExchanges(int outputs) {
    const Transcript ours = transcriptOf(kOurs, outputs);
    const Transcript floor = transcriptOf(kFloor, outputs);
    const std::string which = std::to_string(outputs) + " outputs: ";
    if (ours.answers != floor.answers) {
        failCheck(which + "the plugin and its floor answer with different bytes");
    }
    if (ours.answers.front() == ours.answers.back()) {
        failCheck(which + "the inputs have no effect on the answers");
    }
    if (ours.refusals + floor.refusals > 0) {
        failCheck(which + "the simulator refuses what it is asked for");
    }
    if (!std::equal(ours.calls.begin(), ours.calls.end(), floor.calls.begin(), floor.calls.end(),
                    sameCall)) {
        failCheck(which + "the plugin and its floor call the simulator differently");
    }
}

long pageFaults() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

// The client's are included; it touches no new ones.
void countPageFaults(benchmark::State& state, long before) {
    const double perIteration =
        static_cast<double>(pageFaults() - before) / static_cast<double>(state.iterations());
    state.counters["faults_per_10000"] = 10'000.0 * perIteration;
}

// No client sends anything.
void measureIdle(benchmark::State& state, const char* plugin) {
    TickFlight flight(plugin);
    const auto runFrame = [&] { flight.RunFrame(); };
    std::vector<std::unique_ptr<BenchClient>> clients;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        clients.push_back(std::make_unique<BenchClient>());
        clients.back()->AwaitAcceptance(runFrame);
    }
    for (int i = 0; i < kWarmUpTicks; ++i) {
        runFrame();
    }
    const long faultsBefore = pageFaults();
    for ([[maybe_unused]] auto unused : state) {
        runFrame();
    }
    countPageFaults(state, faultsBefore);
}

void measureExchange(benchmark::State& state, const char* plugin) {
    requireSameExchanges(static_cast<int>(state.range(0)));
    Exchanges subject(plugin, static_cast<int>(state.range(0)));
    const long faultsBefore = pageFaults();
    subject.SendRequest();
    for ([[maybe_unused]] auto unused : state) {
        subject.RunTicks();
        // One pause around both: reading the clock is a system call, too.
        state.PauseTiming();
        subject.ReceiveAnswer();
        subject.SendRequest();
        state.ResumeTiming();
    }
    countPageFaults(state, faultsBefore);
}

using Measure = void (*)(benchmark::State&, const char* plugin);

void addTicks(const std::string& figure, const std::vector<std::int64_t>& counts, Measure measure) {
    const auto addSide = [&](const std::string& name, const char* plugin) {
        for (const std::int64_t count : counts) {
            addBenchmark(name, count, [=](benchmark::State& state) {
                try {
                    measure(state, plugin);
                } catch (const std::exception& error) {
                    failCheck(name + ": " + error.what());
                }
            });
        }
    };
    addSide(figure + "/ours", kOurs);
    addSide(figure + "/floor", kFloor);
}

} // namespace

void addFigures() {
    // The port is fixed; another program may hold it outside of this network.
    enterPrivateNetwork();
    addTicks("Tick/idle", {0, 1, 10}, measureIdle);
    addTicks("Tick/exchange", {100, 1000}, measureExchange);
}
