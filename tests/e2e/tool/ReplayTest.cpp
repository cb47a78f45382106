#include <csignal>
#include <regex>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"
#include "support/Text.h"

namespace {

class ReplayTest : public ToolTest {};

TEST_F(ReplayTest, WritesAllRowsBackAtTheirPace) {
    directory.Write("r.csv",
                    "time,test/float:float,test/int:int,test/floats:float[2]\n"
                    "5.000,0.5,1,\"1,2\"\n"
                    "5.100,0.1,-3,\"0.25,-8\"\n");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "r.csv: 2 rows written\n");
    EXPECT_EQ(simulator->Get("test/float"), "0.1");
    EXPECT_EQ(simulator->Get("test/int"), "-3");
    EXPECT_EQ(simulator->Get("test/floats"), "0.25,-8,0,0,0,0,0,0");
}

TEST_F(ReplayTest, WaitsBetweenRowsAsLongAsTheRecordingDid) {
    directory.Write("r.csv", "time,test/int:int\n0.000,1\n1000.000,2\n");
    ToolRun run({"replay", "r.csv"});
    EXPECT_TRUE(driveUntil([] {}, [&] { return simulator->Get("test/int") == "1"; }));
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "r.csv: 1 row written\n");
    EXPECT_EQ(simulator->Get("test/int"), "1");
    EXPECT_EQ(runTool({"replay", "r.csv", "--speed", "1000", "--timeout", "5"}).exitCode, 0);
    EXPECT_EQ(simulator->Get("test/int"), "2");
}

TEST_F(ReplayTest, ReplaysWhatWasRecorded) {
    simulator->Ask("set test/floats 0.1,1e-40,3e38,-0.5");
    simulator->Ask("set test/int 77");
    ASSERT_EQ(runTool({"record", "test/floats:float[4]", "test/int:int", "-n", "1", "-o", "r.csv"})
                  .exitCode,
              0);
    const std::string before = simulator->Get("test/floats");
    simulator->Ask("set test/floats 9,9,9,9");
    simulator->Ask("set test/int 0");
    EXPECT_EQ(runTool({"replay", "r.csv"}).exitCode, 0);
    EXPECT_EQ(simulator->Get("test/floats"), before);
    EXPECT_EQ(simulator->Get("test/int"), "77");
}

TEST_F(ReplayTest, WritesBackWhatTheSimulatorRecorded) {
    simulator.reset();
    play("--record r.csv test/int test/float 'test/ints[1]' test/floats",
         "set test/int 7\\nset test/float 0.1\\nset test/ints 1,2\\nset test/floats 0.5,-1e-9\\n"
         "frames 1\\nset test/float 0.2\\nframes 1\\n");
    fly();
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "r.csv: 2 rows written\n");
    EXPECT_EQ(simulator->Get("test/int"), "7");
    EXPECT_EQ(simulator->Get("test/float"), "0.2");
    EXPECT_EQ(simulator->Get("test/ints"), "0,2,0,0,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), "0.5,-1e-09,0,0,0,0,0,0");
}

TEST_F(ReplayTest, TheSimulatorReplaysWhatTheToolRecords) {
    simulator->Ask("set test/float 0.1");
    simulator->Ask("set test/ints 1,2,3");
    ASSERT_EQ(runTool({"record", "test/float:float", "test/ints[1:3]", "test/ints[0]:int", "-n",
                       "1", "-o", "r.csv"})
                  .exitCode,
              0);
    simulator.reset();
    EXPECT_EQ(play("--replay r.csv",
                   "frames 1\\nexpect test/float == 0.1\\nexpect test/ints == 1,2,3,0,0,0,0,0\\n")
                  .substr(0, 9),
              "frames 1,");
}

TEST_F(ReplayTest, WritesElementsAndLeavesTheOthersAsTheyAre) {
    simulator->Ask("set test/ints 1,2,3,4");
    simulator->Ask("set test/floats 0.5,1.5,2.5,3.5");
    directory.Write("r.csv",
                    "time,test/ints[1]:int,test/floats[1:3]:float,test/ints[2]:int,test/int:int\n"
                    "0.000,7,\"8,9\",6,5\n");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/ints"), "1,7,6,4,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), "0.5,8,9,3.5,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/int"), "5");
}

TEST_F(ReplayTest, RepeatsUntilAnInterrupt) {
    directory.Write("r.csv", "time,test/int:int\n0.000,1\n0.050,2\n");
    ToolRun run({"replay", "r.csv", "--loop"});
    for (const char* const value : {"2", "1", "2", "1"}) {
        EXPECT_TRUE(driveUntil([] {}, [&] { return simulator->Get("test/int") == value; }));
    }
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    std::smatch counted;
    ASSERT_TRUE(std::regex_search(
        result.err, counted, std::regex("r\\.csv: (\\d+) rows written, (\\d+) whole rounds?\n")))
        << result.err;
    EXPECT_GE(std::stoi(counted[1]), 3);
    EXPECT_EQ(std::stoi(counted[1]) / 2, std::stoi(counted[2])) << result.err;
}

TEST_F(ReplayTest, SaysThatThePaceCouldNotBeKept) {
    // Two frames per row, which is 0.2 s.
    fly("10");
    directory.Write("r.csv", "time,test/int:int\n0.000,1\n0.010,2\n0.020,3\n0.030,4\n0.040,5\n");
    const ToolResult result = runTool({"replay", "r.csv", "--timeout", "20"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(std::regex_match(
        result.err, std::regex("orvane: could not keep up: rows were up to \\d+\\.\\d s late\n"
                               "r\\.csv: 5 rows written\n")))
        << result.err;
    EXPECT_EQ(simulator->Get("test/int"), "5");
}

TEST_F(ReplayTest, LeavesOutALineThatWasCutOff) {
    directory.Write("r.csv", "time,test/int:int\n0.000,12\n0.050,34");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "r.csv:3: the line was cut off and is skipped\n"
              "r.csv: 1 row written\n");
    EXPECT_EQ(simulator->Get("test/int"), "12");
}

TEST_F(ReplayTest, WritesNothingOfAFileWithAnError) {
    directory.Write("r.csv", "time,test/int:int\n0.000,12\n0.050,x\n0.100\n");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.err,
              "r.csv:3: test/int: \"x\" is not a whole number from -2147483648 to 2147483647\n"
              "r.csv:4: 1 fields, but 2 columns\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
    EXPECT_EQ(runTool({"replay", "none.csv"}).exitCode, 1);
}

TEST_F(ReplayTest, NamesDatarefsThatDidNotKeepTheirLastValue) {
    directory.Write("r.csv",
                    "time,test/int:int,sim/flightmodel/position/elevation:float\n0.000,4,12.5\n");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "orvane: sim/flightmodel/position/elevation did not take or keep 12.5; it is 1500\n"
              "r.csv: 1 row written\n");
}

TEST_F(ReplayTest, NamesUnknownDatarefs) {
    directory.Write("r.csv", "time,no/such:int\n0.000,4\n");
    const ToolResult result = runTool({"replay", "r.csv"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_NE(result.err.find("no/such"), std::string::npos) << result.err;
}

TEST_F(ReplayTest, EndsWhenTheSimulatorDoes) {
    directory.Write("r.csv", "time,test/int:int\n0.000,1\n0.500,2\n1.000,3\n");
    ToolRun run({"replay", "r.csv", "--loop"});
    EXPECT_TRUE(driveUntil([] {}, [&] { return simulator->Get("test/int") == "1"; }));
    simulator.reset();
    EXPECT_EQ(run.Wait().exitCode, 2);
}

} // namespace
