#include <string>

#include <gtest/gtest.h>

#include "XPLMPlugin.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/plugin/PluginRegistry.h"

using headless::Refusal;
using headless::Simulator;

class PluginRegistryTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(PluginRegistryTest, AnUnknownSignatureFindsNoPlugin) {
    EXPECT_EQ(XPLMFindPluginBySignature("tests.none"), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(XPLMFindPluginBySignature(nullptr), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NullText), 1U);
}

TEST_F(PluginRegistryTest, FindsPluginsBySignatureUntilTheyAreRemoved) {
    const XPLMPluginID first = sim.Plugins().AddPlugin("tests.first");
    const XPLMPluginID second = sim.Plugins().AddPlugin("tests.second");
    EXPECT_NE(first, second);
    EXPECT_EQ(XPLMFindPluginBySignature("tests.second"), second);
    sim.Plugins().RemovePlugin(second);
    EXPECT_EQ(XPLMFindPluginBySignature("tests.second"), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(XPLMFindPluginBySignature("tests.first"), first);
}

TEST_F(PluginRegistryTest, RecordsMessagesAndCopiesTheNameOfAnAddedDataref) {
    const XPLMPluginID editor = sim.Plugins().AddPlugin("xplanesdk.examples.DataRefEditor");
    std::string name = "kyr/a";
    int parameter = 0;
    XPLMSendMessageToPlugin(editor, 0x01000000, name.data());
    XPLMSendMessageToPlugin(editor, 5, &parameter);
    name = "gone!";
    const auto& messages = sim.Plugins().Messages();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].plugin, editor);
    EXPECT_EQ(messages[0].message, 0x01000000);
    EXPECT_EQ(messages[0].text, "kyr/a");
    EXPECT_EQ(messages[1].parameter, &parameter);
    EXPECT_EQ(messages[1].text, "");
}

TEST_F(PluginRegistryTest, AMessageToNobodyIsDroppedAndRecorded) {
    XPLMSendMessageToPlugin(77, 5, nullptr);
    EXPECT_TRUE(sim.Plugins().Messages().empty());
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownPlugin), 1U);
}

TEST_F(PluginRegistryTest, AReceiverGetsTheMessageAndMayRemoveItsPlugin) {
    int received = 0;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    id = sim.Plugins().AddPlugin(
        "tests.receiver", {.receive = [&](XPLMPluginID /*from*/, int message, void* /*parameter*/) {
            sim.Plugins().RemovePlugin(id);
            received = message;
        }});
    XPLMSendMessageToPlugin(id, 7, nullptr);
    EXPECT_EQ(received, 7);
}
