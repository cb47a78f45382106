#include "tools/orvane/dump/TarnelAnswer.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"

using orvane::tool::dump::Direction;
using orvane::tool::dump::Mark;
using orvane::tool::dump::MarkKind;
using orvane::tool::dump::Message;
using orvane::tool::dump::readTarnelAnswer;
using orvane::tool::dump::TarnelDefinitions;
using orvane::tool::dump::TarnelOutput;
using orvane::tool::dump::TarnelRequest;
using Marks = std::vector<Mark>;

namespace {

const Bytes kAircraft = fromHex("FF FF 00 00 04 00 00 00 78 56 34 12");
const Bytes kNoAircraft = fromHex("FF FF 00 00 04 00 00 00 00 00 00 00");

Message read(const Bytes& payload, std::vector<TarnelOutput> outputs,
             TarnelRequest::Answer expected = TarnelRequest::Answer::Outputs) {
    TarnelDefinitions declared;
    declared.outputs = std::move(outputs);
    return readTarnelAnswer(payload, expected, declared);
}

} // namespace

TEST(TarnelAnswerTest, ReadsVersion) {
    const Message message =
        read(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00"), {}, TarnelRequest::Answer::Version);
    EXPECT_EQ(message.direction, Direction::FromPlugin);
    EXPECT_EQ(message.kind, "version");
    EXPECT_EQ(message.text, "1.0.7.10, 6");
    EXPECT_EQ(message.values.dump(), R"({"version":[1,0,7,10],"number":6})");
    EXPECT_TRUE(message.marks.empty());
}

TEST(TarnelAnswerTest, MarksAnAnswerThatIsNoVersion) {
    const Message message = read(kAircraft, {}, TarnelRequest::Answer::Version);
    EXPECT_EQ(message.text, "FF FF 00 00 04 00 00 00 78 56 34 12");
    EXPECT_EQ(message.marks, (Marks{{MarkKind::Odd, "no answer to a version request"}}));
}

TEST(TarnelAnswerTest, ReadsEveryTypeOfOutput) {
    const Bytes payload = join({fromHex("01 00 00 00 04 00 00 00 FB FF FF FF"),
                                fromHex("02 00 00 00 04 00 00 00 80 01 00 3F"),
                                fromHex("03 00 00 00 08 00 00 00 01 00 00 00 02 00 00 00"),
                                fromHex("04 00 00 00 08 00 00 00 00 00 80 3F 00 00 C0 7F"),
                                fromHex("05 00 00 00 01 00 00 00 01"), fromHex("06 00 00 00"),
                                fromHex("07 00 00 00"), kAircraft});
    const Message message = read(payload, {{1, "a", 1, 0, 0},
                                           {2, "b", 2, 0, 0},
                                           {3, "c", 3, 0, 2},
                                           {4, "d", 4, 0, 2},
                                           {5, "kyr/e", 6, 0, 0},
                                           {6, "sim/f", 6, 0, 0},
                                           {7, "", 5, 0, 0}});
    EXPECT_EQ(message.kind, "outputs");
    EXPECT_EQ(message.text,
              "a = -5, b = 0.5000229, c = [1, 2], d = [1.0, nan], kyr/e = 1, "
              "sim/f has no value, 7 has no value, aircraft 0x12345678");
    EXPECT_EQ(message.values.dump(),
              R"({"outputs":[{"output":1,"name":"a","value":-5},)"
              R"({"output":2,"name":"b","value":0.5000229},)"
              R"({"output":3,"name":"c","value":[1,2]},)"
              R"({"output":4,"name":"d","value":[1.0,"nan"]},)"
              R"({"output":5,"name":"kyr/e","value":1},)"
              R"({"output":6,"name":"sim/f","value":null},)"
              R"({"output":7,"name":"","value":null}],"aircraft":305419896})");
    EXPECT_TRUE(message.marks.empty());
}

TEST(TarnelAnswerTest, ReadsCommandsWithTheirIdentifierTwice) {
    const Bytes payload = join({fromHex("01 00 00 00 01 00 00 00 01 00 00 00 00"), kNoAircraft});
    const Message message = read(payload, {{1, "kyr/button", 6, 0, 0}});
    EXPECT_EQ(message.text, "kyr/button = 0, no aircraft");
    EXPECT_TRUE(message.marks.empty());
}

TEST(TarnelAnswerTest, ReadsArraysWithoutElements) {
    const Bytes payload =
        join({fromHex("01 00 00 00 00 00 00 00 02 00 00 00 FC FF FF FF"), kAircraft});
    const Message message = read(payload, {{1, "a", 3, 0, 0}, {2, "b", 4, 0, -1}});
    EXPECT_EQ(message.text, "a = [], b = [], aircraft 0x12345678");
}

TEST(TarnelAnswerTest, ShortensLongArraysForPeopleOnly) {
    const Bytes payload = join({fromHex("01 00 00 00 44 00 00 00"), zeros(68), kAircraft});
    const Message message = read(payload, {{1, "a", 3, 0, 17}});
    EXPECT_EQ(message.text,
              "a = [0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, ... 17 in all], "
              "aircraft 0x12345678");
    EXPECT_EQ(message.values["outputs"][0]["value"].size(), 17U);
}

TEST(TarnelAnswerTest, MarksAStreamThatDoesNotFit) {
    const std::vector<TarnelOutput> outputs = {{1, "a", 1, 0, 0}};
    const Marks expected = {{MarkKind::Odd, "does not fit the 1 declared outputs"}};
    const Bytes entry = fromHex("01 00 00 00 04 00 00 00 05 00 00 00");
    EXPECT_EQ(read(join({entry, kAircraft}), outputs).marks, Marks{});
    EXPECT_EQ(read(kAircraft, outputs).marks, expected);
    EXPECT_EQ(read({}, outputs).marks, expected);
    EXPECT_EQ(read(join({entry, entry, kAircraft}), outputs).marks, expected);
    EXPECT_EQ(read(join({entry, kAircraft, zeros(1)}), outputs).marks, expected);
    EXPECT_EQ(read(join({entry, Bytes(kAircraft.begin(), kAircraft.end() - 1)}), outputs).marks,
              expected);
    Bytes otherLength = entry;
    otherLength[4] = 5;
    EXPECT_EQ(read(join({otherLength, kAircraft}), outputs).marks, expected);
    EXPECT_EQ(read(join({entry, kAircraft}), {{2, "a", 1, 0, 0}}).marks, expected);
}

TEST(TarnelAnswerTest, DoesNotGuessAtDefinitionsThatWereNotCaptured) {
    TarnelDefinitions unknown;
    unknown.areKnown = false;
    const Message message =
        readTarnelAnswer(join({fromHex("01 00 00 00 04 00 00 00 05 00 00 00"), kAircraft}),
                         TarnelRequest::Answer::Outputs, unknown);
    EXPECT_EQ(message.marks,
              (Marks{{MarkKind::Missing, "the definitions are not in the capture"}}));
    EXPECT_EQ(readTarnelAnswer(kAircraft, TarnelRequest::Answer::Outputs, unknown).text,
              "aircraft 0x12345678");
}

TEST(TarnelAnswerTest, ReadsAStreamThatComesTwice) {
    const Message message =
        read(join({kAircraft, kAircraft}), {}, TarnelRequest::Answer::OutputsTwice);
    EXPECT_EQ(message.text, "aircraft 0x12345678");
    EXPECT_EQ(message.marks, (Marks{{MarkKind::Odd, "the outputs come twice"}}));
}
