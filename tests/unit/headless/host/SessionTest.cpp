#include <string>

#include <gtest/gtest.h>

#include "headless/host/Session.h"
#include "headless/lists/TextLines.h"
#include "support/TemporaryDirectory.h"

using headless::Command;
using headless::PluginError;
using headless::Session;
using headless::SessionOptions;
using headless::TextFileError;

class SessionTest : public ::testing::Test {
protected:
    SessionOptions options() const {
        SessionOptions options;
        options.plugins = {FAKE_PLUGIN};
        options.logFile = folder.Path("Log.txt");
        return options;
    }

    TemporaryDirectory folder;
};

TEST_F(SessionTest, StartsThePluginAndSendsItTheMessagesAboutTheAircraft) {
    Session session(options());
    session.StartPlugins();
    EXPECT_EQ(folder.Read("Log.txt"),
              "start\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 103 0 from "
              "0\nmessage 104 0 from 0\n");
    EXPECT_EQ(session.Simulator().Datarefs().GetText("sim/aircraft/view/acf_descrip"),
              "Orvane Trainer, light single");
}

TEST_F(SessionTest, LoadsAndUnloadsAircraft) {
    Session session(options());
    session.StartPlugins();
    session.LoadAircraft("Another");
    session.UnloadAircraft();
    EXPECT_EQ(session.Simulator().Datarefs().GetText("sim/aircraft/view/acf_descrip"), "Another");
    EXPECT_EQ(
        folder.Read("Log.txt"),
        "start\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 103 0 from 0\nmessage "
        "104 0 from 0\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 106 0 from 0\n");
}

TEST_F(SessionTest, AFrameMovesTheAircraftAndRunsThePlugin) {
    Session session(options());
    session.StartPlugins();
    const double start =
        session.Simulator().Datarefs().GetDouble("sim/flightmodel/position/latitude");
    session.RunFrame();
    session.RunFrame();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 2);
    EXPECT_EQ(session.Statistics().Frames(), 2);
    EXPECT_GT(session.Simulator().Datarefs().GetDouble("sim/flightmodel/position/latitude"), start);
    EXPECT_NEAR(session.Simulator().Datarefs().GetFloat("sim/time/total_running_time_sec"),
                2.0F / 60, 1e-6F);
}

TEST_F(SessionTest, ReloadingStartsThePluginAfresh) {
    Session session(options());
    session.StartPlugins();
    session.RunFrame();
    session.ReloadPlugin();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 0);
    EXPECT_EQ(folder.Read("Log.txt"),
              "start\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 103 0 from "
              "0\nmessage 104 0 from 0\ndisable\nstop\n"
              "start\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 103 0 from "
              "0\nmessage 104 0 from 0\n");
}

TEST_F(SessionTest, APluginsRequestForAReloadIsMetAfterTheFrame) {
    Session session(options());
    session.StartPlugins();
    XPLMReloadPlugins();
    session.RunFrame();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 0);
    session.RunFrame();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 1);
}

TEST_F(SessionTest, ARequestedReloadOfAPluginThatStaysStartsItAgain) {
    SessionOptions sticky = options();
    sticky.plugins = {STICKY_PLUGIN};
    Session session(sticky);
    session.StartPlugins();
    XPLMReloadPlugins();
    session.RunFrame();
    session.RunFrame();
    EXPECT_NE(folder.Read("Log.txt").find(
                  "headless-sim: " STICKY_PLUGIN
                  " stays in the process after it was unloaded, so its variables keep their "
                  "values\nstart\n"),
              std::string::npos);
    EXPECT_TRUE(session.Plugin().IsEnabled());
}

TEST_F(SessionTest, AHandleOfAPluginsDatarefStaysValidAcrossAReload) {
    Session session(options());
    session.StartPlugins();
    const XPLMDataRef counter = XPLMFindDataRef("fake/counter");
    session.RunFrame();
    EXPECT_EQ(XPLMGetDatai(counter), 1);
    session.UnloadPlugins();
    EXPECT_EQ(XPLMGetDatai(counter), 0);
    EXPECT_EQ(XPLMIsDataRefGood(counter), 0);
    session.StartPlugins();
    session.RunFrame();
    session.RunFrame();
    EXPECT_EQ(XPLMGetDatai(counter), 2);
}

TEST_F(SessionTest, ADisabledPluginsFlightLoopWaits) {
    Session session(options());
    session.StartPlugins();
    session.RunFrame();
    session.Plugin().Disable();
    session.RunFrame();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 0) << "it is disabled";
    session.Plugin().Enable();
    EXPECT_EQ(session.Simulator().Datarefs().GetInt("fake/counter"), 1);
}

TEST_F(SessionTest, ADisabledPluginGetsNoCallsUntilItIsEnabled) {
    Session session(options());
    session.StartPlugins();
    session.Plugin().Disable();
    const std::string before = folder.Read("Log.txt");
    session.LoadAircraft("Another");
    Command& command = *session.Simulator().Commands().Lookup("fake/command");
    session.Simulator().Commands().Once(&command);
    EXPECT_EQ(command.passedOn[xplm_CommandBegin], 1U) << "its handler swallows it";
    EXPECT_EQ(folder.Read("Log.txt"), before);
    session.Plugin().Enable();
    session.Simulator().Commands().Once(&command);
    EXPECT_EQ(command.passedOn[xplm_CommandBegin], 1U);
    EXPECT_EQ(folder.Read("Log.txt"), before + "enable\ncommand phase 0\ncommand phase 2\n");
}

TEST_F(SessionTest, AReloadLeavesNoMenuItemsBehind) {
    SessionOptions withMenu = options();
    withMenu.plugins = {ASKING_PLUGIN};
    Session session(withMenu);
    session.StartPlugins();
    session.ReloadPlugin();
    XPLMReloadPlugins();
    session.RunFrame();
    const auto& items = session.Simulator().PluginsMenu().Items();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items.front().text, "Asking");
    session.UnloadPlugins();
    EXPECT_TRUE(session.Simulator().PluginsMenu().Items().empty());
}

TEST_F(SessionTest, APluginThatCannotBeUnloadedCannotBeReloaded) {
    SessionOptions sticky = options();
    sticky.plugins = {STICKY_PLUGIN};
    Session session(sticky);
    session.StartPlugins();
    EXPECT_THROW(session.ReloadPlugin(), PluginError);
}

TEST_F(SessionTest, AfterUnloadingThereIsNoPlugin) {
    Session session(options());
    session.StartPlugins();
    EXPECT_TRUE(session.UnloadPlugins().empty());
    EXPECT_THROW(session.Plugin(), PluginError);
    session.RunFrame();
    EXPECT_TRUE(session.UnloadPlugins().empty());
}

TEST_F(SessionTest, ListsFromFilesComeBeforeTheBuiltInOnesAndTheFirstOfTwoCounts) {
    SessionOptions withFiles = options();
    withFiles.world.datarefsFile = folder.Write("DataRefs.txt",
                                                "sim/time/paused\tdouble\ty\n"
                                                "my/one\tint[3]\tn\n"
                                                "my/one\tfloat\ty\n");
    withFiles.world.commandsFile = folder.Write("Commands.txt", "my/command  Does it.\n");
    Session session(withFiles);
    auto& datarefs = session.Simulator().Datarefs();
    EXPECT_EQ(datarefs.Lookup("sim/time/paused")->Definition().types,
              xplmType_Double | xplmType_Float);
    EXPECT_EQ(datarefs.GetIntArray("my/one").size(), 3U);
    EXPECT_NE(datarefs.Lookup("sim/flightmodel/position/latitude"), nullptr);
    EXPECT_EQ(session.Simulator().Commands().Lookup("my/command")->description, "Does it.");
}

TEST_F(SessionTest, BadFilesAreReported) {
    SessionOptions missing = options();
    missing.world.datarefsFile = folder.Path("none.txt");
    EXPECT_THROW(Session{missing}, TextFileError);
    SessionOptions malformed = options();
    malformed.world.commandsFile = folder.Write("Commands.txt", "word\n");
    EXPECT_THROW(Session{malformed}, TextFileError);
    SessionOptions noLog = options();
    noLog.logFile = folder.Path("none/Log.txt");
    EXPECT_THROW(Session{noLog}, std::runtime_error);
}
