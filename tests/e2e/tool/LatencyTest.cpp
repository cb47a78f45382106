#include <chrono>
#include <csignal>

#include <nlohmann/json.hpp>

#include "e2e/tool/ToolTest.h"

namespace {

class LatencyTest : public ToolTest {
protected:
    static nlohmann::json measure(const std::string& seconds) {
        const ToolResult result = runTool({"latency", "--json", "--seconds", seconds});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return nlohmann::json::parse(result.out);
    }

    // Repeats the measurement if the tool had to wait for the processor while it connected, which
    // it takes for a slow network.
    static nlohmann::json measureFrameRate() {
        nlohmann::json measured = measure("1");
        for (int i = 0; i < 5 && measured["frames_per_second"].is_null(); ++i) {
            measured = measure("1");
        }
        return measured;
    }
};

// On a busy machine frames come late, the simulator catches up, and exchanges miss frames; the
// bounds leave room for that. RoundTripsTest checks the computation.
TEST_F(LatencyTest, ShowsTheFrameRateOfTheSimulator) {
    for (const int wanted : {50, 100}) {
        fly(std::to_string(wanted));
        const auto begin = std::chrono::steady_clock::now();
        const long before = simulator->AskNumber("frames");
        const nlohmann::json measured = measureFrameRate();
        const auto frames = static_cast<double>(simulator->AskNumber("frames") - before);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        const auto framesPerSecond = measured["frames_per_second"].get<double>();
        EXPECT_LT(framesPerSecond, 1.5 * wanted) << measured.dump();
        EXPECT_GT(framesPerSecond, frames / took.count() / 3) << measured.dump();
        EXPECT_NEAR(measured["p50_ms"].get<double>(), 2000.0 / framesPerSecond, 1.0)
            << measured.dump();
    }
}

TEST_F(LatencyTest, CountsEveryRoundTrip) {
    const nlohmann::json measured = measure("0.5");
    std::size_t counted = 0;
    for (const nlohmann::json& bucket : measured["histogram"]) {
        counted += bucket["count"].get<std::size_t>();
    }
    EXPECT_EQ(counted, measured["round_trips"].get<std::size_t>());
    EXPECT_GT(counted, 5U);
    EXPECT_LE(measured["min_ms"].get<double>(), measured["p50_ms"].get<double>());
    EXPECT_LE(measured["p50_ms"].get<double>(), measured["p90_ms"].get<double>());
    EXPECT_LE(measured["p90_ms"].get<double>(), measured["p99_ms"].get<double>());
    EXPECT_LE(measured["p99_ms"].get<double>(), measured["max_ms"].get<double>());
}

TEST_F(LatencyTest, DrawsAHistogram) {
    const ToolResult result = runTool({"latency", "--seconds", "0.5"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* const part : {" round trips in ", "  min  ", "  median  ", "  90 %  ",
                                   "  99 %  ", "  max  ", "####", "  network ", "  frame rate "}) {
        EXPECT_NE(result.out.find(part), std::string::npos) << part << "\n" << result.out;
    }
}

TEST_F(LatencyTest, ShowsProgressOnATerminalAndTheResultAtAnInterrupt) {
    ToolRun run({"latency", "--seconds", "1000", "--csv"},
                {.hasErrTerminal = true, .environment = {"TERM=xterm"}});
    run.WaitForErr(" of 1000.0 s, ");
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.ends_with("\r\x1b[K")) << result.err;
    EXPECT_TRUE(result.out.starts_with(
        "round_trips,seconds,connect_ms,min_ms,p50_ms,p90_ms,p99_ms,max_ms,frames_per_second\n"))
        << result.out;
}

TEST_F(LatencyTest, PrintsNoProgressWithoutATerminal) {
    EXPECT_EQ(runTool({"latency", "--seconds", "0.5"}).err, "");
}

TEST_F(LatencyTest, FailsWhenTheSimulatorStops) {
    ToolRun run({"latency", "--seconds", "1000", "--timeout", "0.3"});
    const long before = simulator->AskNumber("frames");
    const ToolResult result = run.Wait([&] {
        if (simulator->AskNumber("frames") > before + 20) {
            simulator->Ask("pause");
        }
    });
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
}

} // namespace
