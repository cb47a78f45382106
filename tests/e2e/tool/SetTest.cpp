#include "e2e/tool/ToolTest.h"

namespace {

class SetTest : public ToolTest {};

TEST_F(SetTest, WritesEachTypeQuietly) {
    const ToolResult result =
        runTool({"set", "test/int:int=-7", "test/float:float=0.25", "test/ints:int[3]=1,2,3",
                 "test/floats:float[8]=1,2,3,4,5,6,7,8.5"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(simulator->Get("test/int"), "-7");
    EXPECT_EQ(simulator->Get("test/float"), "0.25");
    EXPECT_EQ(simulator->Get("test/ints"), "1,2,3,0,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), "1,2,3,4,5,6,7,8.5");
    EXPECT_EQ(runTool({"set", "test/int:byte=200"}).exitCode, 0);
    EXPECT_EQ(simulator->Get("test/int"), "200");
}

TEST_F(SetTest, FindsTheTypeByWriting) {
    const ToolResult result =
        runTool({"set", "test/int=5", "test/float=6", "test/ints=1,2", "test/floats=3,4"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/int"), "5");
    EXPECT_EQ(simulator->Get("test/float"), "6");
    EXPECT_EQ(simulator->Get("test/ints"), "1,2,0,0,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), "3,4,0,0,0,0,0,0");
}

TEST_F(SetTest, WritesAZeroWhateverTheTypeIs) {
    simulator->Ask("set test/int 5");
    simulator->Ask("set test/float 5");
    const ToolResult result = runTool({"set", "test/int=0", "test/float=0"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/int"), "0");
    EXPECT_EQ(simulator->Get("test/float"), "0");
}

TEST_F(SetTest, WritesElementsAndLeavesTheOthersAsTheyAre) {
    simulator->Ask("set test/ints 1,2,3,4,5");
    simulator->Ask("set test/floats 0.5,1.5,2.5,3.5");
    const ToolResult result = runTool({"set", "test/ints[1]=20", "test/ints[3:5]=40,50",
                                       "test/floats[2]:float=9", "test/floats[0]=8"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/ints"), "1,20,3,40,50,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), "8,1.5,9,3.5,0,0,0,0");
    EXPECT_EQ(
        runTool({"set", "--json", "test/ints[0]:int=7"}).out,
        "{\"name\":\"test/ints[0]\",\"type\":\"int\",\"value\":7,\"reads\":7,\"taken\":true}\n");
    EXPECT_EQ(runTool({"set", "kyr/external_forcescalefactor_value[3]:int=9"}).err,
              "orvane: kyr/external_forcescalefactor_value[3]: 9 was not taken; it reads 0; the "
              "plugin's own arrays refuse a write that reaches their last element\n");
}

TEST_F(SetTest, AcceptsANotANumberThatReadsBack) {
    const ToolResult result = runTool({"set", "--json", "test/float=nan", "test/floats[1]=-inf"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(simulator->Get("test/float"), "nan");
    EXPECT_EQ(result.out,
              "{\"name\":\"test/float\",\"type\":\"float\",\"value\":null,\"reads\":null,"
              "\"taken\":true}\n"
              "{\"name\":\"test/floats[1]\",\"type\":\"float\",\"value\":null,\"reads\":null,"
              "\"taken\":true}\n");
}

TEST_F(SetTest, NamesDatarefsThatDidNotTakeTheirValue) {
    const ToolResult result = runTool({"set", "sim/time/paused:int=1", "test/int:int=3",
                                       "sim/version/xplane_internal_version=0"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "orvane: sim/time/paused: 1 was not taken; it reads 0\n"
              "orvane: sim/version/xplane_internal_version: 0 was not taken; it reads 121400\n");
    EXPECT_EQ(simulator->Get("test/int"), "3");
}

TEST_F(SetTest, NamesDatarefsOfAnotherType) {
    const ToolResult result = runTool({"set", "test/int:float=1.5"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err, "orvane: test/int: 1.5 was not taken; it reads 0\n");
}

TEST_F(SetTest, ExplainsWhyAnArrayOfThePluginKeepsItsValue) {
    const ToolResult result =
        runTool({"set", "kyr/external_forcescalefactor_value:int[4]=1,2,3,4"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "orvane: kyr/external_forcescalefactor_value: 1,2,3,4 was not taken; it reads "
              "0,0,0,0; the plugin's own arrays refuse a write that reaches their last element\n");
    EXPECT_EQ(runTool({"set", "kyr/external_forcescalefactor_value:int[3]=1,2,3"}).exitCode, 0);
    EXPECT_EQ(simulator->Get("kyr/external_forcescalefactor_value"), "1,2,3,0");
}

TEST_F(SetTest, AcceptsADatarefThatChangesAfterTheWrite) {
    const ToolResult result = runTool({"set", "sim/time/zulu_time_sec:float=43200"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
}

TEST_F(SetTest, WritesNothingIfANameIsUnknown) {
    const ToolResult result = runTool({"set", "test/int:int=9", "no/such=1", "nor/this=1"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "orvane: no/such: the simulator has no such dataref\n"
              "orvane: nor/this: the simulator has no such dataref\n"
              "orvane: nothing was written\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
}

TEST_F(SetTest, PrintsARecordForEachName) {
    EXPECT_EQ(runTool({"set", "--json", "test/int=4", "sim/time/paused:int=1"}).out,
              "{\"name\":\"test/int\",\"type\":\"int\",\"value\":4,\"reads\":4,\"taken\":true}\n"
              "{\"name\":\"sim/time/paused\",\"type\":\"int\",\"value\":1,\"reads\":0,"
              "\"taken\":false}\n");
    EXPECT_EQ(runTool({"set", "--csv", "test/ints:int[2]=4,5"}).out,
              "name,type,value,reads,taken\n"
              "test/ints,int[2],\"4,5\",\"4,5\",true\n");
}

TEST_F(SetTest, RefusesAnInvalidValueBeforeItWritesAnything) {
    const ToolResult result = runTool({"set", "test/int:int=1", "test/float:float=fast"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "orvane: test/float:float: \"fast\" is not a number that a float can hold\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
    EXPECT_EQ(runTool({"set", "test/int"}).err,
              "orvane: test/int: a value is missing: NAME=VALUE or NAME:TYPE=VALUE\n");
}

} // namespace
