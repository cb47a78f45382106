#include <unistd.h>

#include <array>

#include "e2e/HeardSimulatorTest.h"
#include "e2e/ToolRun.h"

namespace {

class DiscoverTest : public HeardSimulatorTest {
protected:
    // Listens for a second at a time, until a simulator is heard.
    static ToolResult discover(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"discover", "-T", "1"});
        ToolResult result;
        for (int tries = 0; tries < 20 && result.out.empty(); ++tries) {
            result = runTool(arguments);
        }
        return result;
    }

    static std::string computer() {
        std::array<char, 256> name{};
        ::gethostname(name.data(), name.size() - 1);
        return name.data();
    }
};

TEST_F(DiscoverTest, ListsWhatIsHeard) {
    const ToolResult result = discover({});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              "127.0.0.1        " + computer() + "  master  version 121400  port 48000 answers\n");
    EXPECT_EQ(discover({"--json", "--port", "48001"}).out,
              "{\"address\":\"127.0.0.1\",\"computer\":\"" + computer() +
                  "\",\"version\":121400,\"role\":\"master\",\"plugin\":false}\n");
}

TEST_F(DiscoverTest, TheHostAutoIsTheSimulatorThatIsHeard) {
    const ToolResult info = runTool({"info", "--host", "auto"});
    EXPECT_TRUE(info.out.starts_with("server      127.0.0.1:48000\n")) << info.out << info.err;
    EXPECT_EQ(runTool({"set", "test/int:int=4", "--host", "auto"}).exitCode, 0);
    EXPECT_EQ(runTool({"get", "test/int:int", "--host", "auto"}).out, "4\n");
}

TEST_F(DiscoverTest, SaysThatNothingWasHeard) {
    simulator.reset();
    const ToolResult result = runTool({"discover", "-T", "0.1"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "orvane: no simulator was heard within 0.1 s\n");
}

} // namespace
