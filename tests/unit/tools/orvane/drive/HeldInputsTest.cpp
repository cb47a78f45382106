#include "tools/orvane/drive/HeldInputs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using orvane::tarnel::Item;
using orvane::tool::HeldInputs;
using orvane::tool::Profile;
using Names = std::vector<std::string>;

class HeldInputsTest : public testing::Test {
protected:
    HeldInputsTest() {
        profile.inputs = {{"axis", 1, true, {}, 0},
                          {"brakes", 2, false, {"sim/left", "sim/right"}, 0},
                          {"stubborn", 3, false, {"sim/stubborn"}, 2}};
    }

    void exchange(const std::vector<Item>& items) {
        held.Sending(items);
        held.Sent(items);
    }

    std::string releases() const {
        std::string text;
        for (const Item& item : held.Releases()) {
            text += std::to_string(item.action) + "=" + std::to_string(item.value) + ";";
        }
        return text;
    }

    Profile profile;
    HeldInputs held{profile};
};

TEST_F(HeldInputsTest, ReleasesWhatIsDown) {
    exchange({{1, 1}, {2, 1}, {3, 1}});
    EXPECT_EQ(releases(), "2=0;3=2;");
    exchange({{2, 0}});
    EXPECT_EQ(releases(), "3=2;");
}

TEST_F(HeldInputsTest, TakesAnAnswerThatDoesNotComeForAPressThatMayHaveArrived) {
    held.Sending(std::vector<Item>{{2, 1}});
    EXPECT_EQ(releases(), "2=0;");
    held.Sending(std::vector<Item>{{2, 0}});
    EXPECT_EQ(releases(), "2=0;");
}

TEST_F(HeldInputsTest, EndsByNameWhatWasLostAndThenReleased) {
    exchange({{2, 1}});
    held.Lose();
    EXPECT_EQ(held.TakeLost(), Names{});
    exchange({{2, 0}});
    EXPECT_EQ(held.TakeLost(), (Names{"sim/left", "sim/right"}));
    EXPECT_EQ(held.TakeLost(), Names{});
}

TEST_F(HeldInputsTest, EndsByNameWhatIsDownWhenAllIsGivenUp) {
    exchange({{3, 1}});
    held.GiveUp();
    EXPECT_EQ(releases(), "");
    EXPECT_EQ(held.TakeLost(), Names{"sim/stubborn"});
}

} // namespace
