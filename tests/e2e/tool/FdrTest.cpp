// Flight data as the simulator's own recorder writes it.

#include <algorithm>
#include <csignal>
#include <string>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"

namespace {

class FdrTest : public ToolTest {
protected:
    // The aircraft stands still in the air.
    FdrTest() {
        simulator->Ask("set sim/time/paused 1");
        simulator->Ask("set sim/flightmodel/position/longitude 11.5");
        simulator->Ask("set sim/flightmodel/position/latitude 47.25");
        simulator->Ask("set sim/flightmodel/position/elevation 304.8");
        simulator->Ask("set sim/flightmodel/position/psi 270");
        simulator->Ask("set sim/flightmodel/position/theta 2.5");
        simulator->Ask("set sim/flightmodel/position/phi -10");
    }

    std::string withoutDate(const std::string& file) const {
        std::string text = directory.Read(file);
        const std::size_t date = text.find("DATE, ");
        return date == std::string::npos ? text : text.replace(date + 6, 10, "MM/DD/YYYY");
    }

    void setDatarefs(const char* number, const char* whole, const char* wholes,
                     const char* numbers) {
        simulator->Ask(std::string("set test/float ") + number);
        simulator->Ask(std::string("set test/int ") + whole);
        simulator->Ask(std::string("set test/ints ") + wholes);
        simulator->Ask(std::string("set test/floats ") + numbers);
    }

    ToolResult replayed(const std::string& text) {
        directory.Write("r.fdr", text);
        return runTool({"replay", "r.fdr"});
    }
};

const std::string kHead = "A\n4\n";
const std::string kPose = "12:30:00 11.5 47.25 1000 270 2.5 -10";
// All that the test's world lacks.
const std::string kMissing =
    "orvane: sim/flightmodel/position/mag_psi: the simulator has no such dataref; the heading is "
    "the true one\n"
    "orvane: sim/time/local_date_days: the simulator has no such dataref; the date is today's\n"
    "orvane: sim/weather/barometer_sealevel_inhg: the simulator has no such dataref; PRES is "
    "29.92\n"
    "orvane: sim/weather/temperature_sealevel_c: the simulator has no such dataref; TEMP is 59\n"
    "orvane: sim/weather/wind_direction_degt: the simulator has no such dataref; the direction of "
    "WIND is 0\n"
    "orvane: sim/weather/wind_speed_kt: the simulator has no such dataref; the speed of WIND is "
    "0\n";

TEST_F(FdrTest, RecordsPositionAndDatarefsAndSaysWhatTheSimulatorLacks) {
    simulator->Ask("set sim/time/zulu_time_sec 45015.5");
    setDatarefs("0.1", "-7", "1,2,3", "0.5,-1e-9");
    const ToolResult result = runTool({"record", "test/float:float", "test/int", "test/ints[1:3]",
                                       "test/floats:float[2]", "-n", "1", "-o", "r.fdr"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.err.starts_with(kMissing + "r.fdr: ")) << result.err;
    EXPECT_EQ(withoutDate("r.fdr"),
              "A\n"
              "4\n"
              "ACFT, Aircraft/unknown.acf\n"
              "TAIL, UNKNOWN\n"
              "TIME, 12:30:15\n"
              "DATE, MM/DD/YYYY\n"
              "PRES, 29.92\n"
              "TEMP, 59\n"
              "WIND, 0, 0\n"
              "DREF, test/float\t1.0\n"
              "DREF, test/int\t1.0\t// int\n"
              "DREF, test/ints[1]\t1.0\t// int\n"
              "DREF, test/ints[2]\t1.0\t// int\n"
              "DREF, test/floats[0]\t1.0\n"
              "DREF, test/floats[1]\t1.0\n"
              "12:30:15,11.5,47.25,1000,270,2.5,-10,0.1,-7,2,3,0.5,-1e-09\n");
}

TEST_F(FdrTest, TakesTimeDateWeatherAndMagneticHeadingFromASimulatorThatHasThem) {
    directory.Write("DataRefs.txt",
                    directory.Read("DataRefs.txt") +
                        "sim/time/local_date_days\tint\ty\tdays\tDate\n"
                        "sim/flightmodel/position/mag_psi\tfloat\ty\tdegrees\tHeading\n"
                        "sim/weather/barometer_sealevel_inhg\tfloat\ty\tinHg\tPressure\n"
                        "sim/weather/temperature_sealevel_c\tfloat\ty\tC\tTemperature\n"
                        "sim/weather/wind_direction_degt\tfloat\ty\tdegrees\tWind\n"
                        "sim/weather/wind_speed_kt\tfloat\ty\tknots\tWind\n");
    fly();
    simulator->Ask("set sim/time/local_date_days 59");
    simulator->Ask("set sim/flightmodel/position/mag_psi 266.5");
    simulator->Ask("set sim/weather/barometer_sealevel_inhg 30.25");
    simulator->Ask("set sim/weather/temperature_sealevel_c -2.5");
    simulator->Ask("set sim/weather/wind_direction_degt 230");
    simulator->Ask("set sim/weather/wind_speed_kt 16");
    const ToolResult result = runTool({"record", "-n", "1", "-o", "R.FDR"});
    EXPECT_TRUE(result.err.starts_with("R.FDR: ")) << result.err;
    const std::string text = directory.Read("R.FDR");
    EXPECT_NE(text.find("\nDATE, 03/01/"), std::string::npos) << text;
    EXPECT_NE(text.find("\nPRES, 30.25\nTEMP, 27.5\nWIND, 230, 16\n00:00:00,"), std::string::npos)
        << text;
    EXPECT_NE(text.find(",266.5,"), std::string::npos) << text;
    simulator.reset();
    EXPECT_EQ(play("--replay R.FDR",
                   "frames 1\\nexpect sim/weather/temperature_sealevel_c == -2.5\\n"
                   "expect sim/weather/barometer_sealevel_inhg == 30.25\\n"
                   "expect sim/weather/wind_speed_kt == 16\\n")
                  .substr(0, 9),
              "frames 1,");
}

TEST_F(FdrTest, ReplaysWhatWasRecordedOverMidnight) {
    simulator->Ask("set sim/time/zulu_time_sec 86399");
    setDatarefs("0.1", "77", "1,2,3", "0.5,1e-40,3e38");
    const ToolResult recorded =
        runTool({"record", "test/float:float", "test/int:int", "test/ints[1:3]:int",
                 "test/floats:float[3]", "-n", "2", "--rate", "1", "-o", "r.fdr"});
    EXPECT_EQ(recorded.exitCode, 0) << recorded.err;
    const std::string text = directory.Read("r.fdr");
    EXPECT_NE(text.find("\nTIME, 23:59:59\n"), std::string::npos) << text;
    EXPECT_EQ(text.rfind("\n00:00:0"), text.rfind('\n', text.size() - 2)) << text;
    const std::string numbers = simulator->Get("test/floats");
    setDatarefs("9", "9", "9,9,9,9", "9,9,9");
    simulator->Ask("set sim/flightmodel/position/phi 33");
    const ToolResult result = runTool({"replay", "r.fdr", "--speed", "100"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "r.fdr: its aircraft, tail number, time and weather are not set\n"
              "r.fdr: 2 rows written\n");
    EXPECT_EQ(simulator->Get("test/float"), "0.1");
    EXPECT_EQ(simulator->Get("test/int"), "77");
    EXPECT_EQ(simulator->Get("test/ints"), "9,2,3,9,0,0,0,0");
    EXPECT_EQ(simulator->Get("test/floats"), numbers);
    EXPECT_EQ(simulator->Get("sim/flightmodel/position/phi"), "-10");
    simulator.reset();
    EXPECT_EQ(play("--replay r.fdr",
                   "frames 1\\nexpect test/float == 0.1\\nexpect test/int == 77\\n"
                   "expect test/ints == 0,2,3,0,0,0,0,0\\n"
                   "expect sim/flightmodel/position/elevation == 304.8 within 0.001\\n"
                   "expect sim/flightmodel/position/psi == 270\\n")
                  .substr(0, 9),
              "frames 1,");
}

TEST_F(FdrTest, TheLastColumnOfANameCountsAndItsCommentSaysItsType) {
    const ToolResult result = replayed(kHead +
                                       "FOOO, 1\nCOMM, words\n"
                                       "DREF, test/int 10 // int\n"
                                       "DREF, sim/flightmodel/position/theta // pitch\n"
                                       "DREF, test/ints[2] // int\n" +
                                       kPose + " 0.44 7.5 1e12\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "r.fdr:3: unknown keyword \"FOOO\"; such lines are skipped\n"
              "r.fdr: 1 row written\n");
    EXPECT_EQ(simulator->Get("test/int"), "4");
    EXPECT_EQ(simulator->Get("test/ints"), "0,0,2147483647,0,0,0,0,0");
    EXPECT_EQ(simulator->Get("sim/flightmodel/position/theta"), "7.5");
}

TEST_F(FdrTest, NamesThePositionThatCouldNotBeSet) {
    const ToolResult result = replayed(kHead + "12:30:00 11.5 48 1000 270 2.5 -10\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "orvane: sim/flightmodel/position/latitude did not take or keep 48; it is 47.25\n"
              "r.fdr: 1 row written\n");
}

TEST_F(FdrTest, WritesNothingOfAFileWithAnError) {
    const ToolResult result = replayed(kHead + "DREF, test/int\t1.0\t// int\n" + kPose + " 5\n" +
                                       kPose + "\n12:30:01 11.5 north 1000 270 2.5 -10 6\n");
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.err,
              "r.fdr:5: 7 fields, but 8 columns\n"
              "r.fdr:6: \"north\" is not a number\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
    const ToolResult noName = replayed(kHead + "COMM, x\nDREF, test/ints[x]\n" + kPose + " 5\n");
    EXPECT_EQ(noName.exitCode, 5);
    EXPECT_TRUE(noName.err.starts_with("r.fdr:4: test/ints[x]:float: ")) << noName.err;
    EXPECT_EQ(std::count(noName.err.begin(), noName.err.end(), '\n'), 1);
    EXPECT_EQ(replayed("time,test/int:int\n0,5\n").err, "r.fdr:1: the first line is not A or I\n");
    EXPECT_EQ(replayed(kHead).err, "r.fdr: it has no row of flight data\n");
    EXPECT_EQ(runTool({"replay", "none.fdr"}).exitCode, 1);
    const ToolResult unknown = replayed(kHead + "DREF, no/such\n" + kPose + " 5\n");
    EXPECT_EQ(unknown.exitCode, 3);
    EXPECT_NE(unknown.err.find("no/such"), std::string::npos) << unknown.err;
}

TEST_F(FdrTest, EndsWithAWholeFileAtAnInterrupt) {
    ToolRun run({"record", "test/float:float", "-o", "r.fdr"});
    EXPECT_TRUE(driveUntil([] {},
                           [&] {
                               const std::string text =
                                   directory.Has("r.fdr") ? directory.Read("r.fdr") : "";
                               return std::count(text.begin(), text.end(), '\n') >= 12;
                           }));
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
    const std::string text = directory.Read("r.fdr");
    EXPECT_TRUE(text.ends_with(",11.5,47.25,1000,270,2.5,-10,0\n")) << text;
    const auto rows = std::to_string(std::count(text.begin(), text.end(), '\n') - 10);
    EXPECT_EQ(runTool({"replay", "r.fdr", "--speed", "100"}).err,
              "r.fdr: its aircraft, tail number, time and weather are not set\n"
              "r.fdr: " +
                  rows + " rows written\n");
    const ToolResult cut = replayed(kHead + kPose + "\n" + kPose.substr(0, 20));
    EXPECT_EQ(cut.err,
              "r.fdr:4: the line was cut off and is skipped\n"
              "r.fdr: 1 row written\n");
}

TEST_F(FdrTest, WritesZeroForWhatTheFormatCannotHoldAndSaysSoOnce) {
    simulator->Ask("set test/floats nan,1");
    const ToolResult result = runTool({"record", "test/floats[0:2]", "-n", "2", "-o", "r.fdr"});
    EXPECT_TRUE(result.err.starts_with(
        kMissing +
        "orvane: test/floats[0]: nan cannot be written to a .fdr; it is 0 there\nr.fdr: "))
        << result.err;
    EXPECT_TRUE(directory.Read("r.fdr").ends_with(",2.5,-10,0,1\n")) << directory.Read("r.fdr");
}

TEST_F(FdrTest, CreatesNoFileForUnknownDatarefsOrWithoutAny) {
    const ToolResult result = runTool({"record", "test/float:float", "no/such", "-o", "r.fdr"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err, "orvane: no/such: the simulator has no such dataref\n");
    EXPECT_EQ(runTool({"record", "sim/flightmodel/position/phi[0]", "-o", "r.fdr"}).err,
              "orvane: sim/flightmodel/position/phi: named both as a whole and by elements\n");
    EXPECT_EQ(runTool({"record", "sim/flightmodel/position/phi:int", "-n", "1", "-o", "r.fdr"}).err,
              "orvane: sim/flightmodel/position/phi:int: a .fdr has it as float\n");
    EXPECT_FALSE(directory.Has("r.fdr"));
    EXPECT_EQ(runTool({"record", "-n", "1", "-o", "r.csv"}).err,
              "orvane: NAME is required, unless FILE ends in .fdr\n");
    EXPECT_FALSE(directory.Has("r.csv"));
}

} // namespace
