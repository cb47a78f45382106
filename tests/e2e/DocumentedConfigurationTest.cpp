#include <sstream>
#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "orvane/headless/Simulator.h"
#include "support/TarnelMessages.h"
#include "support/Text.h"
#include "support/VelmarMessages.h"

// The files on the page about the configuration.

namespace {

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

// The blocks of text on the page.
std::vector<std::string> readBlocks() {
    std::istringstream page(contentOf(CONFIGURATION_PAGE));
    std::vector<std::string> blocks;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```")) {
            isInside = !isInside;
            blocks.resize(blocks.size() + (isInside ? 1 : 0));
        } else if (isInside) {
            blocks.back() += line + "\n";
        }
    }
    return blocks;
}

class DocumentedConfigurationTest : public EndToEndTest {
protected:
    void write(std::uint32_t elements, const Bytes& value) {
        TestClient client;
        client.Exchange(*simulator, velmarRequest({registerDataref(1, 4, elements, "kyr/lamps"),
                                                   writeDataref(1, value)}));
    }

    const std::vector<std::string> blocks = readBlocks();
};

TEST_F(DocumentedConfigurationTest, PublishesTheDatarefsOfTheExample) {
    directory.Write(kConfigFile, blocks.at(0));
    startSimulator();
    EXPECT_EQ(simulator->Get("kyr/cockpit_light"), "0");
    EXPECT_EQ(simulator->Get("kyr/lamps"), "0,0,0,0,0,0,0,0,0");
    write(9, join({u32(1), u32(1), u32(1), u32(1), u32(1), u32(1), u32(1), u32(1), u32(1)}));
    EXPECT_EQ(simulator->Get("kyr/lamps"), "0,0,0,0,0,0,0,0,0");
    write(8, join({u32(1), u32(1), u32(1), u32(1), u32(1), u32(1), u32(1), u32(1)}));
    EXPECT_EQ(simulator->Get("kyr/lamps"), "1,1,1,1,1,1,1,1,0");
}

TEST_F(DocumentedConfigurationTest, LeavesTheFileOfTheFirstStart) {
    orvane::headless::Simulator().load(PLUGIN);
    EXPECT_EQ(directory.Read(kConfigFile) + "\n", blocks.at(1));
}

// The line on the page without the plugin's name and the time.
TEST_F(DocumentedConfigurationTest, LogsTheLineOfThePage) {
    startSimulator();
    TestClient client;
    client.Exchange(*simulator, tarnelRequest(dataMessage({{9, 1}})));
    const std::string message = simulator->LastLogMessage();
    EXPECT_TRUE(message.starts_with("WARNING@")) << message;
    EXPECT_TRUE(blocks.at(2).ends_with(" " + message + "\n")) << message;
}

} // namespace
