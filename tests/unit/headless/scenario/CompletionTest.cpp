#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/scenario/Completion.h"

using headless::completionsOf;
using headless::Simulator;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class CompletionTest : public ::testing::Test {
protected:
    CompletionTest() {
        for (const char* const name :
             {"sim/time/paused", "sim/time/zulu", "sim/version", "my/own"}) {
            simulator.Datarefs().Define({name, xplmType_Int});
        }
        simulator.Commands().Define("sim/gear/up", "");
        simulator.Plugins().AddPlugin("my.plugin");
    }

    std::vector<std::string> complete(const std::string& before, const std::string& word) {
        return completionsOf(simulator, before, word);
    }

    Simulator simulator;
};

TEST_F(CompletionTest, CompletesStatements) {
    EXPECT_THAT(complete("", "re"), ElementsAre("reload", "resume"));
    EXPECT_THAT(complete("help ", "ex"), ElementsAre("expect"));
    EXPECT_THAT(complete("", "nothing"), IsEmpty());
}

TEST_F(CompletionTest, CompletesNamesPartByPart) {
    EXPECT_THAT(complete("get ", ""), ElementsAre("my/", "sim/"));
    EXPECT_THAT(complete("set ", "sim/"), ElementsAre("sim/time/", "sim/version"));
    EXPECT_THAT(complete("expect ", "sim/time/"), ElementsAre("sim/time/paused", "sim/time/zulu"));
    EXPECT_THAT(complete("wait up to 2s until ", "sim/t"), ElementsAre("sim/time/"));
}

TEST_F(CompletionTest, CompletesCommandsWhereTheyAreNamed) {
    EXPECT_THAT(complete("press ", "sim/gear/"), ElementsAre("sim/gear/up"));
    EXPECT_THAT(complete("command ", ""), UnorderedElementsAre("begin", "end", "once"));
    EXPECT_THAT(complete("command once ", "s"), ElementsAre("sim/"));
}

TEST_F(CompletionTest, CompletesPluginsAndSecondWords) {
    EXPECT_THAT(complete("reload ", "my"), ElementsAre("my.plugin"));
    EXPECT_THAT(complete("aircraft ", "u"), ElementsAre("unload"));
    EXPECT_THAT(complete("log ", ""), ElementsAre("expect"));
    EXPECT_THAT(complete("pause ", ""), IsEmpty());
    EXPECT_THAT(complete("set my/own ", ""), IsEmpty());
}
