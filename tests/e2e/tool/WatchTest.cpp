#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <regex>

#include "e2e/tool/ToolTest.h"

namespace {

class WatchTest : public ToolTest {
protected:
    static ToolSetting terminal() {
        return {.hasTerminal = true, .environment = {"TERM=xterm", "NO_COLOR=1", "LANG=C.UTF-8"}};
    }

    static std::size_t count(const std::string& text, const std::string& part) {
        std::size_t found = 0;
        for (std::size_t at = text.find(part); at != std::string::npos;
             at = text.find(part, at + 1)) {
            ++found;
        }
        return found;
    }

    static void expectMatch(const std::string& text, const std::string& pattern) {
        EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << text;
    }
};

// A plotting program that receives datagrams, on a port chosen by the system.
class Plotter final {
public:
    Plotter() : socket(::socket(AF_INET, SOCK_DGRAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
        port = std::to_string(ntohs(address.sin_port));
    }
    ~Plotter() { ::close(socket); }
    Plotter(const Plotter&) = delete;
    Plotter& operator=(const Plotter&) = delete;

    // The next datagram; empty when none comes in time.
    std::string Next() const {
        constexpr int kDeadlineMs = 10'000;
        pollfd readable{.fd = socket, .events = POLLIN, .revents = 0};
        std::string text(65'536, '\0');
        const bool isThere = ::poll(&readable, 1, kDeadlineMs) == 1;
        const ssize_t size = isThere ? ::recv(socket, text.data(), text.size(), 0) : 0;
        text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return text;
    }

    const std::string& Port() const { return port; }

private:
    const int socket;
    std::string port;
};

constexpr const char* kHideCursor = "\x1b[?25l";
constexpr const char* kShowCursor = "\x1b[?25h";

TEST_F(WatchTest, PrintsALineForEachReadingWithoutATerminal) {
    simulator->Ask("set test/int 3");
    const ToolResult result =
        runTool({"watch", "-n", "3", "-i", "0.01", "test/int:int", "test/float:float@kt"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    expectMatch(result.out, "(\\d+\\.\\d{3} test/int:int=3 test/float:float@kt=0\n){3}");
}

TEST_F(WatchTest, PrintsRecords) {
    simulator->Ask("set test/ints 1,2");
    const std::vector<std::string> limits{"-n", "2", "-i", "0", "test/ints:int[2]", "test/int:int"};
    std::vector<std::string> json{"watch", "--json"};
    json.insert(json.end(), limits.begin(), limits.end());
    expectMatch(runTool(json).out,
                "(\\{\"time\":\\d+\\.\\d+,\"test/ints\":\\[1,2\\],\"test/int\":0\\}\n){2}");
    std::vector<std::string> csv{"watch", "--csv"};
    csv.insert(csv.end(), limits.begin(), limits.end());
    expectMatch(runTool(csv).out, "time,test/ints,test/int\n(\\d+\\.\\d+,\"1,2\",0\n){2}");
}

TEST_F(WatchTest, ShowsElementsOfAnArray) {
    simulator->Ask("set test/ints 1,2,3,4");
    const std::vector<std::string> names{"test/ints[3]", "test/ints[1:3]"};
    expectMatch(runTool({"watch", "-n", "1", names[0], names[1]}).out,
                "\\d+\\.\\d{3} test/ints\\[3\\]=4 test/ints\\[1:3\\]=2,3\n");
    expectMatch(runTool({"watch", "-n", "1", "--json", names[0], names[1]}).out,
                "\\{\"time\":[0-9.]+,\"test/ints\\[3\\]\":4,\"test/ints\\[1:3\\]\":\\[2,3\\]\\}\n");
    const std::string table = runTool({"watch", "-n", "1", names[0], names[1]}, terminal()).out;
    for (const char* const row : {"\r\ntest/ints[3] ", "\ntest/ints[1] ", "\ntest/ints[2] "}) {
        EXPECT_NE(table.find(row), std::string::npos) << table;
    }
}

TEST_F(WatchTest, SeesChangesAtOnce) {
    ToolRun run({"watch", "-i", "0.01", "test/int:int"});
    run.WaitForOut("test/int:int=0\n");
    simulator->Ask("set test/int 17");
    run.WaitForOut("test/int:int=17\n");
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.ends_with("\n"));
}

TEST_F(WatchTest, FindsATypeWhenTheValueIsNoLongerZero) {
    ToolRun run({"watch", "-i", "0.01", "test/int"});
    run.WaitForOut("test/int=0\n");
    simulator->Ask("set test/int 17");
    run.WaitForOut("test/int=17\n");
}

TEST_F(WatchTest, EndsAfterATime) {
    const ToolResult result = runTool({"watch", "-T", "0.3", "-i", "0.01", "test/int:int"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out, "");
    const std::string lastLine =
        result.out.substr(result.out.rfind('\n', result.out.size() - 2) + 1);
    EXPECT_LT(std::stod(lastLine), 1.0);
}

TEST_F(WatchTest, EndsQuietlyWhenItsReaderGoes) {
    ToolRun run({"watch", "-i", "0.01", "test/int:int"});
    run.WaitForOut("\n");
    run.CloseOut();
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(WatchTest, RedrawsATableOnATerminalAndRestoresTheCursor) {
    simulator->Ask("set test/float 1.5");
    ToolRun run({"watch", "-i", "0.01", "test/float:float@kt", "test/ints:int[2]"}, terminal());
    run.WaitForOut("test/float       1.5  kt    1.5  1.5  ");
    EXPECT_NE(run.Out().find("NAME           VALUE  UNIT  MIN  MAX\x1b[K"), std::string::npos)
        << run.Out();
    simulator->Ask("set test/float 2.5");
    run.WaitForOut("test/float   *   2.5  kt    1.5  2.5  ");
    run.WaitForOut("█");
    simulator->Ask("set test/ints 0,-9");
    run.WaitForOut("test/ints[1] *    -9         -9    0  ");
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.starts_with(kHideCursor)) << result.out;
    EXPECT_TRUE(result.out.ends_with(kShowCursor)) << result.out;
    // Five lines: the title, the header, and three values.
    EXPECT_GE(count(result.out, "\x1b[5A\r"), 3U);
}

TEST_F(WatchTest, HidesTypedTextWhileItDraws) {
    ToolRun run({"watch", "-i", "0.01", "test/float:float"}, terminal());
    run.WaitForOut("test/float");
    EXPECT_FALSE(run.HasEcho());
    run.Type("typed\n");
    simulator->Ask("set test/float 2.5");
    run.WaitForOut("2.5");
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.out.find("typed"), std::string::npos) << result.out;
    EXPECT_TRUE(run.HasEcho());
}

TEST_F(WatchTest, RestoresTheTerminalHoweverItEnds) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT}) {
        ToolRun run({"watch", "-i", "0.01", "test/float:float"}, terminal());
        run.WaitForOut("test/float");
        run.Signal(signal);
        const ToolResult result = run.Wait();
        EXPECT_TRUE(result.out.ends_with(kShowCursor)) << signal << ": " << result.out;
        EXPECT_TRUE(run.HasEcho()) << signal;
        const bool isCaught = signal == SIGINT || signal == SIGTERM || signal == SIGHUP;
        EXPECT_EQ(result.exitCode, isCaught ? 0 : 128 + signal);
    }
}

// As nohup does it.
TEST_F(WatchTest, GoesOnAfterAHangUpThatItIsToldToIgnore) {
    ToolRun run({"-c", "trap '' HUP; exec \"$0\" watch -i 0.01 test/int:int", ORVANE_TOOL},
                {.program = "/bin/sh"});
    run.WaitForOut("test/int:int=");
    run.Signal(SIGHUP);
    simulator->Ask("set test/int 17");
    run.WaitForOut("test/int:int=17");
}

TEST_F(WatchTest, RestoresTheTerminalWhileStoppedAndRedrawsAfterwards) {
    ToolRun run({"watch", "-i", "1000", "test/float:float"}, terminal());
    run.WaitForOut("test/float");
    for (std::size_t stops = 1; stops <= 2; ++stops) {
        run.Signal(SIGTSTP);
        run.WaitUntilStopped();
        EXPECT_TRUE(run.Out().ends_with(kShowCursor)) << run.Out();
        EXPECT_TRUE(run.HasEcho());
        const std::size_t before = run.Out().size();
        run.Signal(SIGCONT);
        run.WaitForOut(kHideCursor, before);
        run.WaitForOut("test/float", before);
        EXPECT_FALSE(run.HasEcho());
        // Below what the shell printed meanwhile.
        EXPECT_EQ(run.Out().find("\x1b[3A", before), std::string::npos) << run.Out();
    }
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.ends_with(kShowCursor)) << result.out;
}

TEST_F(WatchTest, AlwaysDrawsTheLastReading) {
    const ToolResult result =
        runTool({"watch", "-n", "50", "-i", "0", "test/float:float"}, terminal());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("   50 readings"), std::string::npos) << result.out;
}

TEST_F(WatchTest, PrintsLinesOnATerminalWithoutCursorControl) {
    for (const std::vector<std::string>& environment :
         {std::vector<std::string>{"TERM=dumb"}, std::vector<std::string>{}}) {
        const ToolResult result = runTool({"watch", "-n", "2", "-i", "0", "test/int:int"},
                                          {.hasTerminal = true, .environment = environment});
        expectMatch(result.out, "(\\d+\\.\\d{3} test/int:int=0\r\n){2}");
    }
}

TEST_F(WatchTest, LeavesOutOnlyTheColoursWithNoColor) {
    ToolSetting setting = terminal();
    setting.environment = {"TERM=xterm", "NO_COLOR="};
    const std::vector<std::string> arguments{"watch", "-n", "2", "-i", "0", "test/int:int"};
    const std::string coloured = runTool(arguments, setting).out;
    EXPECT_EQ(count(coloured, "\x1b[1mNAME "), 2U) << coloured;
    setting.environment = {"TERM=xterm", "NO_COLOR=1"};
    const std::string plain = runTool(arguments, setting).out;
    EXPECT_EQ(count(plain, "\x1b[1m"), 0U) << plain;
    EXPECT_EQ(count(plain, "\x1b[3A"), 1U) << plain;
}

TEST_F(WatchTest, PrintsRecordsOnATerminalIfAskedTo) {
    const ToolResult result =
        runTool({"watch", "--csv", "-n", "1", "test/float:float"}, terminal());
    EXPECT_TRUE(result.out.starts_with("time,test/float\r\n")) << result.out;
    EXPECT_EQ(count(result.out, "\x1b"), 0U);
}

TEST_F(WatchTest, ShowsLaterRowsOfATableThatDoesNotFit) {
    const ToolResult result =
        runTool({"watch", "-n", "1", "--first", "60", "test/many_floats:float[100]"}, terminal());
    EXPECT_NE(result.out.find("\ntest/many_floats[59] "), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("rows 60 to 79 of 100; --first 80 shows the next"), std::string::npos)
        << result.out;
    EXPECT_EQ(runTool({"watch", "--first", "0", "test/int"}).exitCode, 1);
}

TEST_F(WatchTest, SendsEachReadingAsADatagramOfJson) {
    const Plotter plotter;
    simulator->Ask("set test/ints 1,2");
    for (const std::string host : {"127.0.0.1", "localhost"}) {
        const ToolResult result =
            runTool({"watch", "-n", "2", "-i", "0.01", "--udp", host + ":" + plotter.Port(),
                     "test/ints:int[2]", "test/float:float@kt"});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
        expectMatch(result.out,
                    "(\\d+\\.\\d{3} test/ints:int\\[2\\]=1,2 test/float:float@kt=0\n){2}");
        for (int i = 0; i < 2; ++i) {
            expectMatch(plotter.Next(),
                        "\\{\"time\":\\d+\\.\\d+,\"test/ints\":\\[1,2\\],\"test/float\":0\\.0\\}");
        }
    }
}

TEST_F(WatchTest, GoesOnWhenNobodyReceivesTheDatagrams) {
    const ToolResult result =
        runTool({"watch", "-n", "5", "-i", "0", "--udp", "127.0.0.1:9", "test/int:int"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(WatchTest, EndsWhenAReadingDoesNotFitIntoADatagram) {
    const ToolResult result =
        runTool({"watch", "--udp", "127.0.0.1:9", "test/many_floats:float[20000]"});
    EXPECT_EQ(result.exitCode, 1);
    expectMatch(result.err,
                "orvane: a reading of \\d+ bytes does not fit into a datagram, which holds 65507: "
                "watch less at a time\n");
}

TEST_F(WatchTest, RefusesAnInvalidAddressForDatagrams) {
    for (const std::string place : {"localhost", "localhost:", ":9870", "localhost:0", "::1:9870",
                                    "localhost:70000", "localhost:plot"}) {
        const ToolResult result = runTool({"watch", "--udp", place, "test/int"});
        EXPECT_EQ(result.exitCode, 1) << place;
        EXPECT_EQ(result.err, "orvane: --udp: \"" + place + "\" is not of the form HOST:PORT\n");
    }
    const ToolResult unknown = runTool({"watch", "--udp", "no-such-host.invalid:9870", "test/int"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.starts_with("orvane: no-such-host.invalid:9870: ")) << unknown.err;
}

TEST_F(WatchTest, WaitsForTheSimulatorToComeBack) {
    ToolRun run({"watch", "-i", "0.01", "test/float:float"});
    run.WaitForOut("test/float:float=0\n");
    simulator.reset();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    fly();
    run.WaitForErr("orvane: the simulator is back\n");
    simulator->Ask("set test/float 4.5");
    run.WaitForOut("test/float:float=4.5\n");
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
}

TEST_F(WatchTest, KeepsTheExtremesOverARestart) {
    simulator->Ask("set test/float 100");
    ToolRun run({"watch", "-i", "0.01", "test/float:float"}, terminal());
    run.WaitForOut("100  100");
    simulator.reset();
    run.WaitForOut("(waiting for the simulator)");
    fly();
    simulator->Ask("set test/float -3");
    run.WaitForOut("-3  100");
    run.Signal(SIGTERM);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.ends_with(kShowCursor)) << result.out;
}

TEST_F(WatchTest, EndsWhileItWaitsForTheSimulator) {
    ToolRun run({"watch", "-i", "0.01", "test/float:float"});
    run.WaitForOut("\n");
    simulator.reset();
    run.WaitForErr("\n");
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
}

TEST_F(WatchTest, NamesUnknownDatarefs) {
    const ToolResult result = runTool({"watch", "test/int", "no/such"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "orvane: no/such: the simulator has no such dataref\n");
}

TEST_F(WatchTest, RefusesInvalidLimits) {
    EXPECT_EQ(runTool({"watch", "-n", "0", "test/int"}).exitCode, 1);
    EXPECT_EQ(runTool({"watch", "-i", "-1", "test/int"}).exitCode, 1);
    EXPECT_EQ(runTool({"watch", "-T", "soon", "test/int"}).exitCode, 1);
    EXPECT_EQ(runTool({"watch", "test/int", "test/int:int"}).err,
              "orvane: test/int: named twice\n");
}

} // namespace
