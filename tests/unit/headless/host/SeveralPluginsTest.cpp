#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/scenario/Statement.h"
#include "support/TemporaryDirectory.h"

using headless::Flight;
using headless::PluginError;
using headless::replyTo;
using headless::Session;
using headless::SessionOptions;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class SeveralPluginsTest : public ::testing::Test {
protected:
    void start(std::vector<std::string> plugins) {
        SessionOptions options;
        options.plugins = std::move(plugins);
        options.logFile = folder.Path("Log.txt");
        options.paused = true;
        session = std::make_unique<Session>(options);
        session->StartPlugins();
        flight = std::make_unique<Flight>(*session, [this] {
            session->RunFrame();
            return true;
        });
    }

    std::string say(const std::string& line) { return replyTo(line, *flight); }
    // Without what the simulator says about it.
    std::string log() const {
        std::istringstream lines(folder.Read("Log.txt"));
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            text += line.starts_with("headless-sim: ") ? "" : line + "\n";
        }
        return text;
    }
    // What the log got since the last call.
    std::string news() {
        const std::string all = log();
        std::string added = all.substr(seen);
        seen = all.size();
        return added;
    }

    TemporaryDirectory folder;
    std::unique_ptr<Session> session;
    std::unique_ptr<Flight> flight;
    std::size_t seen = 0;
};

TEST_F(SeveralPluginsTest, AllAreStartedBeforeTheFirstOneIsEnabledAndLeaveInReverse) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    EXPECT_THAT(news(), StartsWith("start\nneighbour: start\nenable\nneighbour: enable\n"));
    session->UnloadPlugins();
    EXPECT_EQ(news(), "neighbour: disable\ndisable\nneighbour: stop\nstop\n");
}

TEST_F(SeveralPluginsTest, EachHasAnIdAndMessagesCarryTheSenders) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    EXPECT_EQ(say("plugins"), "plugins 1 fake_plugin enabled; 2 neighbour_plugin enabled");
    EXPECT_THAT(log(), HasSubstr("message 33554432 0 from 2\n"));
}

TEST_F(SeveralPluginsTest, OneIsDisabledWhileTheOtherFliesOn) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    say("step 2");
    EXPECT_EQ(say("get neighbour/fake_counter"), "neighbour/fake_counter = 2");
    EXPECT_EQ(say("disable fake_plugin"), "ok");
    EXPECT_EQ(say("plugins"), "plugins 1 fake_plugin disabled; 2 neighbour_plugin enabled");
    say("step 2");
    EXPECT_EQ(say("get neighbour/fake_counter"), "neighbour/fake_counter = 0");
    EXPECT_EQ(say("enable headless.tests.fake"), "ok");
    say("step 1");
    EXPECT_EQ(say("get neighbour/fake_counter"), "neighbour/fake_counter = 3");
}

TEST_F(SeveralPluginsTest, OneIsReloadedAndTheOthersHandleLeadsToItAgain) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    say("step 3");
    say("aircraft load Another");
    news();
    EXPECT_EQ(say("reload fake_plugin"), "ok");
    EXPECT_EQ(news(),
              "disable\nstop\nstart\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\n"
              "message 103 0 from 0\nmessage 104 0 from 0\n");
    EXPECT_EQ(say("plugins"), "plugins 3 fake_plugin enabled; 2 neighbour_plugin enabled");
    EXPECT_EQ(say("get sim/aircraft/view/acf_descrip"), "sim/aircraft/view/acf_descrip = Another");
    say("step 1");
    EXPECT_EQ(say("get neighbour/fake_counter"), "neighbour/fake_counter = 1");
    EXPECT_EQ(say("stop fake_plugin"), "ok");
    EXPECT_EQ(say("get neighbour/fake_counter"), "neighbour/fake_counter = -1");
    EXPECT_EQ(say("plugins"), "plugins fake_plugin stopped; 2 neighbour_plugin enabled");
}

TEST_F(SeveralPluginsTest, ANameIsNeededAndMustBeKnown) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    EXPECT_EQ(say("disable"), "error: there are several plugins; name one of them");
    EXPECT_EQ(say("reload other"), "error: no plugin is called \"other\"");
}

TEST_F(SeveralPluginsTest, TwoOfOneNameAreToldApartByTheirPaths) {
    const std::string copy = folder.Path("neighbour_plugin.xpl");
    std::filesystem::copy(FAKE_PLUGIN, copy);
    start({NEIGHBOUR_PLUGIN, copy});
    EXPECT_EQ(say("disable neighbour_plugin"),
              "error: several plugins are called \"neighbour_plugin\"; name one by its path");
    EXPECT_EQ(say("disable " + copy), "ok");
    EXPECT_EQ(say("plugins"), "plugins 1 neighbour_plugin enabled; 2 neighbour_plugin disabled");
}

TEST_F(SeveralPluginsTest, OnePluginIsNotLoadedTwice) {
    EXPECT_THROW(start({FAKE_PLUGIN, FAKE_PLUGIN}), PluginError);
}

TEST_F(SeveralPluginsTest, AReloadThatAPluginAskedForIsOfAll) {
    start({FAKE_PLUGIN, NEIGHBOUR_PLUGIN});
    news();
    XPLMReloadPlugins();
    say("step 1");
    EXPECT_THAT(news(), StartsWith("neighbour: disable\ndisable\nneighbour: stop\nstop\n"
                                   "start\nneighbour: start\nenable\nneighbour: enable\n"));
}

TEST_F(SeveralPluginsTest, OneThatRefusesEndsTheStartAndTheOthersLeave) {
    EXPECT_THROW(start({FAKE_PLUGIN, REFUSING_PLUGIN}), PluginError);
    session.reset();
    EXPECT_EQ(log(), "start\nstop\n");
}
