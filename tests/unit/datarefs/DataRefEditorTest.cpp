#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DatarefProviderFixture.h"
#include "datarefs/DatarefProvider.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DataRefEditorTest : public DatarefProviderFixture {
protected:
    void loadEditor() {
        editor = simulator.Plugins().AddPlugin("xplanesdk.examples.DataRefEditor");
    }

    std::vector<std::string> announced() {
        std::vector<std::string> names;
        for (const auto& message : simulator.Plugins().Messages()) {
            EXPECT_EQ(message.plugin, editor);
            EXPECT_EQ(message.message, 0x01000000);
            names.push_back(message.text);
        }
        return names;
    }

    std::vector<std::string> lookUps() {
        std::vector<std::string> signatures;
        for (const auto& call : simulator.Recorder().CallsOf("XPLMFindPluginBySignature")) {
            signatures.push_back(call.arguments);
        }
        return signatures;
    }

    XPLMPluginID editor = XPLM_NO_PLUGIN_ID;
};

TEST_F(DataRefEditorTest, HearsOfTheDatarefsOfTheStartInAscendingOrderOnTheFirstFlightLoop) {
    loadEditor();
    provider->RegisterInt("kyr/b");
    provider->RegisterFloat("kyr/a");
    provider->RegisterIntArray(2, "kyr/c");
    EXPECT_THAT(announced(), IsEmpty());
    EXPECT_THAT(lookUps(), IsEmpty());
    provider->ProcessFlightLoop();
    EXPECT_THAT(announced(), ElementsAre("kyr/a", "kyr/b", "kyr/c"));
}

TEST_F(DataRefEditorTest, HearsOfNamesInTheOrderOfTheirBytes) {
    loadEditor();
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/Z");
    provider->RegisterInt("kyr/\xC3\xA4");
    provider->RegisterInt("abc");
    provider->ProcessFlightLoop();
    EXPECT_THAT(announced(), ElementsAre("abc", "kyr/Z", "kyr/a", "kyr/\xC3\xA4"));
}

TEST_F(DataRefEditorTest, HearsOfALaterDatarefDuringItsRegistration) {
    loadEditor();
    provider->ProcessFlightLoop();
    EXPECT_THAT(announced(), IsEmpty());
    provider->RegisterFloat("kyr/z");
    EXPECT_THAT(announced(), ElementsAre("kyr/z"));
    provider->RegisterDouble("kyr/a");
    EXPECT_THAT(announced(), ElementsAre("kyr/z", "kyr/a"));
}

TEST_F(DataRefEditorTest, HearsNothingOfARefusedRegistration) {
    loadEditor();
    simulator.Datarefs().RefuseRegistration("kyr/b");
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/b");
    provider->ProcessFlightLoop();
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/b");
    EXPECT_THAT(announced(), ElementsAre("kyr/a"));
}

TEST_F(DataRefEditorTest, HearsNothingOnTheSecondAndLaterFlightLoops) {
    loadEditor();
    provider->RegisterInt("kyr/a");
    provider->ProcessFlightLoop();
    simulator.Recorder().Clear();
    provider->ProcessFlightLoop();
    provider->ProcessFlightLoop();
    EXPECT_THAT(announced(), ElementsAre("kyr/a")) << "on the first";
    EXPECT_THAT(lookUps(), IsEmpty());
}

TEST_F(DataRefEditorTest, IsLookedUpForEveryNameOfTheStart) {
    loadEditor();
    provider->RegisterInt("kyr/a");
    provider->RegisterInt("kyr/b");
    provider->ProcessFlightLoop();
    EXPECT_THAT(lookUps(), ElementsAre("xplanesdk.examples.DataRefEditor",
                                       "xplanesdk.examples.DataRefEditor"));
}

TEST_F(DataRefEditorTest, IsOnlyLookedUpWhenItIsNotLoaded) {
    simulator.Plugins().AddPlugin("another.plugin");
    provider->RegisterInt("kyr/a");
    provider->ProcessFlightLoop();
    provider->RegisterInt("kyr/b");
    EXPECT_THAT(lookUps(), ElementsAre("xplanesdk.examples.DataRefEditor",
                                       "xplanesdk.examples.DataRefEditor"));
    EXPECT_THAT(announced(), IsEmpty());
    EXPECT_EQ(simulator.Recorder().Refusals(headless::Refusal::UnknownPlugin), 0U);
}

TEST_F(DataRefEditorTest, HearsNothingOfTheStartIfLoadedAfterTheFirstFlightLoop) {
    provider->RegisterInt("kyr/a");
    provider->ProcessFlightLoop();
    loadEditor();
    provider->ProcessFlightLoop();
    EXPECT_THAT(announced(), IsEmpty());
    provider->RegisterInt("kyr/b");
    EXPECT_THAT(announced(), ElementsAre("kyr/b"));
}

TEST_F(DataRefEditorTest, HearsOfOneNameThatIsAnnouncedByItself) {
    loadEditor();
    provider->notifyDataRefEditor("kyr/by itself");
    EXPECT_THAT(announced(), ElementsAre("kyr/by itself"));
}

} // namespace
