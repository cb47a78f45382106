#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tarnel/HeldInputs.h"

namespace {

using namespace orvane::tarnel;
using orvane::detail::HeldCommands;

const ConditionDataref kPaused{"sim/time/paused", ConditionDataref::Type::Int};

class HeldInputsTest : public testing::Test {
protected:
    void follow(const std::vector<Input>& inputs) {
        Definitions definitions;
        for (const Input& input : inputs) {
            definitions.add(input);
        }
        held.follow(definitions);
    }

    void exchange(const std::vector<Item>& items) {
        held.sending(items);
        held.sent(items);
    }

    std::string releases() const {
        std::string text;
        for (const Item& item : held.releases()) {
            text += std::to_string(item.action) + "=" + std::to_string(item.value) + ";";
        }
        return text;
    }

    // "a:2" for a command that is down twice, "a?1" for one that may be down.
    std::string account() const {
        HeldCommands commands;
        held.addTo(commands);
        std::string text;
        for (const auto& [name, times] : commands.all()) {
            text += times.begun > 0 ? name + ":" + std::to_string(times.begun) + ";" : "";
            text += times.perhaps > 0 ? name + "?" + std::to_string(times.perhaps) + ";" : "";
        }
        return text;
    }

    static Input heldCommand(ActionId action, const char* name) {
        return Input::toCommand(action, name).held();
    }

    HeldInputs held;
};

TEST(HeldCommandsTest, KeepsWhatMayBeDownWhenTheRestHasEnded) {
    HeldCommands commands;
    commands.begin("a");
    commands.beginPerhaps("a");
    commands.end("a");
    EXPECT_EQ(commands.names(), std::vector<std::string>{"a"});
}

TEST_F(HeldInputsTest, FollowsHeldCommandsOnly) {
    follow({heldCommand(1, "a"), Input::toCommand(2, "b"), Input::toInt(3, "c")});
    exchange({{1, 1}, {2, 1}, {3, 1}});
    EXPECT_EQ(account(), "a:1;");
    EXPECT_EQ(releases(), "1=0;");
    exchange({{1, 7}}); // whatever is not 1 releases
    EXPECT_EQ(account(), "");
    EXPECT_EQ(releases(), "");
}

TEST_F(HeldInputsTest, CountsInputsThatHoldTheSameCommandButNotTheirRepeatedPresses) {
    follow({heldCommand(1, "a"), heldCommand(1, "a"), heldCommand(2, "a"), heldCommand(3, "b")});
    exchange({{1, 1}, {1, 1}, {2, 1}, {3, 1}, {3, 0}});
    EXPECT_EQ(account(), "a:3;");
    EXPECT_EQ(releases(), "1=0;2=0;");
    exchange({{2, 0}});
    EXPECT_EQ(account(), "a:2;");
}

TEST_F(HeldInputsTest, CountsAnUnansweredPressButNotAnUnansweredRelease) {
    follow({heldCommand(1, "a")});
    held.sending(std::vector<Item>{{1, 1}});
    EXPECT_EQ(account(), "a:1;");
    held.sending(std::vector<Item>{{1, 0}});
    EXPECT_EQ(account(), "a:1;");
}

TEST_F(HeldInputsTest, KnowsWhichValuesAreSkipped) {
    follow({heldCommand(1, "a").skippedWhenOne(), heldCommand(2, "b").skippedWhenZero()});
    exchange({{1, 1}, {2, 1}});
    EXPECT_EQ(account(), "b:1;");
    exchange({{2, 0}});
    EXPECT_EQ(account(), "b:1;");
    EXPECT_EQ(releases(), ""); // a 0 would be skipped
    exchange({{2, 2}});
    EXPECT_EQ(account(), "");
}

TEST_F(HeldInputsTest, KnowsThatAFixedValueIsAlwaysTheSame) {
    follow({heldCommand(1, "a").fixed(1), heldCommand(2, "b").fixed(0)});
    exchange({{1, 0}, {2, 1}});
    EXPECT_EQ(account(), "a:1;");
    EXPECT_EQ(releases(), "");
}

TEST_F(HeldInputsTest, DoesNotKnowWhatADatarefMakesTheServerSkip) {
    follow({heldCommand(1, "a").skippedWhilePositive(kPaused),
            heldCommand(2, "b").skippedWhileZero(kPaused)});
    EXPECT_EQ(account(), "");
    exchange({{1, 0}});
    EXPECT_EQ(account(), "");
    exchange({{1, 1}, {2, 1}});
    EXPECT_EQ(account(), "a?1;b?1;");
    EXPECT_EQ(releases(), "");
    exchange({{1, 0}, {2, 0}});
    EXPECT_EQ(account(), "a?1;b?1;");
    held.forgetAll();
    EXPECT_EQ(account(), "");
}

} // namespace
