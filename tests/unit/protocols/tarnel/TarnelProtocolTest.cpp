#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnelFixture.h"
#include "protocols/tarnel/TarnelProtocol.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TarnelProtocolTest : public TarnelFixture {
protected:
    // One command output of identifier 5.
    void watchACommand() {
        exchange(definitionsMessage({}, {{.id = 5, .name = "kyr/command", .type = 6}}));
    }

    // The state byte of the command output.
    int reportedState() {
        loadPlane();
        feed();
        const Bytes bytes = answer();
        EXPECT_EQ(bytes.size(), 9U + 12U);
        return bytes.at(8);
    }
};

const Bytes kVersionAnswer{0xB1, 0x6B, 0x00, 0xB5, 0x01, 0x00, 0x07, 0x0A, 0x06, 0x00, 0x00, 0x00};

TEST_F(TarnelProtocolTest, HasItsIdentificationWhateverTheState) {
    EXPECT_EQ(protocol.GetProtocolIdentification(), 0x44332211U);
    watchACommand();
    loadPlane();
    feed({1, 2, 3});
    EXPECT_EQ(protocol.GetProtocolIdentification(), 0x44332211U);
}

// Version.

TEST_F(TarnelProtocolTest, AnswersAVersionRequestAndResetsTheBuffer) {
    const unsigned char* const start = in.GetReadPosAddress();
    EXPECT_EQ(feed({0xB1, 0x6B, 0x00, 0xB5}), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(in.GetReadPosAddress(), start);
}

TEST_F(TarnelProtocolTest, LogsAVersionRequest) {
    feed(versionMessage());
    EXPECT_EQ(logger.messages,
              (Log{{LogLevelVerbose, "Verbose@TarnelProtocol::tryParseVersion is VERSION"},
                   {LogLevelVerbose, "Verbose@TarnelProtocol::tryParseVersion available 4"}}));
}

TEST_F(TarnelProtocolTest, LogsTheBytesAvailableBeforeTheSpecifierWasRead) {
    feed(join({versionMessage(), zeros(996)}));
    EXPECT_EQ(logger.messages.at(1).second,
              "Verbose@TarnelProtocol::tryParseVersion available 1000");
}

TEST_F(TarnelProtocolTest, AnswersThreeBytesOfAVersionRequestWithTheOutputsAndLeavesThem) {
    EXPECT_EQ(feed({0xB1, 0x6B, 0x00}), 0);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 3U);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(feed({0xB5}), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
}

TEST_F(TarnelProtocolTest, AnswersTwoVersionRequestsInOneBufferByTwoCalls) {
    EXPECT_EQ(feed(join({versionMessage(), versionMessage()})), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 4U);
    EXPECT_EQ(feed(), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(TarnelProtocolTest, DoesNotGoBackBeforeAMessageThatItHasConsumed) {
    feed(join({versionMessage(), {0x01, 0x02}}));
    in.RestoreReadPos();
    EXPECT_EQ(drain(in), (Bytes{0x01, 0x02}));
}

TEST_F(TarnelProtocolTest, DoesNotGoBackBeforeAnEmptiedBuffer) {
    feed(versionMessage());
    fill(in, {0x01, 0x02});
    in.RestoreReadPos();
    EXPECT_EQ(drain(in), (Bytes{0x01, 0x02}));
}

TEST_F(TarnelProtocolTest, ParsesNoVersionOutOfFewerThanFourBytes) {
    fill(in, {0xB1, 0x6B, 0x00});
    EXPECT_EQ(protocol.tryParseVersion(&in, &out), 0);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 3U);
    EXPECT_THAT(answer(), IsEmpty());
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(TarnelProtocolTest, ParsesNoVersionOutOfAnotherSpecifier) {
    fill(in, {0xB1, 0x6B, 0x01, 0xB5});
    EXPECT_EQ(protocol.tryParseVersion(&in, &out), 0);
    EXPECT_THAT(answer(), IsEmpty());
    EXPECT_THAT(logger.messages, IsEmpty());
}

// Dispatch.

TEST_F(TarnelProtocolTest, TriesVersionThenDefinitionsThenData) {
    loadPlane();
    EXPECT_EQ(feed({0x01, 0x02}), 0);
    EXPECT_EQ(
        logger.messages,
        (Log{{LogLevelVerbose,
              "Verbose@TarnelProtocol::tryParseConfig numBytes(2) < "
              "sizeof(DefinitionHeaderStruct)(20)"},
             {LogLevelVerbose, "VERBOSE@TarnelProtocol::writeOutputInfos : outputInfos.size(0)"},
             {LogLevelVerbose,
              "Verbose@TarnelProtocol::tryParseData numBytes(2) < sizeof(DataHeaderStruct)(12)"}}));
}

TEST_F(TarnelProtocolTest, HandlesOneMessageOfEachKindPerCall) {
    fill(in, join({versionMessage(), definitionsMessage({}, {}), dataMessage({})}));
    EXPECT_EQ(feed(), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
    EXPECT_EQ(feed(), 20);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(feed(), 12);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(TarnelProtocolTest, LeavesAnUnknownMessageWhereItIsAndAnswersWithTheOutputs) {
    const Bytes unknown = join({fromHex("01 02 03 04"), zeros(20)});
    EXPECT_EQ(feed(unknown), 0);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(feed(versionMessage()), 0) << "what follows is not reached";
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(drain(in), join({unknown, versionMessage()}));
    EXPECT_THAT(logger.At(LogLevelWarning), IsEmpty());
}

TEST_F(TarnelProtocolTest, TakesTheSpecifierInLittleEndianOrderOnly) {
    EXPECT_EQ(feed(fromHex("B5 00 6B B1")), 0);
    EXPECT_EQ(answer(), kNoPlane);
}

TEST_F(TarnelProtocolTest, NeverReturnsANegativeValue) {
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(feed({0xB1}), 0);
    EXPECT_EQ(protocol.tryParsePacket(&in, &out), 0);
}

TEST_F(TarnelProtocolTest, IsFedByTryParsePacket) {
    fill(in, versionMessage());
    EXPECT_EQ(protocol.tryParsePacket(&in, &out), 4);
    EXPECT_EQ(answer(), kVersionAnswer);
}

// Commands.

TEST_F(TarnelProtocolTest, LetsACommandThatItDoesNotWatchGoOn) {
    EXPECT_EQ(protocol.HandleCommand(5, 0), 1);
    watchACommand();
    EXPECT_EQ(protocol.HandleCommand(6, 0), 1);
    EXPECT_EQ(reportedState(), 0);
}

TEST_F(TarnelProtocolTest, TakesBeginAndContinueForDownAndEverythingElseForUp) {
    watchACommand();
    loadPlane();
    for (const auto& [phase, state] : {std::pair(0, 1), std::pair(2, 0), std::pair(1, 1),
                                       std::pair(3, 0), std::pair(0, 1), std::pair(-1, 0)}) {
        SCOPED_TRACE(phase);
        EXPECT_EQ(protocol.HandleCommand(5, phase), 1);
        // A press that ended is reported once; what counts here is the state after that.
        feed();
        answer();
        EXPECT_EQ(reportedState(), state);
    }
}

TEST_F(TarnelProtocolTest, ClearsTheStateOfAWatchedCommandAtItsEnd) {
    watchACommand();
    EXPECT_EQ(protocol.HandleCommand(5, 0), 1);
    EXPECT_EQ(reportedState(), 1);
    EXPECT_EQ(reportedState(), 1);
    EXPECT_EQ(protocol.HandleCommand(5, 2), 1);
    EXPECT_EQ(reportedState(), 0);
}

TEST_F(TarnelProtocolTest, WatchesCommandsUnderIdentifiersOfAll32Bits) {
    exchange(definitionsMessage({}, {{.id = 0xFFFFFFFF, .name = "kyr/command", .type = 6}}));
    EXPECT_EQ(protocol.HandleCommand(0xFFFFFFFF, 0), 1);
    EXPECT_EQ(reportedState(), 1);
}

// Life.

TEST_F(TarnelProtocolTest, UnregistersFromAllCommandsWhenItGoes) {
    auto shortLived =
        std::make_unique<TarnelProtocol>(&simState, &logger, &utilities, &provider, &observer);
    EXPECT_THAT(observer.protocolsGone, IsEmpty());
    IProtocol* const address = shortLived.get();
    shortLived.reset();
    EXPECT_THAT(observer.protocolsGone, ElementsAre(address));
    EXPECT_THAT(observer.unregistered, IsEmpty());
}

TEST_F(TarnelProtocolTest, SharesNothingWithAnotherInstance) {
    watchACommand();
    TarnelProtocol other(&simState, &logger, &utilities, &provider, &observer);
    other.Feed(&in, &out);
    EXPECT_EQ(answer(), kNoPlane);
}

} // namespace
