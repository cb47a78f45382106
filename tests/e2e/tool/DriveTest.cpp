#include "e2e/tool/DriveTest.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>

namespace {

TEST_F(DriveTest, SendsATableAndPrintsTheOutputsFromBeforeEachRow) {
    directory.Write("t.csv", "axis,switch\n65535,7\n0,8\n");
    const ToolResult result = drive({"--input", "t.csv", "--csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(withoutTimes(result.out),
              "time,position,lamps,button,aircraft_id\n"
              "T,0,\"3,4\",false,0xB9852EB1\n"
              "T,1,\"3,4\",false,0xB9852EB1\n"
              "T,-1,\"3,4\",false,0xB9852EB1\n");
    EXPECT_EQ(simulator->Get("test/int"), "8");
}

TEST_F(DriveTest, PrintsLinesForPeopleAndForMachines) {
    directory.Write("t.csv", "axis\n65535\n");
    EXPECT_EQ(withoutTimes(drive({"--input", "t.csv"}).out),
              "T position=0 lamps=3,4 button=false aircraft_id=0xB9852EB1\n"
              "T position=1 lamps=3,4 button=false aircraft_id=0xB9852EB1\n");
    simulator->Ask("aircraft unload");
    EXPECT_EQ(
        withoutTimes(drive({"-n", "1", "--json"}).out),
        "{\"time\":T,\"position\":0.0,\"lamps\":[0,0],\"button\":false,\"aircraft_id\":null}\n");
    EXPECT_EQ(withoutTimes(drive({"-n", "1"}).out),
              "T position=0 lamps=0,0 button=false aircraft_id=none\n");
}

TEST_F(DriveTest, MovesOnlyAxesWithAWaveform) {
    const ToolResult result =
        drive({"--input", "square", "--period", "1000", "--amplitude", "0.5", "-n", "2"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/int"), "0");
    EXPECT_TRUE(hasEvents(" begin=0 "));
    EXPECT_EQ(withoutTimes(result.out),
              "T position=0 lamps=3,4 button=false aircraft_id=0xB9852EB1\n"
              "T position=0.49999237 lamps=3,4 button=false aircraft_id=0xB9852EB1\n"
              "T position=0.49999237 lamps=3,4 button=false aircraft_id=0xB9852EB1\n");
}

TEST_F(DriveTest, TakesRowsFromStandardInput) {
    const ToolResult result = drive({"--input", "-"}, "switch,brakes\n1,1\n2,0\n");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/int"), "2");
    EXPECT_TRUE(hasEvents(" begin=1 ") && hasEvents(" end=1"));
}

TEST_F(DriveTest, SendsRowsWhenTheyAreDue) {
    directory.Write("t.csv", "time,axis\n0,0\n0.4,65535\n");
    const ToolResult result = drive({"--input", "t.csv"});
    EXPECT_TRUE(std::regex_search(result.out, std::regex("\n0\\.[4-9]\\d\\d position=-1 ")))
        << result.out;
}

TEST_F(DriveTest, EndsAfterTheTimeThatIsGiven) {
    const ToolResult result = drive({"-T", "0.3", "--rate", "10"});
    EXPECT_EQ(result.exitCode, 0);
    const auto lines = std::count(result.out.begin(), result.out.end(), '\n');
    EXPECT_GE(lines, 1);
    EXPECT_LE(lines, 3);
}

TEST_F(DriveTest, ReleasesAHeldCommandAtTheEndOfTheTable) {
    directory.Write("t.csv", "brakes\n1\n1\n");
    EXPECT_EQ(drive({"--input", "t.csv"}).exitCode, 0);
    EXPECT_TRUE(hasEvents(" begin=1 ") && hasEvents(" end=1"))
        << simulator->Ask("events test/hold");
}

TEST_F(DriveTest, ReleasesAHeldCommandAtAnInterrupt) {
    directory.Write("t.csv", "time,brakes\n0,1\n1000,1\n");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        fly();
        ToolRun run({"drive", "p.toml", "--input", "t.csv"});
        waitForEvents(" begin=1 ");
        EXPECT_TRUE(hasEvents(" end=0"));
        run.Signal(signal);
        const ToolResult result = run.Wait();
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_TRUE(hasEvents(" end=1")) << simulator->Ask("events test/hold");
    }
}

TEST_F(DriveTest, ReleasesAHeldCommandWhenARowIsWrong) {
    const ToolResult result = drive({"--input", "-"}, "brakes\n1\nfirmly\n0\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "orvane: standard input:3: \"firmly\" for \"brakes\" is not a whole number from "
              "-2147483648 to 2147483647\n");
    EXPECT_TRUE(hasEvents(" begin=1 ") && hasEvents(" end=1"))
        << simulator->Ask("events test/hold");
}

TEST_F(DriveTest, ReleasesAHeldCommandWhenItsReaderGoes) {
    directory.Write("t.csv", "time,brakes\n0,1\n0.5,1\n0.6,1\n1000,1\n");
    ToolRun run({"drive", "p.toml", "--input", "t.csv"});
    waitForEvents(" begin=1 ");
    run.CloseOut();
    EXPECT_EQ(run.Wait().exitCode, 0);
    EXPECT_TRUE(hasEvents(" end=1")) << simulator->Ask("events test/hold");
}

TEST_F(DriveTest, SendsNothingOfATableWithAnError) {
    directory.Write("t.csv", "switch\n5\n6.5\n7\nx\n");
    const ToolResult result = drive({"--input", "t.csv"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "t.csv:3: \"6.5\" for \"switch\" is not a whole number from -2147483648 to "
              "2147483647\n"
              "t.csv:5: \"x\" for \"switch\" is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
}

TEST_F(DriveTest, WritesTheOutputsToAFile) {
    const ToolResult result = drive({"-n", "3", "-o", "out.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(std::regex_match(result.err, std::regex("out\\.csv: 3 rows, \\d+ bytes\n")))
        << result.err;
    EXPECT_EQ(withoutTimes(directory.Read("out.csv")),
              "time,position,lamps,button,aircraft_id\n"
              "T,0,\"3,4\",false,0xB9852EB1\n"
              "T,0,\"3,4\",false,0xB9852EB1\n"
              "T,0,\"3,4\",false,0xB9852EB1\n");
}

TEST_F(DriveTest, WritesTheSameToStandardOutput) {
    const ToolResult result = drive({"-n", "2", "-o", "-"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(result.out),
              "time,position,lamps,button,aircraft_id\n"
              "T,0,\"3,4\",false,0xB9852EB1\n"
              "T,0,\"3,4\",false,0xB9852EB1\n");
    EXPECT_TRUE(std::regex_match(result.err, std::regex("standard output: 2 rows, \\d+ bytes\n")))
        << result.err;
}

TEST_F(DriveTest, KeepsAnExistingFile) {
    directory.Write("out.csv", "precious\n");
    const ToolResult refused = drive({"-n", "1", "-o", "out.csv"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "orvane: out.csv: File exists (--force overwrites it)\n");
    EXPECT_EQ(directory.Read("out.csv"), "precious\n");
    EXPECT_EQ(drive({"-n", "1", "-o", "out.csv", "--force", "--json"}).exitCode, 0);
    EXPECT_TRUE(directory.Read("out.csv").starts_with("{\"time\":"));
}

TEST_F(DriveTest, EndsWhenTheSimulatorDoesAndKeepsTheFile) {
    ToolRun run({"drive", "p.toml", "-o", "out.csv"});
    EXPECT_TRUE(driveUntil(
        [] {}, [&] { return directory.Has("out.csv") && directory.Read("out.csv").size() > 200; }));
    simulator->Quit();
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(std::regex_search(result.err, std::regex("orvane: 127\\.0\\.0\\.1:48000: .+\n$")))
        << result.err;
    EXPECT_TRUE(directory.Read("out.csv").ends_with("B9852EB1\n"));
}

TEST_F(DriveTest, GoesOnWhenTheSimulatorIsBack) {
    ToolRun run({"drive", "p.toml", "--reconnect"});
    run.WaitForOut("aircraft_id=0xB9852EB1");
    simulator->Quit();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    fly();
    run.WaitForErr("orvane: connected again\n");
    simulator->Ask("set test/float 0.625");
    run.WaitForOut("position=0.625");
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
}

TEST_F(DriveTest, EndsTheStatusOfAFileBeforeAMessage) {
    ToolRun run({"drive", "p.toml", "-o", "out.csv", "--reconnect"},
                {.hasErrTerminal = true, .environment = {"TERM=xterm"}});
    run.WaitForErr("1 row, ");
    simulator->Quit();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(std::regex_search(result.err,
                                  std::regex("bytes\r\\x1b\\[Korvane: 127\\.0\\.0\\.1:48000: ")))
        << result.err;
}

TEST_F(DriveTest, PrintsASummaryAtTheEnd) {
    const ToolResult result = drive({"-n", "3", "--summary"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(std::regex_match(
        result.err,
        std::regex("\n"
                   "  exchanges    3 in \\d\\.\\d s, [0-9.]+ per second\n"
                   "  round trips  min [0-9.]+ ms, median [0-9.]+ ms, 95 % [0-9.]+ ms, max "
                   "[0-9.]+ ms\n"
                   "  aircraft     0xB9852EB1\n")))
        << result.err;
}

TEST_F(DriveTest, ConnectsWhereTheProfileSaysUnlessAnOptionDiffers) {
    directory.Write("p.toml", std::string("[connection]\nport = 48001\n") + kProfile);
    const ToolResult elsewhere = drive({"-n", "1"});
    EXPECT_EQ(elsewhere.exitCode, 2);
    EXPECT_NE(elsewhere.err.find("127.0.0.1:48001"), std::string::npos) << elsewhere.err;
    EXPECT_EQ(drive({"-n", "1", "--port", "48000"}).exitCode, 0);
}

TEST_F(DriveTest, OnlyChecksAProfile) {
    const ToolResult result = drive({"--check"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "p.toml: valid: 3 inputs, 3 outputs; definitions of 1.8 kB, answers of 53 bytes\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(DriveTest, ReportsEveryProblemOfAProfileWithItsPlace) {
    directory.Write("p.toml",
                    "[[input]]\n"
                    "name = \"a\"\n"
                    "dataref = \"test/float\"\n"
                    "type = \"double\"\n"
                    "[[output]]\n"
                    "nmae = \"b\"\n"
                    "command = \"test/once\"\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--check"}, std::vector<std::string>{}}) {
        const ToolResult result = drive(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err,
                  "p.toml:4:8: \"type\" is \"double\"; it can be float or int\n"
                  "p.toml:5:1: \"name\" is missing\n"
                  "p.toml:6:1: unknown key \"nmae\"\n"
                  "p.toml:7:11: the command test/once cannot be observed: only those under kyr/ "
                  "can\n");
    }
}

TEST_F(DriveTest, SaysWhichFileItCannotRead) {
    const ToolResult result = runTool({"drive", "none.toml"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: none.toml: No such file or directory\n");
    EXPECT_EQ(drive({"--input", "none.csv"}).err, "orvane: none.csv: No such file or directory\n");
}

TEST_F(DriveTest, FindsTheExamplesValid) {
    std::size_t profiles = 0;
    for (const auto& file : std::filesystem::directory_iterator(EXAMPLE_PROFILES)) {
        if (file.path().extension() != ".toml") {
            continue;
        }
        ++profiles;
        std::vector<std::string> arguments{"drive", "--check", file.path()};
        const std::filesystem::path table = std::filesystem::path(file).replace_extension(".csv");
        if (std::filesystem::exists(table)) {
            arguments.insert(arguments.end(), {"--input", table});
        }
        const ToolResult result = runTool(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_NE(result.out.find(": valid: "), std::string::npos) << result.out;
    }
    EXPECT_EQ(profiles, 3U);
}

} // namespace
