#include <array>
#include <string>

#include <gtest/gtest.h>

#include "XPLMDisplay.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/display/Keyboard.h"

using headless::Refusal;
using headless::Simulator;

namespace {

std::string events;

int sniffAndPass(char key, XPLMKeyFlags /*flags*/, char /*virtualKey*/, void* refcon) {
    events += static_cast<const char*>(refcon);
    events += key;
    events += ' ';
    return 1;
}

int swallow(char /*key*/, XPLMKeyFlags /*flags*/, char /*virtualKey*/, void* /*refcon*/) {
    return 0;
}

int sniffOnce(char /*key*/, XPLMKeyFlags /*flags*/, char /*virtualKey*/, void* refcon) {
    XPLMUnregisterKeySniffer(&sniffAndPass, 1, refcon);
    return 1;
}

void onHotKey(void* /*refcon*/) {
    events += "hot ";
}

char before[] = "before:";
char after[] = "after:";

} // namespace

class KeyboardTest : public ::testing::Test {
protected:
    KeyboardTest() { events.clear(); }

    Simulator sim;
};

TEST_F(KeyboardTest, AKeyPassesSniffersBeforeItReachesAHotKey) {
    EXPECT_EQ(XPLMRegisterKeySniffer(&sniffAndPass, 0, after), 1);
    EXPECT_EQ(XPLMRegisterKeySniffer(&sniffAndPass, 1, before), 1);
    XPLMRegisterHotKey('K', xplm_ControlFlag, "A key", &onHotKey, nullptr);
    sim.Keyboard().Press('k', xplm_DownFlag | xplm_ControlFlag, 'K');
    EXPECT_EQ(events, "before:k after:k hot ");
}

TEST_F(KeyboardTest, ASnifferMaySwallowAKey) {
    XPLMRegisterKeySniffer(&swallow, 1, nullptr);
    XPLMRegisterKeySniffer(&sniffAndPass, 0, after);
    sim.Keyboard().Press('k', xplm_DownFlag, 'K');
    EXPECT_EQ(events, "");
    EXPECT_EQ(XPLMUnregisterKeySniffer(&swallow, 1, nullptr), 1);
    EXPECT_EQ(XPLMUnregisterKeySniffer(&swallow, 1, nullptr), 0);
    sim.Keyboard().Press('k', xplm_DownFlag, 'K');
    EXPECT_EQ(events, "after:k ");
}

TEST_F(KeyboardTest, AHotKeyWantsItsModifiersAndItsDirection) {
    const XPLMHotKeyID key = XPLMRegisterHotKey('K', xplm_ShiftFlag, "A key", &onHotKey, nullptr);
    sim.Keyboard().Press('k', xplm_DownFlag, 'K');
    sim.Keyboard().Press('k', xplm_UpFlag | xplm_ShiftFlag, 'K');
    EXPECT_EQ(events, "");
    sim.Keyboard().Press('k', xplm_DownFlag | xplm_ShiftFlag, 'K');
    EXPECT_EQ(events, "hot ");
    XPLMSetHotKeyCombination(key, XPLM_VK_F1, xplm_UpFlag);
    sim.Keyboard().Press(0, xplm_UpFlag, XPLM_VK_F1);
    EXPECT_EQ(events, "hot hot ");
}

TEST_F(KeyboardTest, HotKeysAreListed) {
    const XPLMHotKeyID key = XPLMRegisterHotKey('K', xplm_ShiftFlag, "A key", &onHotKey, nullptr);
    ASSERT_EQ(XPLMCountHotKeys(), 1);
    EXPECT_EQ(XPLMGetNthHotKey(0), key);
    EXPECT_EQ(XPLMGetNthHotKey(1), nullptr);
    char virtualKey = 0;
    XPLMKeyFlags flags = 0;
    std::array<char, 512> description{};
    XPLMPluginID plugin = -1;
    XPLMGetHotKeyInfo(key, &virtualKey, &flags, description.data(), &plugin);
    EXPECT_EQ(virtualKey, 'K');
    EXPECT_EQ(flags, xplm_ShiftFlag);
    EXPECT_STREQ(description.data(), "A key");
    EXPECT_EQ(plugin, XPLM_PLUGIN_XPLANE);
    XPLMUnregisterHotKey(key);
    EXPECT_EQ(XPLMCountHotKeys(), 0);
}

TEST_F(KeyboardTest, ADrawCallbackIsKeptOnce) {
    const auto callback = [](XPLMDrawingPhase, int, void*) { return 1; };
    EXPECT_EQ(XPLMRegisterDrawCallback(callback, xplm_Phase_Window, 0, nullptr), 1);
    EXPECT_EQ(XPLMUnregisterDrawCallback(callback, xplm_Phase_Window, 1, nullptr), 0);
    EXPECT_EQ(XPLMUnregisterDrawCallback(callback, xplm_Phase_Window, 0, nullptr), 1);
    EXPECT_EQ(XPLMRegisterDrawCallback(nullptr, xplm_Phase_Window, 0, nullptr), 0);
}

TEST_F(KeyboardTest, ASnifferThatIsGoneGetsNoKey) {
    XPLMRegisterKeySniffer(&sniffOnce, 1, before);
    XPLMRegisterKeySniffer(&sniffAndPass, 1, before);
    sim.Keyboard().Press('k', xplm_DownFlag, 'K');
    EXPECT_EQ(events, "");
}
