#pragma once

#include <regex>
#include <string>
#include <vector>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"

// Three inputs and three outputs.
inline constexpr const char* kProfile =
    "[[input]]\n"
    "name = \"axis\"\n"
    "dataref = \"test/float\"\n"
    "type = \"float\"\n"
    "scaling = { float_range = [-1, 1] }\n"
    "[[input]]\n"
    "name = \"switch\"\n"
    "dataref = \"test/int\"\n"
    "type = \"int\"\n"
    "[[input]]\n"
    "name = \"brakes\"\n"
    "command = \"test/hold\"\n"
    "hold = true\n"
    "[[output]]\n"
    "name = \"position\"\n"
    "dataref = \"test/float\"\n"
    "type = \"float\"\n"
    "[[output]]\n"
    "name = \"lamps\"\n"
    "dataref = \"test/ints\"\n"
    "type = \"int\"\n"
    "count = 2\n"
    "[[output]]\n"
    "name = \"button\"\n"
    "command = \"kyr/button\"\n";

class DriveTest : public ToolTest {
protected:
    DriveTest() {
        directory.Write("p.toml", kProfile);
        simulator->Ask("set test/ints 3,4");
    }

    static ToolResult drive(std::vector<std::string> arguments, const std::string& input = {}) {
        arguments.insert(arguments.begin(), {"drive", "p.toml"});
        return runTool(std::move(arguments), {.input = input});
    }

    bool hasEvents(const std::string& counts) {
        return simulator->Ask("events test/hold").find(counts) != std::string::npos;
    }

    void waitForEvents(const std::string& counts) {
        EXPECT_TRUE(driveUntil([] {}, [&] { return hasEvents(counts); }))
            << simulator->Ask("events test/hold");
    }

    // The times differ from run to run.
    static std::string withoutTimes(const std::string& text) {
        return std::regex_replace(text, std::regex("(^|\\n)(\\{\"time\":)?[0-9.]+"), "$1$2T");
    }
};
