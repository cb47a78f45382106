#include "tools/orvane/dump/Conversation.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/TarnelMessages.h"
#include "support/VelmarMessages.h"
#include "tools/orvane/dump/MessageText.h"

using orvane::tool::dump::Conversation;
using orvane::tool::dump::Direction;
using orvane::tool::dump::Message;

namespace {

const Bytes kTarnel = fromHex("11 22 33 44");
const Bytes kVelmar = fromHex("55 66 77 88");
const Bytes kVersionFrame = fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00");
const Bytes kNoOutputs = fromHex("0C 00 00 00 FF FF 00 00 04 00 00 00 78 56 34 12");
const Bytes kOneInt = fromHex(
    "18 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00 "
    "FF FF 00 00 04 00 00 00 78 56 34 12");

// A connection of which every message is written down as a line without time and client; each call
// is a millisecond later.
class ConversationTest : public testing::Test {
protected:
    void client(const Bytes& bytes) { conversation->AddSent(now(), bytes); }
    void plugin(const Bytes& bytes) { conversation->AddAnswered(now(), bytes); }

    void tell(const Message& message) {
        const std::string line = messageAsText(message, {});
        lines += line.substr(line.find(message.direction == Direction::ToPlugin ? '>' : '<'));
    }

    void underWay() {
        conversation =
            std::make_unique<Conversation>(orvane::tool::dump::Endpoint{}, false,
                                           [this](const Message& message) { tell(message); });
    }

    std::int64_t now() { return timeNs += 1'000'000; }

    std::int64_t timeNs = 0;
    std::string lines;
    std::unique_ptr<Conversation> conversation = std::make_unique<Conversation>(
        orvane::tool::dump::Endpoint{}, true, [this](const Message& message) { tell(message); });
};

Bytes firstOf(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

Bytes behind(const Bytes& bytes, std::size_t count) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(count), bytes.end()};
}

} // namespace

TEST_F(ConversationTest, TellsRequestsWithTheirAnswers) {
    client(join({kTarnel, versionMessage()}));
    EXPECT_EQ(lines, "");
    plugin(kVersionFrame);
    client(join({kVelmar, pollCommandStates()}));
    plugin(fromHex("04 00 00 00 00 00 00 00"));
    EXPECT_EQ(lines,
              "> tarnel version\n"
              "< tarnel version (1.000 ms): 1.0.7.10, 6\n"
              "> velmar poll command states\n"
              "< velmar poll command states (1.000 ms): none has changed\n");
}

TEST_F(ConversationTest, PutsAnAnswerTogether) {
    client(kTarnel);
    for (const unsigned char byte : kNoOutputs) {
        plugin({byte});
    }
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): aircraft 0x12345678\n");
}

TEST_F(ConversationTest, RemembersWhatWasDeclared) {
    client(join({kTarnel, definitionsMessage({}, {{.id = 1, .name = "s/x", .type = 1}})}));
    plugin(kOneInt);
    client(kTarnel);
    plugin(kOneInt);
    EXPECT_EQ(lines,
              "> tarnel definitions: 0 inputs, 1 outputs; output 1 s/x int\n"
              "< tarnel outputs (1.000 ms): s/x = 5, aircraft 0x12345678\n"
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): s/x = 5, aircraft 0x12345678\n");
}

TEST_F(ConversationTest, TakesARequestInTwoSegmentsForOne) {
    const Bytes request =
        join({kTarnel, definitionsMessage({}, {{.id = 1, .name = "s/x", .type = 1}})});
    client(firstOf(request, 40));
    client(behind(request, 40));
    plugin(kOneInt);
    EXPECT_EQ(lines,
              "> tarnel definitions: 0 inputs, 1 outputs; output 1 s/x int\n"
              "< tarnel outputs (2.000 ms): s/x = 5, aircraft 0x12345678\n");
}

TEST_F(ConversationTest, SeesFromTheAnswerThatARequestWasTorn) {
    const Bytes request =
        join({kTarnel, definitionsMessage({}, {{.id = 1, .name = "s/x", .type = 1}})});
    client(firstOf(request, 40));
    client(behind(request, 40));
    // The outputs that were declared before: none.
    plugin(kNoOutputs);
    EXPECT_EQ(lines,
              "> tarnel definitions: 0 inputs, 1 outputs [torn: 36 of 136 bytes: answered "
              "with the outputs, and left unread]\n"
              "< tarnel outputs (2.000 ms): aircraft 0x12345678\n");
}

TEST_F(ConversationTest, LooksForTheNextIdentificationInWhatWasLeftUnread) {
    client(join({kTarnel, fromHex("DE AD BE EF 08 00")}));
    plugin(kNoOutputs);
    lines.clear();
    client(join({kTarnel, versionMessage()}));
    EXPECT_EQ(lines,
              "> unknown identification: DE AD BE EF [unknown: no such protocol: its 4 "
              "bytes are dropped without an answer]\n");
    lines.clear();
    client(fromHex("00 00"));
    EXPECT_EQ(lines,
              "> unknown identification: 08 00 11 22 [unknown: no such protocol: its 4 "
              "bytes are dropped without an answer]\n");
}

TEST_F(ConversationTest, FollowsAConnectionThatFindsItsPlaceAgain) {
    client(join({kVelmar, fromHex("02 00 00 00 07 00")}));
    plugin(fromHex("00 00 00 00"));
    client(fromHex("00 00"));
    client(join({kVelmar, pollCommandStates()}));
    client(join({kVelmar, pollCommandStates()}));
    plugin(fromHex("08 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_EQ(lines,
              "> velmar unregister dataref: 07 00 [torn: 6 bytes have arrived: left unread]\n"
              "< velmar answer (1.000 ms): empty\n"
              "> unknown identification: 02 00 00 00 [unknown: no such protocol: its 4 bytes are "
              "dropped without an answer]\n"
              "> unknown identification: 07 00 00 00 [unknown: no such protocol: its 4 bytes are "
              "dropped without an answer]\n"
              "> velmar poll command states\n"
              "> velmar unknown: 0x88776655 [unknown: a second identification: skipped]\n"
              "> velmar poll command states\n"
              "< velmar poll command states (2.000 ms): none has changed\n"
              "< velmar poll command states: none has changed\n");
}

TEST_F(ConversationTest, AnswersRequestsThatWereSentAtOnceOneByOne) {
    client(join({kTarnel, versionMessage()}));
    client(join({kVelmar, pollCommandStates()}));
    plugin(kVersionFrame);
    plugin(fromHex("04 00 00 00 00 00 00 00"));
    EXPECT_EQ(lines,
              "> tarnel version\n"
              "< tarnel version (2.000 ms): 1.0.7.10, 6\n"
              "> velmar poll command states\n"
              "< velmar poll command states (2.000 ms): none has changed\n");
}

TEST_F(ConversationTest, TellsOfARequestWithoutAnAnswer) {
    client(join({kTarnel, versionMessage()}));
    conversation->Finish();
    EXPECT_EQ(lines, "> tarnel version [missing: no answer in the capture]\n");
}

TEST_F(ConversationTest, TellsWhyTheSimulatorEnded) {
    client(join({kVelmar, registerCommand(1, "short")}));
    conversation->End(now(), Direction::FromPlugin, true);
    EXPECT_EQ(lines,
              "> velmar register command: 01 00 00 00 05 73 68 6F 72 74 [ends the "
              "simulator: FATAL@VelmarDataRef::FromStream : Not enough bytes to read "
              "dataref]\n"
              "< tcp connection: reset\n");
}

TEST_F(ConversationTest, FindsTheSendAtWhichTheSimulatorEnded) {
    const Bytes request = join({kVelmar, readDataref(1)});
    client(firstOf(request, 10));
    client(behind(request, 10));
    conversation->End(now(), Direction::FromPlugin, false);
    EXPECT_EQ(lines,
              "> velmar read dataref: 01 00 [ends the simulator: Error@RingBuffer::"
              "ReadUInt32 : GetNumReadBytesAvailable() < 4]\n"
              "< tcp connection: closed\n");
}

TEST_F(ConversationTest, SaysWhenThePluginClosedInsteadOfAnAnswer) {
    client(join(
        {kTarnel, definitionsMessage({}, {{.id = 1, .name = "kyr/x", .type = 3, .count = -1}})}));
    conversation->End(now(), Direction::FromPlugin, false);
    EXPECT_EQ(lines,
              "> tarnel definitions: 0 inputs, 1 outputs; output 1 kyr/x int[-1] [odd: "
              "output 1: -1 elements close the connection, unless the dataref exists "
              "already] [odd: not answered: the plugin's side closed]\n"
              "< tcp connection: closed\n");
}

TEST_F(ConversationTest, TellsOfAnAnswerThatIsCut) {
    client(kTarnel);
    plugin(firstOf(kNoOutputs, 9));
    conversation->End(now(), Direction::ToPlugin, true);
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel answer: 5 of 12 bytes [odd: the connection ended within it]\n"
              "> tcp connection: reset\n");
    lines.clear();
    client(kTarnel);
    conversation->Finish();
    EXPECT_EQ(lines, "");
}

TEST_F(ConversationTest, KnowsTheFourBytesThatAnAnswerInPartsLacks) {
    client(kTarnel);
    plugin(firstOf(kNoOutputs, 12));
    conversation->Finish();
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel answer: 8 of 12 bytes [odd: 4 bytes short, as an answer that the "
              "plugin's system took in parts]\n");
}

TEST_F(ConversationTest, MarksAnAnswerToNothing) {
    plugin(kNoOutputs);
    EXPECT_EQ(lines,
              "< unknown answer: FF FF 00 00 04 00 00 00 78 56 34 12 [odd: to no "
              "request]\n");
}

TEST_F(ConversationTest, GivesUpOnAnAnswerThatCannotBe) {
    client(kTarnel);
    plugin(fromHex("FC FF FF 0F 00 00"));
    plugin(fromHex("01 02 03"));
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel answer: 2 of 268435452 bytes [odd: longer than an answer can "
              "be]\n");
    lines.clear();
    client(kTarnel);
    plugin(kNoOutputs);
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): aircraft 0x12345678\n");
}

TEST_F(ConversationTest, TakesUpAConnectionThatIsUnderWayWithItsNextRequest) {
    underWay();
    conversation->Begin(now());
    plugin(fromHex("01 02 03"));
    client(fromHex("00 00 00 00"));
    plugin(fromHex("04 05"));
    client(kTarnel);
    plugin(kOneInt);
    EXPECT_EQ(lines,
              "> tcp connection: under way [missing: what was before is not in the "
              "capture]\n"
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): 01 00 00 00 04 00 00 00 05 00 00 00 FF FF 00 "
              "00 04 00 00 00 78 56 34 12 [missing: the definitions are not in the "
              "capture]\n");
}

TEST_F(ConversationTest, SkipsARequestThatWasNotCapturedAsAWhole) {
    client(join({kTarnel, fromHex("C0 FF EE DD")}));
    conversation->MissSent(now(), 132);
    plugin(kOneInt);
    client(join({kTarnel, versionMessage()}));
    plugin(kVersionFrame);
    EXPECT_EQ(lines,
              "> tarnel request: of 4 bytes or more [missing: the rest is not in the "
              "capture]\n"
              "> tcp connection: skips to the next request [missing: 132 bytes are not in "
              "the capture]\n"
              "> tarnel version\n"
              "< tarnel version (1.000 ms): 1.0.7.10, 6\n");
}

TEST_F(ConversationTest, KeepsItsPlaceWhenTheMiddleOfAnAnswerIsMissing) {
    client(kTarnel);
    plugin(firstOf(kNoOutputs, 8));
    conversation->MissAnswered(now(), 8);
    client(kTarnel);
    plugin(kNoOutputs);
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs\n"
              "< tarnel answer: 4 of 12 bytes [missing: the rest is not in the capture]\n"
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): aircraft 0x12345678\n");
}

TEST_F(ConversationTest, LosesItsPlaceWhenTheLengthOfAnAnswerIsMissing) {
    client(kTarnel);
    conversation->MissAnswered(now(), 8);
    plugin(behind(kNoOutputs, 8));
    client(kTarnel);
    plugin(kNoOutputs);
    EXPECT_EQ(lines,
              "> tarnel query: for the outputs [missing: no answer in the capture]\n"
              "< tcp connection: skips to the next request [missing: 8 bytes are not in "
              "the capture]\n"
              "> tarnel query: for the outputs\n"
              "< tarnel outputs (1.000 ms): aircraft 0x12345678\n");
}
