// The plugin among others in one simulator.

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/EndToEndTest.h"
#include "orvane/Errors.h"
#include "orvane/Options.h"
#include "orvane/velmar/Client.h"

namespace {

namespace velmar = orvane::velmar;

class SeveralPluginsFlightTest : public EndToEndTest {
protected:
    SeveralPluginsFlightTest() {
        simulator = std::make_unique<SimulatorProcess>(
            std::vector<std::string>{FAKE_PLUGIN, NEIGHBOUR_PLUGIN, "--hz", "200", "--strict"});
        simulator->Ask("run");
    }

    static orvane::Options options() {
        orvane::Options options;
        options.timeout = std::chrono::milliseconds(20'000);
        return options;
    }

    int connectionsLost = 0;
};

TEST_F(SeveralPluginsFlightTest, AClientGoesOnAcrossTheReloadOfAnotherPluginAndOfOurs) {
    velmar::Client client(options());
    client.setCallbacks({.disconnected = [&](const orvane::Error&) { ++connectionsLost; }});
    for (const char* name : {"kyr/autopilot_trigger_disable", "neighbour/trigger",
                             "neighbour/fake_counter", "fake/counter"}) {
        client.registerDataref({name, velmar::Type::Int});
    }
    client.write("kyr/autopilot_trigger_disable", 5);
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(5));

    // Handles of the other plugin's dataref lead to the new one, in ours and in the third.
    EXPECT_EQ(simulator->Ask("reload fake_plugin"), "ok");
    EXPECT_NE(client.read("neighbour/fake_counter"), velmar::Value(-1));
    EXPECT_NE(client.read("fake/counter"), velmar::Value(0));
    EXPECT_EQ(connectionsLost, 0);

    EXPECT_EQ(simulator->Ask("reload XPlaneOrvane"), "ok");
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(0));
    EXPECT_EQ(connectionsLost, 1);
    client.write("kyr/autopilot_trigger_disable", 7);
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(7));
    EXPECT_EQ(simulator->Ask("plugins"),
              "plugins 5 XPlaneOrvane enabled; 4 fake_plugin enabled; 3 neighbour_plugin enabled");
    EXPECT_EQ(simulator->Quit(), 0);
}

TEST_F(SeveralPluginsFlightTest, AnotherPluginThatIsDisabledReadsZeroForAClient) {
    velmar::Client client(options());
    client.registerDataref({"neighbour/trigger", velmar::Type::Int});
    client.registerDataref({"kyr/autopilot_trigger_disable", velmar::Type::Int});
    client.write("kyr/autopilot_trigger_disable", 5);
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(5));
    EXPECT_EQ(simulator->Ask("disable neighbour_plugin"), "ok");
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(0));
    EXPECT_EQ(simulator->Ask("enable neighbour_plugin"), "ok");
    EXPECT_EQ(client.read("neighbour/trigger"), velmar::Value(5));
    EXPECT_EQ(simulator->Quit(), 0);
}

} // namespace
