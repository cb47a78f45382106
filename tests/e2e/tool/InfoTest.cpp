#include "e2e/tool/ToolTest.h"

namespace {

class InfoTest : public ToolTest {};

TEST_F(InfoTest, ShowsVersionAircraftAndRoundTrip) {
    const ToolResult result = runTool({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(
        result.out.starts_with("server      127.0.0.1:48000\n"
                               "version     1.0.7.10, revision 6\n"
                               "aircraft    loaded, id 0xB9852EB1\n"
                               "round trip  "))
        << result.out;
    EXPECT_TRUE(result.out.ends_with(" ms, the median of 5\n")) << result.out;
}

TEST_F(InfoTest, SaysThatNoAircraftIsLoaded) {
    simulator->Ask("aircraft unload");
    const ToolResult result = runTool({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("\naircraft    none loaded\n"), std::string::npos) << result.out;
}

TEST_F(InfoTest, PrintsJsonAndCsv) {
    const std::string json = runTool({"--json", "info"}).out;
    EXPECT_TRUE(
        json.starts_with("{\"host\":\"127.0.0.1\",\"port\":48000,\"version\":\"1.0.7.10\","
                         "\"revision\":6,\"aircraft_loaded\":true,"
                         "\"aircraft_id\":3112513201,\"round_trip_ms\":"))
        << json;
    const std::string csv = runTool({"info", "--csv"}).out;
    EXPECT_TRUE(
        csv.starts_with("host,port,version,revision,aircraft_loaded,aircraft_id,round_trip_ms\n"
                        "127.0.0.1,48000,1.0.7.10,6,true,0xB9852EB1,"))
        << csv;
}

} // namespace
