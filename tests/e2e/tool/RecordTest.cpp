#include <algorithm>
#include <csignal>
#include <regex>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"

namespace {

class RecordTest : public ToolTest {
protected:
    std::size_t rowsIn(const std::string& file) const {
        const std::string text = directory.Has(file) ? directory.Read(file) : std::string();
        const auto lines = std::count(text.begin(), text.end(), '\n');
        return lines == 0 ? 0 : static_cast<std::size_t>(lines) - 1;
    }

    void waitForRows(const std::string& file, std::size_t count) const {
        EXPECT_TRUE(driveUntil([] {}, [&] { return rowsIn(file) >= count; }));
    }

    static std::string withoutTimes(const std::string& text) {
        return std::regex_replace(text, std::regex("\\n[0-9]+\\.[0-9]{3},"), "\nT,");
    }

    // The summary has the file's number of rows, and every line of the file is complete.
    void expectCompleteFile(const std::string& file, const std::string& err) const {
        std::smatch summary;
        EXPECT_TRUE(std::regex_search(
            err, summary,
            std::regex(file + ": [0-9.]+ s, (\\d+) rows?, [0-9.]+ rows/s, [0-9.]+ \\w+\n")))
            << err;
        EXPECT_EQ(summary[1], std::to_string(rowsIn(file)));
        EXPECT_TRUE(std::regex_match(directory.Read(file),
                                     std::regex("time,test/float:float\n(\\d+\\.\\d{3},0.25\n)+")))
            << directory.Read(file);
    }
};

TEST_F(RecordTest, WritesARowForEachReading) {
    simulator->Ask("set test/float 0.1");
    simulator->Ask("set test/int -7");
    simulator->Ask("set test/floats 0.5,-1,3e-7");
    const ToolResult result = runTool({"record", "test/float:float", "test/int:int",
                                       "test/floats:float[3]", "-n", "2", "-o", "r.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(withoutTimes(directory.Read("r.csv")),
              "time,test/float:float,test/int:int,test/floats:float[3]\n"
              "T,0.1,-7,\"0.5,-1,3e-07\"\n"
              "T,0.1,-7,\"0.5,-1,3e-07\"\n");
    EXPECT_TRUE(std::regex_match(
        result.err, std::regex("r\\.csv: [0-9.]+ s, 2 rows, [0-9.]+ rows/s, [0-9.]+ bytes\n")))
        << result.err;
}

TEST_F(RecordTest, FindsATypeThatIsNotGiven) {
    simulator->Ask("set test/int 5");
    EXPECT_EQ(runTool({"record", "test/int", "-n", "1", "-o", "r.csv"}).exitCode, 0);
    EXPECT_EQ(withoutTimes(directory.Read("r.csv")), "time,test/int:int\nT,5\n");
}

TEST_F(RecordTest, WritesElementsOfAnArray) {
    simulator->Ask("set test/ints 1,-2,3");
    const ToolResult result =
        runTool({"record", "test/ints[1]", "test/ints[1:4]", "-n", "1", "-o", "r.csv"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(withoutTimes(directory.Read("r.csv")),
              "time,test/ints[1]:int,test/ints[1:4]:int\nT,-2,\"-2,3,0\"\n");
}

TEST_F(RecordTest, NamesDatarefsThatAreZeroInEveryType) {
    const ToolResult result =
        runTool({"record", "test/int", "test/floats[2]", "-n", "1", "-o", "r.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.err.starts_with(
        "orvane: test/int: 0 in every type, and recorded as test/int:float\n"
        "orvane: test/floats[2]: 0 in every type, and recorded as test/floats[2]:float\n"))
        << result.err;
}

TEST_F(RecordTest, KeepsItsPace) {
    EXPECT_EQ(
        runTool({"record", "test/float:float", "--rate", "5", "-T", "0.9", "-o", "r.csv"}).exitCode,
        0);
    EXPECT_GE(rowsIn("r.csv"), 2U);
    EXPECT_LE(rowsIn("r.csv"), 5U);
}

TEST_F(RecordTest, EndsWithAWholeFileAtAnInterrupt) {
    simulator->Ask("set test/float 0.25");
    ToolRun run({"record", "test/float:float", "-o", "r.csv"});
    waitForRows("r.csv", 3);
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    expectCompleteFile("r.csv", result.err);
}

TEST_F(RecordTest, KeepsAWholeFileWhenTheSimulatorVanishes) {
    simulator->Ask("set test/float 0.25");
    ToolRun run({"record", "test/float:float", "-o", "r.csv"});
    waitForRows("r.csv", 3);
    simulator.reset();
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.err.find("orvane: 127.0.0.1:48000: "), std::string::npos) << result.err;
    expectCompleteFile("r.csv", result.err);
}

TEST_F(RecordTest, KeepsWhatItHasWhenTheSimulatorDoesNotAnswer) {
    simulator->Ask("set test/float 0.25");
    ToolRun run({"record", "test/float:float", "-o", "r.csv", "--timeout", "0.3"});
    waitForRows("r.csv", 3);
    simulator->Ask("pause");
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 4);
    expectCompleteFile("r.csv", result.err);
}

TEST_F(RecordTest, CreatesNoFileForUnknownDatarefs) {
    const ToolResult result =
        runTool({"record", "test/float:float", "no/such", "no/other", "-o", "r.csv"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "orvane: no/such: the simulator has no such dataref\n"
              "orvane: no/other: the simulator has no such dataref\n");
    EXPECT_FALSE(directory.Has("r.csv"));
}

TEST_F(RecordTest, KeepsAnExistingFile) {
    directory.Write("r.csv", "precious\n");
    const ToolResult result = runTool({"record", "test/float:float", "-n", "1", "-o", "r.csv"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: r.csv: File exists (--force overwrites it)\n");
    EXPECT_EQ(directory.Read("r.csv"), "precious\n");
    EXPECT_EQ(runTool({"record", "test/float:float", "-n", "1", "-o", "r.csv", "--force"}).exitCode,
              0);
    EXPECT_TRUE(directory.Read("r.csv").starts_with("time,test/float:float\n"));
}

TEST_F(RecordTest, WritesOnlyRowsToStandardOutput) {
    simulator->Ask("set test/float 0.25");
    ToolSetting setting;
    setting.hasErrTerminal = true;
    setting.environment = {"TERM=xterm"};
    const ToolResult result =
        runTool({"record", "test/float:float", "-n", "20", "-o", "-"}, setting);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(std::regex_match(result.out,
                                 std::regex("time,test/float:float\n(\\d+\\.\\d{3},0.25\n){20}")))
        << result.out;
    EXPECT_NE(result.err.find("\r\x1b[K0."), std::string::npos) << "progress: " << result.err;
    EXPECT_NE(result.err.find("standard output: "), std::string::npos) << result.err;
}

TEST_F(RecordTest, ShowsNoProgressBetweenRowsOnATerminal) {
    ToolSetting setting;
    setting.hasTerminal = true;
    setting.hasErrTerminal = true;
    setting.environment = {"TERM=xterm"};
    const ToolResult result =
        runTool({"record", "test/float:float", "-n", "10", "-o", "-"}, setting);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos) << result.out;
    EXPECT_EQ(result.err.find('\x1b'), std::string::npos) << result.err;
}

TEST_F(RecordTest, RefusesUnknownTypes) {
    EXPECT_EQ(runTool({"record", "test/float:double", "-o", "r.csv"}).exitCode, 1);
    EXPECT_EQ(runTool({"record", "-o", "r.csv"}).exitCode, 1);
    EXPECT_EQ(runTool({"record", "test/float:float"}).exitCode, 1);
}

TEST_F(RecordTest, ShowsProgressOnATerminal) {
    ToolRun run({"record", "test/float:float", "-o", "r.csv"},
                {.hasErrTerminal = true, .environment = {"TERM=xterm"}});
    run.WaitForErr(" rows/s, ");
    EXPECT_EQ(run.Err().find("\r\x1b[K0."), 0U) << run.Err();
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
}

} // namespace
