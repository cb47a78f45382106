#include "e2e/tool/ToolTest.h"

namespace {

class GetTest : public ToolTest {
protected:
    GetTest() {
        simulator->Ask("set test/int 42");
        simulator->Ask("set test/float 0.1");
        simulator->Ask("set test/ints 1,-2,3");
        simulator->Ask("set test/floats 0,0.5");
    }
};

TEST_F(GetTest, PrintsTheValueOfOneNameAlone) {
    const ToolResult result = runTool({"get", "test/float:float"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "0.1\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(GetTest, ReadsEachType) {
    const ToolResult result = runTool(
        {"get", "test/int:int", "test/float:float@kt", "test/ints:int[4]", "test/floats:float[2]"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "test/int:int=42\n"
              "test/float:float@kt=0.1\n"
              "test/ints:int[4]=1,-2,3,0\n"
              "test/floats:float[2]=0,0.5\n");
    EXPECT_EQ(runTool({"get", "test/int:byte"}).out, "42\n");
}

TEST_F(GetTest, FindsTheTypeOfWhatIsNotZero) {
    const ToolResult result =
        runTool({"get", "test/int", "test/float", "test/ints", "test/floats", "test/minimum"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "test/int=42\n"
              "test/float=0.1\n"
              "test/ints=1,-2,3\n"
              "test/floats=0,0.5\n"
              "test/minimum=0\n");
    EXPECT_EQ(result.err,
              "orvane: test/ints: an array; test/ints:int[3] are its elements up to the last that "
              "is not 0\n"
              "orvane: test/floats: an array; test/floats:float[2] are its elements up to the last "
              "that is not 0\n"
              "orvane: test/minimum: 0 in every type; give the type if you know it\n");
}

TEST_F(GetTest, ReadsElementsOfAnArray) {
    EXPECT_EQ(runTool({"get", "test/ints[1]"}).out, "-2\n");
    EXPECT_EQ(runTool({"get", "test/floats[1]"}).out, "0.5\n");
    const ToolResult result = runTool(
        {"get", "test/ints[0]", "test/ints[1:4]", "test/floats[0:2]:float@m", "test/ints[7]"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "test/ints[0]=1\n"
              "test/ints[1:4]=-2,3,0\n"
              "test/floats[0:2]:float@m=0,0.5\n"
              "test/ints[7]=0\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(runTool({"get", "--json", "test/ints[1]", "test/ints[1:3]"}).out,
              "{\"name\":\"test/ints[1]\",\"type\":\"int\",\"value\":-2}\n"
              "{\"name\":\"test/ints[1:3]\",\"type\":\"int[2]\",\"value\":[-2,3]}\n");
    EXPECT_EQ(runTool({"get", "no/such[3]"}).err,
              "orvane: no/such[3]: the simulator has no such dataref\n");
}

TEST_F(GetTest, SaysWhenAValueIsZeroInEveryType) {
    simulator->Ask("set test/int 0");
    const ToolResult result = runTool({"get", "test/int"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "0\n");
    EXPECT_EQ(result.err, "orvane: test/int: 0 in every type; give the type if you know it\n");
    EXPECT_EQ(runTool({"get", "test/int:int"}).err, "");
}

TEST_F(GetTest, ReadsZeroAsAnotherType) {
    EXPECT_EQ(runTool({"get", "test/float:int"}).out, "0\n");
}

TEST_F(GetTest, PrintsARecordForEachName) {
    EXPECT_EQ(runTool({"get", "--json", "test/int", "test/float:float@kt", "test/ints:int[2]"}).out,
              "{\"name\":\"test/int\",\"type\":\"int\",\"value\":42}\n"
              "{\"name\":\"test/float\",\"type\":\"float\",\"value\":0.1,\"unit\":\"kt\"}\n"
              "{\"name\":\"test/ints\",\"type\":\"int[2]\",\"value\":[1,-2]}\n");
    EXPECT_EQ(runTool({"--csv", "get", "test/int:int", "test/ints:int[2]@m"}).out,
              "name,type,value,unit\n"
              "test/int,int,42,\n"
              "test/ints,int[2],\"1,-2\",m\n");
}

TEST_F(GetTest, PrintsKnownDatarefsAndNamesUnknownOnes) {
    const ToolResult result = runTool({"get", "no/such", "test/int:int", "nor/this"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.out, "test/int:int=42\n");
    EXPECT_EQ(result.err,
              "orvane: no/such: the simulator has no such dataref\n"
              "orvane: nor/this: the simulator has no such dataref\n");
}

TEST_F(GetTest, RefusesAnUnknownType) {
    const ToolResult result = runTool({"get", "test/int:double"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "orvane: double: the protocol has no doubles; the types are int, float, byte, "
              "int[N] and float[N]\n");
}

TEST_F(GetTest, NeedsAName) {
    EXPECT_EQ(runTool({"get"}).exitCode, 1);
}

} // namespace
