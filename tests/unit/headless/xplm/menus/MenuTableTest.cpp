#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "XPLMMenus.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/menus/MenuTable.h"

using headless::PluginContext;
using headless::Refusal;
using headless::Simulator;

namespace {

std::string chosen;

void choose(void* menuRef, void* itemRef) {
    chosen += static_cast<const char*>(menuRef);
    chosen += itemRef == nullptr ? "-" : static_cast<const char*>(itemRef);
}

char own[] = "own:";
char first[] = "first ";

} // namespace

class MenuTableTest : public ::testing::Test {
protected:
    MenuTableTest() { chosen.clear(); }

    XPLMMenuID makeMenu() {
        const XPLMMenuID plugins = XPLMFindPluginsMenu();
        return XPLMCreateMenu("Own", plugins, XPLMAppendMenuItem(plugins, "Own", nullptr, 0),
                              &choose, own);
    }

    Simulator sim;
};

TEST_F(MenuTableTest, AClickCallsTheMenusHandlerWithTheItemsReference) {
    const XPLMMenuID menu = makeMenu();
    EXPECT_EQ(XPLMAppendMenuItem(menu, "First", first, 0), 0);
    XPLMAppendMenuSeparator(menu);
    EXPECT_EQ(XPLMAppendMenuItem(menu, "Third", nullptr, 0), 2);
    sim.Menus().Click("Own > First");
    sim.Menus().Click("Own > Third");
    EXPECT_EQ(chosen, "own:first own:-");
    EXPECT_THROW(sim.Menus().Click("Own > Second"), std::invalid_argument);
    EXPECT_THROW(sim.Menus().Click("None > First"), std::invalid_argument);
}

TEST_F(MenuTableTest, AnItemWithACommandRunsIt) {
    const XPLMCommandRef command = XPLMCreateCommand("t/menu", "From the menu");
    EXPECT_EQ(XPLMAppendMenuItemWithCommand(XPLMFindPluginsMenu(), "Run", command), 0);
    sim.Menus().Click("Run");
    EXPECT_EQ(sim.Commands().Lookup("t/menu")->pressed[xplm_CommandBegin], 1U);
    EXPECT_EQ(sim.Commands().Lookup("t/menu")->pressed[xplm_CommandEnd], 1U);
}

TEST_F(MenuTableTest, ItemsAreRenamedCheckedAndDisabled) {
    const XPLMMenuID menu = makeMenu();
    const int item = XPLMAppendMenuItem(menu, "Old", nullptr, 0);
    XPLMSetMenuItemName(menu, item, "New", 0);
    XPLMMenuCheck check = -1;
    XPLMCheckMenuItemState(menu, item, &check);
    EXPECT_EQ(check, xplm_Menu_NoCheck);
    XPLMCheckMenuItem(menu, item, xplm_Menu_Checked);
    XPLMCheckMenuItemState(menu, item, &check);
    EXPECT_EQ(check, xplm_Menu_Checked);
    XPLMEnableMenuItem(menu, item, 0);
    EXPECT_THROW(sim.Menus().Click("Own > New"), std::invalid_argument);
    XPLMEnableMenuItem(menu, item, 1);
    sim.Menus().Click("Own > New");
    EXPECT_EQ(chosen, "own:-");
}

TEST_F(MenuTableTest, RemovingAnItemMovesTheLaterOnesUp) {
    const XPLMMenuID menu = makeMenu();
    XPLMAppendMenuItem(menu, "A", nullptr, 0);
    XPLMAppendMenuItem(menu, "B", nullptr, 0);
    XPLMRemoveMenuItem(menu, 0);
    XPLMSetMenuItemName(menu, 0, "C", 0);
    sim.Menus().Click("Own > C");
    XPLMRemoveMenuItem(menu, 1);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
    XPLMClearAllMenuItems(menu);
    EXPECT_THROW(sim.Menus().Click("Own > C"), std::invalid_argument);
}

TEST_F(MenuTableTest, ADestroyedMenuIsGoneAndThePluginsMenuStays) {
    const XPLMMenuID menu = makeMenu();
    XPLMDestroyMenu(menu);
    EXPECT_EQ(XPLMAppendMenuItem(menu, "A", nullptr, 0), -1);
    XPLMDestroyMenu(XPLMFindPluginsMenu());
    EXPECT_EQ(XPLMAppendMenuItem(XPLMFindPluginsMenu(), "A", nullptr, 0), 1);
    EXPECT_EQ(XPLMFindAircraftMenu(), nullptr);
}

TEST_F(MenuTableTest, APluginsItemsGoWithItAndThoseOfOthersKeepTheirIndex) {
    const XPLMPluginID leaving = sim.Plugins().AddPlugin("tests.leaving");
    const XPLMPluginID staying = sim.Plugins().AddPlugin("tests.staying");
    const XPLMMenuID menu = XPLMFindPluginsMenu();
    {
        const PluginContext::Call call(sim.Context(), leaving, "test");
        XPLMAppendMenuItem(menu, "Leaving", nullptr, 0);
    }
    const PluginContext::Call call(sim.Context(), staying, "test");
    EXPECT_EQ(XPLMAppendMenuItem(menu, "Staying", nullptr, 0), 0);
    sim.DropRegistrations(leaving);
    ASSERT_EQ(sim.PluginsMenu().Items().size(), 1U);
    XPLMSetMenuItemName(menu, 0, "Still here", 0);
    EXPECT_EQ(sim.PluginsMenu().Items()[0].text, "Still here");
}
