#include <array>
#include <string_view>

#include <gtest/gtest.h>

#include "protocols/velmar/XPlaneObservedCommandState.h"

namespace {

// d: Set(true), u: Set(false), r: Reset()
void apply(XPlaneObservedCommandState& state, std::string_view operations) {
    for (const char operation : operations) {
        if (operation == 'r') {
            state.Reset();
        } else {
            state.Set(operation == 'd');
        }
    }
}

XPlaneObservedCommandState after(std::string_view operations) {
    XPlaneObservedCommandState state;
    apply(state, operations);
    return state;
}

TEST(XPlaneObservedCommandStateTest, StartsWithEveryFlagFalse) {
    const XPlaneObservedCommandState state;
    EXPECT_FALSE(state.GetCurrentState());
    EXPECT_FALSE(state.GetLastQueriedState());
    EXPECT_FALSE(state.Changed());
}

TEST(XPlaneObservedCommandStateTest, KeepsItsChangeWhenSetTrueAndThenFalseWithoutAReset) {
    EXPECT_TRUE(after("du").Changed());
    EXPECT_FALSE(after("du").GetCurrentState());
}

TEST(XPlaneObservedCommandStateTest, SeesNoChangeInTheStateItHadAtTheReset) {
    EXPECT_FALSE(after("drd").Changed());
    EXPECT_FALSE(after("u").Changed());
}

TEST(XPlaneObservedCommandStateTest, DoesNotQueryByBeingSet) {
    EXPECT_FALSE(after("dududd").GetLastQueriedState());
    EXPECT_TRUE(after("drudu").GetLastQueriedState());
}

// The flags allow six states; every operation is tried in each of them.
struct Row {
    std::string_view history;
    char operation;
    bool current;
    bool lastQueried;
    bool changed;
};

constexpr std::array kRows{
    // Up at the reset, unchanged.
    Row{"", 'd', true, false, true},
    Row{"", 'u', false, false, false},
    Row{"", 'r', false, false, false},
    // Up at the reset, changed, down.
    Row{"d", 'd', true, false, true},
    Row{"d", 'u', false, false, true},
    Row{"d", 'r', true, true, false},
    // Up at the reset, changed, up again.
    Row{"du", 'd', true, false, true},
    Row{"du", 'u', false, false, true},
    Row{"du", 'r', false, false, false},
    // Down at the reset, unchanged.
    Row{"dr", 'd', true, true, false},
    Row{"dr", 'u', false, true, true},
    Row{"dr", 'r', true, true, false},
    // Down at the reset, changed, up.
    Row{"dru", 'd', true, true, true},
    Row{"dru", 'u', false, true, true},
    Row{"dru", 'r', false, false, false},
    // Down at the reset, changed, down again.
    Row{"drud", 'd', true, true, true},
    Row{"drud", 'u', false, true, true},
    Row{"drud", 'r', true, true, false},
    // The state at the reset shows only later.
    Row{"dur", 'd', true, false, true},
    Row{"drur", 'd', true, false, true},
    Row{"drur", 'u', false, false, false},
    Row{"drudr", 'd', true, true, false},
    Row{"drudr", 'u', false, true, true},
};

TEST(XPlaneObservedCommandStateTest, FollowsTheWholeTruthTable) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << '"' << row.history << "\" then " << row.operation);
        XPlaneObservedCommandState state = after(row.history);
        apply(state, {&row.operation, 1});
        EXPECT_EQ(state.GetCurrentState(), row.current);
        EXPECT_EQ(state.GetLastQueriedState(), row.lastQueried);
        EXPECT_EQ(state.Changed(), row.changed);
    }
}

} // namespace
