// The simulator as other people's tests use it. This program has the sources of the fake plugin
// linked in, and loads the same as a file.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMMenus.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "orvane/headless/Simulator.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using orvane::headless::Plugin;
using orvane::headless::PluginError;
using orvane::headless::Simulator;
using orvane::headless::Type;
using orvane::headless::World;
using testing::ElementsAre;

namespace {

const std::vector<std::string> kStartOfFake{
    "start",
    "enable",
    "message 102 0 from 0",
    "message 108 0 from 0",
    "message 103 0 from 0",
    "message 104 0 from 0",
};

} // namespace

class LibrarySimulatorTest : public testing::Test {
protected:
    Simulator sim;
};

TEST_F(LibrarySimulatorTest, LoadsAPluginsFileAndTakesItThroughItsLife) {
    Plugin& plugin = sim.load(FAKE_PLUGIN);
    EXPECT_EQ(plugin.name(), "Fake");
    EXPECT_EQ(plugin.signature(), "headless.tests.fake");
    EXPECT_EQ(plugin.description(), "A plugin for tests.");
    EXPECT_TRUE(plugin.isEnabled());
    EXPECT_EQ(sim.log(), kStartOfFake);
    EXPECT_TRUE(sim.unload(plugin));
    EXPECT_EQ(sim.log().back(), "stop");
    EXPECT_FALSE(sim.hasDataref("fake/counter"));
}

TEST_F(LibrarySimulatorTest, StartsThePluginThatIsLinkedToTheProgram) {
    Plugin& plugin = sim.start();
    EXPECT_EQ(sim.log(), kStartOfFake);
    const double before = sim.number("fake/counter");
    sim.runFrames(3);
    EXPECT_EQ(sim.number("fake/counter"), before + 3);
    EXPECT_TRUE(sim.unload(plugin));
    EXPECT_EQ(sim.log().back(), "stop");
}

TEST_F(LibrarySimulatorTest, PluginsGoWithTheSimulator) {
    { const Simulator inner; }
    sim.load(FAKE_PLUGIN);
    Simulator another;
    another.load(FAKE_PLUGIN);
    EXPECT_TRUE(another.hasDataref("fake/counter"));
}

TEST_F(LibrarySimulatorTest, ADisabledPluginIsNotCalled) {
    Plugin& plugin = sim.load(FAKE_PLUGIN);
    sim.runFrames();
    plugin.disable();
    EXPECT_FALSE(plugin.isEnabled());
    sim.runFrames(5);
    plugin.send(7);
    plugin.enable();
    EXPECT_EQ(sim.number("fake/counter"), 1);
    plugin.send(9, 42);
    EXPECT_EQ(sim.log().back(), "message 9 42 from 0");
    EXPECT_THROW(plugin.enable(), PluginError);
}

TEST_F(LibrarySimulatorTest, SaysWhyAPluginCannotBeLoaded) {
    EXPECT_EQ(textOf<PluginError>([&] { sim.load("none.xpl"); }),
              "none.xpl: there is no such plugin");
    EXPECT_EQ(textOf<PluginError>([&] { sim.load(REFUSING_PLUGIN); }),
              REFUSING_PLUGIN ": the plugin refused to start");
}

TEST_F(LibrarySimulatorTest, TimeMovesByWholeFrames) {
    EXPECT_EQ(sim.seconds(), 0.0);
    sim.runSeconds(1.0);
    EXPECT_NEAR(sim.seconds(), 1.0, 1e-9);
    sim.runSeconds(0.0);
    EXPECT_NEAR(sim.seconds(), 61.0 / 60, 1e-9);
    EXPECT_NEAR(sim.number("sim/time/total_running_time_sec"), 61.0 / 60, 1e-6);
}

TEST_F(LibrarySimulatorTest, TheWorldStandsStillUnlessItIsToFly) {
    constexpr const char* kLatitude = "sim/flightmodel/position/latitude";
    sim.setNumber(kLatitude, 47.5);
    sim.runFrames(10);
    EXPECT_EQ(sim.number(kLatitude), 47.5);
    Simulator flying({.aircraftFlies = true});
    const double start = flying.number(kLatitude);
    flying.runFrames(10);
    EXPECT_NE(flying.number(kLatitude), start);
}

TEST_F(LibrarySimulatorTest, TheWorldIsWhatWasAskedFor) {
    const TemporaryDirectory folder;
    Simulator old({.datarefsFile = folder.Write("DataRefs.txt", "my/one\tint[3]\tn\n"),
                   .commandsFile = folder.Write("Commands.txt", "my/command  Does it.\n"),
                   .version = 10,
                   .framesPerSecond = 10});
    EXPECT_EQ(old.numbers("my/one").size(), 3U);
    EXPECT_TRUE(old.hasCommand("my/command"));
    EXPECT_EQ(old.numbers("sim/cockpit2/engine/actuators/throttle_ratio").size(), 8U);
    old.runFrames(2);
    EXPECT_NEAR(old.seconds(), 0.2, 1e-9);
    EXPECT_THROW(Simulator({.datarefsFile = "none.txt"}), std::runtime_error);
}

TEST_F(LibrarySimulatorTest, DatarefsOfAllTypesAreReadAndWritten) {
    sim.define("t/int", Type::Int);
    sim.define("t/float", Type::Float);
    sim.define("t/double", Type::Double, 0, false);
    sim.define("t/ints", Type::IntArray, 3);
    sim.define("t/floats", Type::FloatArray, 2);
    sim.define("t/bytes", Type::Bytes, 8);
    sim.setNumber("t/int", 5);
    sim.setNumber("t/float", 0.5);
    sim.setNumber("t/double", 0.1);
    sim.setNumbers("t/ints", {1, 2});
    sim.setNumbers("t/floats", {0.25, 4});
    sim.setText("t/bytes", "abc");
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("t/int")), 5);
    EXPECT_EQ(XPLMGetDataf(XPLMFindDataRef("t/float")), 0.5F);
    EXPECT_EQ(sim.number("t/int"), 5);
    EXPECT_EQ(sim.number("t/float"), 0.5);
    EXPECT_EQ(sim.number("t/double"), 0.1);
    EXPECT_THAT(sim.numbers("t/ints"), ElementsAre(1, 2, 0));
    EXPECT_THAT(sim.numbers("t/floats"), ElementsAre(0.25, 4));
    EXPECT_EQ(sim.text("t/bytes"), "abc");
}

TEST_F(LibrarySimulatorTest, NamesAndTypesThatAreWrongAreSaid) {
    sim.define("t/int", Type::Int);
    EXPECT_EQ(textOf<std::out_of_range>([&] { sim.number("t/none"); }), "t/none: no such dataref");
    EXPECT_EQ(textOf<std::invalid_argument>([&] { sim.text("t/int"); }),
              "t/int: the dataref is of another type");
    EXPECT_EQ(textOf<std::out_of_range>([&] { sim.once("t/none"); }), "t/none: no such command");
    EXPECT_EQ(textOf<std::invalid_argument>([&] { sim.calls("XPLMGetDatf"); }),
              "XPLMGetDatf: the SDK has no such function");
    EXPECT_THROW(sim.define("t/int", Type::Float), std::invalid_argument);
    EXPECT_THROW(sim.click("Nothing"), std::invalid_argument);
}

TEST_F(LibrarySimulatorTest, CommandsAreHeldFromFrameToFrame) {
    sim.defineCommand("t/held", "Held");
    sim.begin("t/held");
    sim.runFrames(2);
    sim.end("t/held");
    sim.once("t/held");
    const auto counts = sim.counts("t/held");
    EXPECT_EQ(counts.begun, 2U);
    EXPECT_EQ(counts.continued, 2U);
    EXPECT_EQ(counts.ended, 2U);
    sim.load(FAKE_PLUGIN);
    sim.once("fake/command");
    EXPECT_EQ(sim.log().back(), "command phase 2");
}

TEST_F(LibrarySimulatorTest, MenusAreListedAndClicked) {
    static std::string chosen;
    const XPLMMenuID plugins = XPLMFindPluginsMenu();
    const int item = XPLMAppendMenuItem(plugins, "Own", nullptr, 0);
    const XPLMMenuID own = XPLMCreateMenu(
        "Own", plugins, item,
        [](void* /*menu*/, void* which) { chosen = static_cast<const char*>(which); }, nullptr);
    char first[] = "first";
    XPLMAppendMenuItem(own, "First", first, 0);
    XPLMAppendMenuSeparator(own);
    XPLMAppendMenuItem(own, "Second", nullptr, 0);
    XPLMCheckMenuItem(own, 0, xplm_Menu_Checked);
    XPLMEnableMenuItem(own, 2, 0);
    const auto items = sim.menu();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].path, "Own");
    EXPECT_EQ(items[1].path, "Own > First");
    EXPECT_TRUE(items[1].checked);
    EXPECT_EQ(items[2].path, "Own > Second");
    EXPECT_FALSE(items[2].enabled);
    EXPECT_FALSE(items[2].checked);
    sim.click("Own > First");
    EXPECT_EQ(chosen, "first");
    EXPECT_THROW(sim.click("Own > Second"), std::invalid_argument);
}

TEST_F(LibrarySimulatorTest, AnAircraftComes) {
    EXPECT_EQ(sim.text("sim/aircraft/view/acf_descrip"), "Orvane Trainer, light single");
    sim.load(FAKE_PLUGIN);
    sim.loadAircraft("Another");
    EXPECT_EQ(sim.text("sim/aircraft/view/acf_descrip"), "Another");
    EXPECT_EQ(sim.log().size(), kStartOfFake.size() + 2);
}

TEST_F(LibrarySimulatorTest, KnowsWhatWasCalled) {
    sim.define("t/float", Type::Float);
    sim.define("t/fixed", Type::Int, 0, false);
    XPLMSetDataf(XPLMFindDataRef("t/float"), 0.5F);
    XPLMSetDatai(XPLMFindDataRef("t/fixed"), 1);
    XPLMGetDataf(nullptr);
    XPLMGetElapsedTime();
    EXPECT_EQ(sim.calls("XPLMFindDataRef"), 2U);
    EXPECT_EQ(sim.calls("XPLMGetDataf"), 1U);
    EXPECT_EQ(sim.calls("XPLMGetElapsedTime"), 1U);
    EXPECT_EQ(sim.calls("XPLMGetDatad"), 0U);
    EXPECT_THAT(sim.trace(), ElementsAre("XPLMFindDataRef(t/float)", "XPLMSetDataf(t/float, 0.5)",
                                         "XPLMFindDataRef(t/fixed)", "XPLMSetDatai(t/fixed, 1)",
                                         "XPLMGetDataf((none))"));
    EXPECT_THAT(sim.mistakes(),
                ElementsAre("XPLMSetDatai: read-only: t/fixed", "XPLMGetDataf: null: dataref"));
    sim.forget();
    EXPECT_EQ(sim.calls("XPLMFindDataRef"), 0U);
    EXPECT_TRUE(sim.trace().empty());
    EXPECT_TRUE(sim.mistakes().empty());
}
