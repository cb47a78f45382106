#include <sys/socket.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"
#include "support/TcpPeer.h"

namespace {

constexpr std::uint16_t kPort = 48080;
constexpr const char* kPageId = "0123456789abcdef";

// A request of a browser, or half of one, and what has come back.
class HttpPeer {
public:
    explicit HttpPeer(const std::string& request) : peer(kPort) {
        peer.Send(Bytes(request.begin(), request.end()));
    }

    bool WaitFor(
        const std::string& text, const std::function<void()>& step = [] {}) {
        return driveUntil(
                   [&] {
                       receive();
                       step();
                   },
                   [&] { return received.find(text) != std::string::npos || peer.HasEnded(); }) &&
               received.find(text) != std::string::npos;
    }

    // All until the end.
    std::string Answer() {
        driveUntil([this] { receive(); }, [this] { return peer.HasEnded(); });
        return received;
    }

    void Forget() { received.clear(); }

private:
    void receive() {
        const Bytes bytes = peer.Receive();
        received.append(bytes.begin(), bytes.end());
    }

    TcpPeer peer;
    std::string received;
};

class ServeTest : public ToolTest {
protected:
    void serve(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "serve");
        tool = std::make_unique<ToolRun>(arguments);
        tool->WaitForOut("\n");
        const std::string key = "#token=";
        token = tool->Out().substr(tool->Out().find(key) + key.size(), 32);
    }

    static std::string get(const std::string& path, const std::string& fields = "") {
        return fmt::format("GET {} HTTP/1.1\r\nHost: 127.0.0.1:48080\r\n{}\r\n", path, fields);
    }

    std::string post(const std::string& path, const std::string& body) const {
        return fmt::format(
            "POST {} HTTP/1.1\r\nHost: 127.0.0.1:48080\r\nX-Orvane-Token: {}\r\n"
            "Content-Type: application/json\r\nContent-Length: {}\r\n\r\n{}",
            path, token, body.size(), body);
    }

    std::string command(const std::string& path, const std::string& name) const {
        return HttpPeer(post(path, fmt::format(R"({{"id":"{}","command":"{}"}})", kPageId, name)))
            .Answer();
    }

    // Opens a stream and asks for names; the stream's first reading has arrived.
    std::unique_ptr<HttpPeer> watch(const std::string& names, const std::string& commands = "") {
        auto stream = std::make_unique<HttpPeer>(get(fmt::format("/events?id={}", kPageId)));
        EXPECT_TRUE(stream->WaitFor("event: state"));
        const std::string body =
            fmt::format(R"({{"id":"{}","names":[{}],"commands":[{}]}})", kPageId, names, commands);
        EXPECT_TRUE(HttpPeer(post("/watch", body)).Answer().starts_with("HTTP/1.1 200 "));
        EXPECT_TRUE(stream->WaitFor("event: series"));
        EXPECT_TRUE(stream->WaitFor("\ndata: ["));
        return stream;
    }

    std::unique_ptr<ToolRun> tool;
    std::string token;
};

TEST_F(ServeTest, ShowsChangesAsTheyHappen) {
    serve({"test/int:int@kg"});
    EXPECT_NE(HttpPeer(get("/start")).Answer().find(R"("names":["test/int:int@kg"])"),
              std::string::npos);
    const auto stream = watch(R"("test/int:int@kg","test/ints:int[2]","no/such")");
    EXPECT_TRUE(stream->WaitFor(R"({"name":"test/int","argument":"test/int:int@kg","unit":"kg",)"
                                R"("type":"int"})"));
    EXPECT_TRUE(stream->WaitFor(R"("missing":["no/such"])"));
    simulator->Ask("set test/int 17");
    EXPECT_TRUE(stream->WaitFor(",0,17]\n"));
    simulator->Ask("set test/ints 4,5");
    EXPECT_TRUE(stream->WaitFor(",1,4,2,5]\n"));
}

TEST_F(ServeTest, SetsAndPressesAndHolds) {
    serve({});
    const auto stream = watch(R"("test/int:int")", R"("test/hold")");
    EXPECT_NE(HttpPeer(post("/set", R"({"assignment":"test/int:int=9"})"))
                  .Answer()
                  .find(R"("reads":9,"taken":true)"),
              std::string::npos);
    EXPECT_TRUE(stream->WaitFor(",0,9]\n"));
    EXPECT_TRUE(command("/press", "test/hold").starts_with("HTTP/1.1 200 "));
    EXPECT_TRUE(stream->WaitFor(R"("command":"test/hold","event":"pressed"})"));
    EXPECT_TRUE(command("/hold", "test/hold").starts_with("HTTP/1.1 200 "));
    EXPECT_TRUE(stream->WaitFor(R"("event":"down"})"));
    EXPECT_TRUE(command("/release", "test/hold").starts_with("HTTP/1.1 200 "));
    EXPECT_TRUE(stream->WaitFor(R"("event":"up"})"));
    EXPECT_TRUE(command("/press", "no/such").starts_with("HTTP/1.1 404 "));
}

TEST_F(ServeTest, ReleasesWhatAPageNoLongerHolds) {
    serve({});
    const auto stream = watch("", R"("test/hold")");
    const auto begin = std::chrono::steady_clock::now();
    command("/hold", "test/hold");
    command("/hold", "test/hold");
    EXPECT_TRUE(stream->WaitFor(R"("event":"up"})"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(ServeTest, ReleasesAllAtItsEnd) {
    serve({});
    command("/hold", "test/hold");
    tool->Signal(SIGTERM);
    EXPECT_EQ(tool->Wait().exitCode, 0);
    const std::string events = simulator->Ask("events test/hold");
    EXPECT_NE(events.find(" begin=1 "), std::string::npos) << events;
    EXPECT_NE(events.find(" end=1"), std::string::npos) << events;
}

TEST_F(ServeTest, SaysWhenTheSimulatorGoesAndComesBack) {
    serve({});
    const auto stream = watch(R"("test/int:int")");
    simulator.reset();
    EXPECT_TRUE(stream->WaitFor(R"("state":"lost")"));
    stream->Forget();
    fly();
    EXPECT_TRUE(stream->WaitFor(R"("state":"connected")"));
    simulator->Ask("set test/int 21");
    EXPECT_TRUE(stream->WaitFor(",0,21]\n"));
}

TEST_F(ServeTest, WaitsForASimulatorAndTellsOfAnotherAircraft) {
    simulator.reset();
    serve({});
    HttpPeer stream(get(fmt::format("/events?id={}", kPageId)));
    EXPECT_TRUE(stream.WaitFor(R"("state":"waiting")"));
    fly();
    EXPECT_TRUE(stream.WaitFor(R"("state":"connected")"));
    // It may take a moment until the first aircraft is known. Two that took turns could be asked
    // for in step with their turns, and always be the same one.
    int number = 0;
    EXPECT_TRUE(stream.WaitFor(R"("state":"aircraft")",
                               [&] { loadAircraft(fmt::format("Test aircraft {}", ++number)); }));
}

TEST_F(ServeTest, RefusesHostileRequestsAndGoesOn) {
    serve({});
    const auto stream = watch(R"("test/int:int")");
    const std::string set = R"({"assignment":"test/int:int=9"})";
    for (const auto& [request, status] : std::vector<std::pair<std::string, std::string>>{
             {get("/", "Origin: http://evil.example\r\n"), "403"},
             {get("/events?id=1"), "400"},
             {get("/no/such"), "404"},
             {get("/names?match=" + std::string(101, 'a')), "400"},
             {get("/names"), "400"},
             {get("/names?match=a", "Origin: http://evil.example\r\n"), "403"},
             {"GET / HTTP/1.1\r\nHost: evil.example:48080\r\n\r\n", "403"},
             {post("/watch", "{"), "400"},
             {"POST /set HTTP/1.1\r\nHost: 127.0.0.1:48080\r\nContent-Type: application/json\r\n"
              "Content-Length: 2\r\n\r\n{}",
              "403"},
             {post("/set", R"({"assignment":")" + std::string(2000, 'x') + "=1\"}"), "400"},
             {post("/set", std::string(200'000, ' ')), "413"}}) {
        EXPECT_TRUE(HttpPeer(request).Answer().starts_with("HTTP/1.1 " + status))
            << request.substr(0, 100);
    }
    std::vector<std::unique_ptr<HttpPeer>> halves;
    for (int i = 0; i < 40; ++i) {
        halves.push_back(std::make_unique<HttpPeer>("GET / HTT"));
    }
    simulator->Ask("set test/int 23");
    EXPECT_TRUE(stream->WaitFor(",0,23]\n"));
    EXPECT_TRUE(HttpPeer(get("/start")).Answer().starts_with("HTTP/1.1 200 "));
}

TEST_F(ServeTest, ShowsARecording) {
    directory.Write("flight.csv", "time,test/a:float\n0.000,1.5\n0.050,2.5\n");
    simulator.reset();
    serve({"--replay", "flight.csv"});
    const auto stream = watch(R"("test/a:float")");
    EXPECT_TRUE(stream->WaitFor(",0,2.5]\n"));
    EXPECT_TRUE(stream->WaitFor(R"("state":"ended")"));
    EXPECT_TRUE(HttpPeer(post("/set", R"({"assignment":"test/a=1"})"))
                    .Answer()
                    .starts_with("HTTP/1.1 409 "));
}

TEST_F(ServeTest, ShowsFlightData) {
    directory.Write("flight.fdr",
                    "A\n4\nDREF, test/a 1.0\n"
                    "12:30:00 11.5 47.25 1000 90 0 0 1.5\n12:30:00 11.5 47.25 1000 90 0 0 2.5\n");
    serve({"--replay", "flight.fdr"});
    EXPECT_TRUE(watch(R"("test/a:float")")->WaitFor(",0,2.5]\n"));
}

TEST_F(ServeTest, ShowsTheInputsOfAProfile) {
    serve({"--profile", EXAMPLE_PROFILES "/yoke.toml"});
    const std::string start = HttpPeer(get("/start")).Answer();
    EXPECT_NE(start.find(R"({"name":"pitch","argument":)"
                         R"("sim/cockpit2/controls/yoke_pitch_ratio:float")"),
              std::string::npos)
        << start;
    EXPECT_NE(start.find(R"("commands":["sim/flight_controls/brakes_max",)"), std::string::npos)
        << start;
}

// Ctrl-C in the tool's terminal must not end the browser.
TEST_F(ServeTest, OpensABrowserThatGetsNoSignalsOfTheTool) {
    directory.Write("xdg-open",
                    "#!/bin/sh\n"
                    "read -r number name state parent group rest </proc/$$/stat\n"
                    "ignored=0x$(sed -n 's/^SigIgn:\t//p' /proc/$$/status)\n"
                    "echo $((number - group)) $((ignored & 1 << 12)) >>opened\n");
    std::filesystem::permissions("xdg-open", std::filesystem::perms::owner_all);
    const std::string path = std::getenv("PATH");
    ToolRun run({"serve", "--open"}, {.environment = {"PATH=.:" + path}});
    EXPECT_TRUE(driveUntil(
        [] {},
        [this] { return directory.Has("opened") && directory.Read("opened").ends_with('\n'); }));
    EXPECT_EQ(directory.Read("opened"), "0 0\n");
}

TEST_F(ServeTest, RefusesWhatItCannotServe) {
    EXPECT_EQ(runTool({"serve", "test/int:double"}).exitCode, 1);
    EXPECT_EQ(runTool({"serve", "--profile", "no-such.toml"}).exitCode, 1);
    EXPECT_EQ(runTool({"serve", "--datarefs", "no-such.txt"}).exitCode, 1);
    const ToolResult nowhere = runTool({"serve", "--bind", "nowhere"});
    EXPECT_EQ(nowhere.exitCode, 1);
    EXPECT_EQ(nowhere.err,
              "orvane: --bind: \"nowhere\" is not an IP address (see \"orvane serve "
              "--help\")\n");
    const ToolResult elsewhere = runTool({"serve", "--bind", "192.0.2.1"});
    EXPECT_EQ(elsewhere.exitCode, 2);
    EXPECT_EQ(elsewhere.err,
              "orvane: cannot listen on 192.0.2.1:48080: not an address of this machine\n");
    serve({});
    const ToolResult second = runTool({"serve"});
    EXPECT_EQ(second.exitCode, 2);
    EXPECT_TRUE(
        second.err.starts_with("orvane: cannot listen on 127.0.0.1:48080: Address already in use"))
        << second.err;
}

} // namespace
