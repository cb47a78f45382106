#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "e2e/ToolRun.h"
#include "e2e/dissector/LiveCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/Text.h"

// The commands for captures on the page of the tool, exactly as written there.

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The commands on the page.
std::vector<std::string> documentedCommands() {
    std::vector<std::string> lines = linesOf(contentOf(TOOL_PAGE));
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("tshark "); });
    return lines;
}

class LookAtACaptureTest : public LiveCaptureTest {
protected:
    LookAtACaptureTest() {
        ::setenv("WIRESHARK_CONFIG_DIR", "no-settings", 1);
        // The page's commands are for the folder of the repository.
        std::filesystem::create_directory_symlink(TOOLS_FOLDER, "tools");
    }

    void fly() {
        TestClient client;
        client.Exchange(*simulator, smallDefinitions());
        client.Exchange(*simulator, tarnelRequest(dataMessage({{7, -5}})));
    }

    const std::vector<std::string> commands = documentedCommands();
};

TEST_F(LookAtACaptureTest, ShowsLinesAndFieldsOfAFile) {
    fly();
    ASSERT_EQ(capture.Finish(), "flight.pcap");
    ASSERT_EQ(commands.size(), 3U);
    EXPECT_THAT(runCommand(commands[0] + " 2>errors"),
                ElementsAre(HasSubstr(" Orvane 1530 Tarnel DEFINITIONS 2 inputs, 4 outputs"),
                            HasSubstr(" Tarnel answer: test/int = 0, test/floats = 2 floats, "
                                      "kyr/button = up and 1 more"),
                            HasSubstr(" Tarnel DATA: test/int = -5"),
                            HasSubstr(" Tarnel answer: test/int = 0, ")));
    std::string text;
    for (const std::string& line : runCommand(commands[1] + " 2>errors")) {
        text += line;
    }
    const auto json = nlohmann::json::parse(text);
    ASSERT_EQ(json.size(), 4U);
    const auto& item = json[2]["_source"]["layers"]["orvane"]["orvane.tarnel.item"];
    EXPECT_EQ(item["orvane.tarnel.item.value"], "-5");
    EXPECT_EQ(item["orvane.name"], "test/int");
    const auto& entries = json[3]["_source"]["layers"]["orvane"]["orvane.tarnel.entry"];
    EXPECT_EQ(entries[1]["orvane.tarnel.entry.float"], nlohmann::json::array({"0", "0"}));
}

TEST_F(LookAtACaptureTest, ShowsLinesWhileTheMessagesTravel) {
    ASSERT_EQ(commands.size(), 3U);
    ToolRun live({"-c", "exec " + commands[2]}, {.program = "/bin/sh"});
    live.WaitForOut("Tarnel DATA: test/int = -5", [this] { fly(); });
    live.Signal(SIGINT);
    EXPECT_EQ(live.Wait().exitCode, 0);
}

} // namespace
