#include <csignal>
#include <string>

#include "e2e/tool/DriveTest.h"

namespace {

class DriveUnknownNamesTest : public DriveTest {
protected:
    DriveUnknownNamesTest() {
        directory.Write("p.toml",
                        std::string(kProfile) +
                            "[[input]]\n"
                            "name = \"trim\"\n"
                            "dataref = \"no/trim\"\n"
                            "type = \"float\"\n"
                            "scaling = { datarefs = [\"test/minimum\", \"no/maximum\"] }\n"
                            "skip = { while_zero = \"no/condition\", type = \"int\" }\n"
                            "[[input]]\n"
                            "name = \"flaps\"\n"
                            "command = \"no/flaps\"\n"
                            "[[output]]\n"
                            "name = \"trim\"\n"
                            "dataref = \"no/trim\"\n"
                            "type = \"float\"\n");
    }

    static constexpr const char* kUnknown =
        "orvane: no/trim: the simulator has no such dataref (input \"trim\")\n"
        "orvane: no/maximum: the simulator has no such dataref (input \"trim\")\n"
        "orvane: no/condition: the simulator has no such dataref (input \"trim\")\n"
        "orvane: no/flaps: the simulator has no such command (input \"flaps\")\n"
        "orvane: no/trim: the simulator has no such dataref (output \"trim\")\n";
};

TEST_F(DriveUnknownNamesTest, AreReportedAtTheStart) {
    const ToolResult result = drive({"--input", "-"}, "switch\n7\n");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, kUnknown);
    EXPECT_EQ(simulator->Get("test/int"), "7");
}

TEST_F(DriveUnknownNamesTest, EndASessionThatIsStrict) {
    const ToolResult result = drive({"--strict", "--input", "-"}, "switch\n7\n");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string(kUnknown) + "orvane: nothing was sent\n");
    EXPECT_EQ(simulator->Get("test/int"), "0");
}

TEST_F(DriveTest, AcceptsKnownNamesWithStrict) {
    EXPECT_EQ(drive({"--strict", "-n", "1"}).exitCode, 0);
}

constexpr const char* kOwnNames =
    "[[input]]\n"
    "name = \"knob\"\n"
    "dataref = \"kyr/knob\"\n"
    "type = \"int\"\n"
    "steps = { values = [7] }\n"
    "[[input]]\n"
    "name = \"button\"\n"
    "command = \"kyr/button\"\n"
    "hold = true\n"
    "steps = { values = [1] }\n"
    "[[output]]\n"
    "name = \"knob\"\n"
    "dataref = \"kyr/knob\"\n"
    "type = \"int\"\n"
    "[[output]]\n"
    "name = \"button\"\n"
    "command = \"kyr/button\"\n";

TEST_F(DriveTest, DrivesNamesThatItsOwnOutputsMake) {
    directory.Write("p.toml", kOwnNames);
    const ToolResult result = drive({"-n", "1", "--strict"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(withoutTimes(result.out),
              "T knob=0 button=false aircraft_id=0xB9852EB1\n"
              "T knob=7 button=true aircraft_id=0xB9852EB1\n");
}

TEST_F(DriveTest, StillDrivesThemWhenTheSimulatorIsBack) {
    directory.Write("p.toml", kOwnNames);
    ToolRun run({"drive", "p.toml", "--reconnect"});
    run.WaitForOut("button=true");
    simulator->Quit();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    const std::size_t before = run.Out().size();
    fly();
    run.WaitForErr("orvane: connected again\n");
    run.WaitForOut("knob=7 button=true aircraft_id=0xB9852EB1", before);
    run.Signal(SIGINT);
    EXPECT_EQ(run.Wait().exitCode, 0);
}

} // namespace
