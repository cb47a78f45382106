#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/ToolRun.h"
#include "orvane/headless/Simulator.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr const char* kFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

// Valid lines and users' mistakes.
constexpr const char* kOddLines =
    "# our cockpit\n"
    "odd/float float # a light\n"
    "odd/ints int_array 3\n"
    "odd/tab\tfloat\n"
    "odd/return float\r\n"
    "odd/array_return int_array 2\r\n"
    "odd/cut#name float\n"
    "odd/Type Float\n"
    "odd/no_size float_array\n"
    "odd/zero int_array 0\n"
    "odd/half int_array 2.5\n"
    "odd/large int_array 99999999999\n"
    "odd/float int_array 4\n"
    "   odd/spaces    float_array    +2   extra\n"
    "odd/double double 8\n"
    "odd/size_tab int_array \t4\n"
    "kyr/autopilot_external_control float\n"
    "odd/last int";

ToolSetting withInput(const std::string& input) {
    ToolSetting setting;
    setting.input = input;
    return setting;
}

class ConfigCheckTest : public testing::Test {
protected:
    ConfigCheckTest() { directory.MakePluginsFolder(); }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(ConfigCheckTest, SaysWhatBecomesOfEveryLine) {
    directory.Write("odd.cfg", kOddLines);
    const ToolResult result = runTool({"config", "check", "odd.cfg"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(
        result.out,
        "odd.cfg:2: registers float odd/float\n"
        "odd.cfg:3: registers int_array[3] odd/ints\n"
        "odd.cfg:4: ignored: tabs do not separate fields; use spaces\n"
        "odd.cfg:5: ignored: the carriage return is part of the type \"float\\x0D\"\n"
        "odd.cfg:6: registers int_array[2] odd/array_return\n"
        "odd.cfg:7: ignored: the comment sign cuts the line after \"odd/cut\"\n"
        "odd.cfg:8: ignored: unknown type \"Float\"\n"
        "odd.cfg:9: ignored: no number of elements after float_array\n"
        "odd.cfg:10: ignored: the number of elements \"0\" reads as 0, below 1\n"
        "odd.cfg:11: registers int_array[2] odd/half (the number of elements \"2.5\" reads as 2)\n"
        "odd.cfg:12: ignored: the number of elements \"99999999999\" does not fit in 32 bits\n"
        "odd.cfg:13: ignored: line 2 already declares odd/float\n"
        "odd.cfg:14: registers float_array[2] odd/spaces (\"extra\" and everything after it is "
        "ignored)\n"
        "odd.cfg:15: registers double odd/double (\"8\" and everything after it is ignored)\n"
        "odd.cfg:16: registers int_array[4] odd/size_tab\n"
        "odd.cfg:17: registers float kyr/autopilot_external_control (replaces the plugin's own "
        "int)\n"
        "odd.cfg:18: registers int odd/last\n"
        "odd.cfg: appended by the plugin: int kyr/autopilot_trigger_disable\n"
        "odd.cfg: appended by the plugin: int_array[4] kyr/external_forcescalefactor_active\n"
        "odd.cfg: appended by the plugin: int_array[4] kyr/external_forcescalefactor_value\n"
        "odd.cfg: 9 registered, 8 ignored, 3 appended\n");
}

// Compares the report above with the plugin itself.
TEST_F(ConfigCheckTest, SaysWhatThePluginDoes) {
    directory.Write(kFile, kOddLines);
    orvane::headless::Simulator sim;
    sim.load(PLUGIN);
    for (const std::string name : {"odd/float", "odd/double", "odd/last"}) {
        EXPECT_EQ(sim.number(name), 0) << name;
    }
    for (const std::string name : {"odd/float", "kyr/autopilot_external_control"}) {
        sim.setNumber(name, 0.5);
        EXPECT_EQ(sim.number(name), 0.5) << name;
    }
    EXPECT_EQ(sim.numbers("odd/ints"), std::vector<double>(3));
    EXPECT_EQ(sim.numbers("odd/array_return"), std::vector<double>(2));
    EXPECT_EQ(sim.numbers("odd/half"), std::vector<double>(2));
    EXPECT_EQ(sim.numbers("odd/spaces"), std::vector<double>(2));
    EXPECT_EQ(sim.numbers("odd/size_tab"), std::vector<double>(4));
    for (const std::string name :
         {"odd/tab\tfloat", "odd/tab", "odd/return", "odd/cut", "odd/cut#name", "odd/Type",
          "odd/no_size", "odd/zero", "odd/large"}) {
        EXPECT_FALSE(sim.hasDataref(name)) << name;
    }
    EXPECT_EQ(directory.Read(kFile), std::string(kOddLines) +
                                         "\nkyr/autopilot_trigger_disable int"
                                         "\nkyr/external_forcescalefactor_active int_array 4"
                                         "\nkyr/external_forcescalefactor_value int_array 4");
}

TEST_F(ConfigCheckTest, FindsNothingToAppendAfterAStart) {
    orvane::headless::Simulator().load(PLUGIN);
    const ToolResult result = runTool({"config", "check"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "./Resources/plugins/xplaneorvane_datarefs.cfg:2: registers int "
              "kyr/autopilot_external_control\n"
              "./Resources/plugins/xplaneorvane_datarefs.cfg:3: registers int "
              "kyr/autopilot_trigger_disable\n"
              "./Resources/plugins/xplaneorvane_datarefs.cfg:4: registers int_array[4] "
              "kyr/external_forcescalefactor_active\n"
              "./Resources/plugins/xplaneorvane_datarefs.cfg:5: registers int_array[4] "
              "kyr/external_forcescalefactor_value\n"
              "./Resources/plugins/xplaneorvane_datarefs.cfg: 4 registered, 0 ignored, 0 "
              "appended\n");
}

TEST_F(ConfigCheckTest, ReadsStandardInputAndWritesRecords) {
    const ToolResult json = runTool({"config", "check", "--json", "-"}, withInput("a/b\tint\n"));
    EXPECT_EQ(json.exitCode, 3);
    EXPECT_EQ(json.out.substr(0, json.out.find('\n')),
              R"({"file":"-","line":1,"verdict":"ignored","reason":"tab",)"
              R"("text":"tabs do not separate fields; use spaces"})");
    const ToolResult csv = runTool({"config", "check", "--csv", "-"}, withInput("a/b int\n"));
    EXPECT_EQ(csv.exitCode, 0);
    EXPECT_EQ(csv.out.substr(0, 79),
              "file,line,verdict,type,name,elements,reason,text\n"
              "-,1,registers,int,a/b,,,\n-,,ap");
}

TEST_F(ConfigCheckTest, ComplainsOfAFileThatCannotBeRead) {
    const ToolResult missing = runTool({"config", "check"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err,
              "orvane: ./Resources/plugins/xplaneorvane_datarefs.cfg: No such file or directory\n");
    const ToolResult folder = runTool({"config", "check", "Resources"});
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_EQ(folder.err, "orvane: Resources: Is a directory\n");
}
