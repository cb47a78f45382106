#include <gtest/gtest.h>

#include "tools/orvane/command/CommandEvents.h"

using orvane::tool::CommandEvent;
using orvane::tool::CommandEvents;
using orvane::velmar::CommandState;
using Kind = orvane::tool::CommandEvent::Kind;

namespace {

using Events = std::vector<CommandEvent>;

TEST(CommandEventsTest, SeesAPressBetweenTwoQuestions) {
    CommandEvents events;
    EXPECT_EQ(events.Take({}), Events{});
    EXPECT_EQ(events.Take({{"a", CommandState::Pressed}}), (Events{{"a", Kind::Pressed}}));
    EXPECT_EQ(events.Take({}), Events{});
    EXPECT_EQ(events.Take({{"a", CommandState::Pressed}}), (Events{{"a", Kind::Pressed}}));
}

TEST(CommandEventsTest, SeesTheBeginningAndTheEndOfALongPressOnce) {
    CommandEvents events;
    EXPECT_EQ(events.Take({{"a", CommandState::Down}}), (Events{{"a", Kind::Down}}));
    EXPECT_EQ(events.Take({{"a", CommandState::Down}}), Events{});
    EXPECT_EQ(events.Take({{"a", CommandState::Pressed}}), (Events{{"a", Kind::Up}}));
    EXPECT_EQ(events.Take({}), Events{});
    EXPECT_EQ(events.Take({{"a", CommandState::Down}}), (Events{{"a", Kind::Down}}));
    EXPECT_EQ(events.Take({}), (Events{{"a", Kind::Up}}));
}

TEST(CommandEventsTest, TakesAStateOfUpForNoPress) {
    CommandEvents events;
    EXPECT_EQ(events.Take({{"a", CommandState::Up}}), Events{});
    EXPECT_EQ(events.Take({{"a", CommandState::Down}}), (Events{{"a", Kind::Down}}));
    EXPECT_EQ(events.Take({{"a", CommandState::Up}}), (Events{{"a", Kind::Up}}));
}

TEST(CommandEventsTest, KeepsCommandsApart) {
    CommandEvents events;
    EXPECT_EQ(events.Take({{"a", CommandState::Down}, {"b", CommandState::Pressed}}),
              (Events{{"a", Kind::Down}, {"b", Kind::Pressed}}));
    EXPECT_EQ(events.Take({{"b", CommandState::Down}}),
              (Events{{"b", Kind::Down}, {"a", Kind::Up}}));
}

TEST(CommandEventsTest, NamesTheEvents) {
    EXPECT_STREQ(nameOf(Kind::Down), "down");
    EXPECT_STREQ(nameOf(Kind::Up), "up");
    EXPECT_STREQ(nameOf(Kind::Pressed), "pressed");
}

} // namespace
