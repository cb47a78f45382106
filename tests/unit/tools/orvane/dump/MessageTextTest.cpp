#include "tools/orvane/dump/MessageText.h"

#include <gtest/gtest.h>

using orvane::tool::dump::Direction;
using orvane::tool::dump::MarkKind;
using orvane::tool::dump::Message;
using orvane::tool::dump::messageAsRecord;
using orvane::tool::dump::messageAsText;
using orvane::tool::dump::TimeStyle;

namespace {

// At 2026-03-05 09:07:02.000123 UTC, from 192.0.2.7.
Message answer() {
    Message message;
    message.timeNs = 1'772'701'622'000'123'456;
    message.client = {0xC0000207, 50000};
    message.direction = Direction::FromPlugin;
    message.protocol = "velmar";
    message.kind = "read dataref";
    message.text = "7 s/x = 0.5";
    message.values = {{"id", 7}, {"value", 0.5}};
    return message;
}

} // namespace

TEST(MessageTextTest, WritesSecondsSinceTheBeginning) {
    EXPECT_EQ(messageAsText(answer(), {false, 1'772'701'621'000'000'000}),
              "  1.000123 192.0.2.7:50000 < velmar read dataref: 7 s/x = 0.5\n");
}

TEST(MessageTextTest, WritesTimesOfDayInUtc) {
    EXPECT_EQ(messageAsText(answer(), {true, 0}),
              "2026-03-05T09:07:02.000123Z 192.0.2.7:50000 < velmar read dataref: 7 s/x = 0.5\n");
}

TEST(MessageTextTest, LeavesOutWhatIsNotThere) {
    Message message = answer();
    message.direction = Direction::ToPlugin;
    message.text.clear();
    EXPECT_EQ(messageAsText(message, {false, message.timeNs}),
              "  0.000000 192.0.2.7:50000 > velmar read dataref\n");
}

TEST(MessageTextTest, WritesTheResponseTimeAndTheMarks) {
    Message message = answer();
    message.responseNs = 16'712'999;
    message.marks = {{MarkKind::Torn, "a"},
                     {MarkKind::Unknown, "b"},
                     {MarkKind::Odd, "c"},
                     {MarkKind::EndsSimulator, "with \x01 bytes"},
                     {MarkKind::Missing, "e"}};
    EXPECT_EQ(messageAsText(message, {false, message.timeNs}),
              "  0.000000 192.0.2.7:50000 < velmar read dataref (16.712 ms): 7 s/x = 0.5 [torn: a] "
              "[unknown: b] [odd: c] [ends the simulator: with \\x01 bytes] [missing: e]\n");
}

TEST(MessageTextTest, MakesARecordOfTypedFields) {
    Message message = answer();
    EXPECT_EQ(messageAsRecord(message, {false, 1'772'701'621'000'000'000}).dump(),
              R"({"time":1.000123,"client":"192.0.2.7:50000","direction":"from plugin",)"
              R"("protocol":"velmar","message":"read dataref","text":"7 s/x = 0.5",)"
              R"("values":{"id":7,"value":0.5}})");
    message.direction = Direction::ToPlugin;
    message.values.clear();
    message.responseNs = 16'712'999;
    message.marks = {{MarkKind::Odd, "c"}};
    EXPECT_EQ(messageAsRecord(message, {true, 0}).dump(),
              R"({"time":"2026-03-05T09:07:02.000123Z","client":"192.0.2.7:50000",)"
              R"("direction":"to plugin","protocol":"velmar","message":"read dataref",)"
              R"("response_seconds":0.016712,"text":"7 s/x = 0.5","marks":["odd: c"]})");
}

TEST(MessageTextTest, WritesTimesBefore1970) {
    Message message = answer();
    message.timeNs = -1000;
    EXPECT_EQ(messageAsText(message, {true, 0}).substr(0, 27), "1969-12-31T23:59:59.999999Z");
}
