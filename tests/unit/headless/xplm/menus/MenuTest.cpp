#include <gtest/gtest.h>

#include "XPLMMenus.h"
#include "headless/xplm/Simulator.h"

using headless::Refusal;
using headless::Simulator;

class MenuTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(MenuTest, AppendsItemsToThePluginsMenu) {
    int reference = 0;
    const XPLMMenuID menu = XPLMFindPluginsMenu();
    EXPECT_EQ(XPLMAppendMenuItem(menu, "First", nullptr, 1), 0);
    EXPECT_EQ(XPLMAppendMenuItem(menu, "Second", &reference, 1), 1);
    ASSERT_EQ(sim.PluginsMenu().Items().size(), 2U);
    EXPECT_EQ(sim.PluginsMenu().Items()[0].text, "First");
    EXPECT_EQ(sim.PluginsMenu().Items()[1].reference, &reference);
}

TEST_F(MenuTest, AnotherMenuIsRefused) {
    int other = 0;
    EXPECT_EQ(XPLMAppendMenuItem(nullptr, "Item", nullptr, 1), -1);
    EXPECT_EQ(XPLMAppendMenuItem(&other, "Item", nullptr, 1), -1);
    EXPECT_TRUE(sim.PluginsMenu().Items().empty());
    EXPECT_EQ(sim.Recorder().NullHandleCalls(), 1U);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
}

TEST_F(MenuTest, ANullTextIsRefused) {
    EXPECT_EQ(XPLMAppendMenuItem(XPLMFindPluginsMenu(), nullptr, nullptr, 1), -1);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NullText), 1U);
}
