#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnelFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TarnelDataTest : public TarnelFixture {
protected:
    // Action 1 sets sim/int, action 2 sets sim/other.
    void defineTwoActions() {
        exchange(definitionsMessage({{.action = 1, .targetType = 1, .target = "sim/int"},
                                     {.action = 2, .targetType = 1, .target = "sim/other"}},
                                    {}));
        logger.messages.clear();
        simulator.Recorder().Enable();
    }

    std::vector<std::string> writes() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().CallsOf("XPLMSetDatai")) {
            found.push_back(call.arguments);
        }
        simulator.Recorder().Clear();
        return found;
    }
};

TEST_F(TarnelDataTest, AnswersAnEmptyBufferWithTheOutputs) {
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(
        logger.messages.back(),
        (std::pair{LogLevelVerbose, std::string("Verbose@TarnelProtocol::tryParseData numBytes(0) "
                                                "< sizeof(DataHeaderStruct)(12)")}));
}

TEST_F(TarnelDataTest, ReadsNothingOutOfFewerBytesThanTheHeader) {
    fill(in, fromHex("DE AD BE EF 08 00 00 00 00 00 00"));
    EXPECT_EQ(protocol.tryParseData(&in, &out), 0);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 11U);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(logger.messages, (Log{{LogLevelVerbose,
                                     "Verbose@TarnelProtocol::tryParseData numBytes(11) < "
                                     "sizeof(DataHeaderStruct)(12)"}}));
}

TEST_F(TarnelDataTest, LogsAnotherSpecifierInDecimal) {
    fill(in, join({fromHex("B1 6B 00 B5"), zeros(8)}));
    EXPECT_EQ(protocol.tryParseData(&in, &out), 0);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(logger.messages, (Log{{LogLevelVerbose,
                                     "Verbose@TarnelProtocol::tryParseData "
                                     "dataHeader.specifier(3036703665) != CMD_DATA(4022250974)"}}));
}

TEST_F(TarnelDataTest, ExecutesNothingForACountOfZero) {
    defineTwoActions();
    fill(in, fromHex("DE AD BE EF 08 00 00 00 00 00 00 00"));
    EXPECT_EQ(protocol.tryParseData(&in, &out), 12);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_THAT(writes(), IsEmpty());
    EXPECT_EQ(logger.messages,
              (Log{{LogLevelVerbose, "Verbose@TarnelProtocol::tryParseData is DATA"}}));
}

TEST_F(TarnelDataTest, ExecutesItemsInTheirOrder) {
    defineTwoActions();
    EXPECT_EQ(feed(fromHex("DE AD BE EF 08 00 00 00 03 00 00 00"
                           "02 00 00 00 39 30 00 00"
                           "01 00 00 00 FF FF FF FF"
                           "02 00 00 00 FF FF 00 00")),
              36);
    EXPECT_THAT(writes(), ElementsAre("sim/other, 12345", "sim/int, -1", "sim/other, 65535"));
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_THAT(logger.At(LogLevelWarning), IsEmpty());
}

TEST_F(TarnelDataTest, WritesTheOutputsBeforeItExecutesTheItems) {
    loadPlane();
    exchange(definitionsMessage({{.action = 1, .targetType = 1, .target = "sim/int"}},
                                {{.id = 5, .name = "sim/int", .type = 1}}));
    EXPECT_EQ(exchange(dataMessage({{1, 7}})),
              join({fromHex("05 00 00 00 04 00 00 00 00 00 00 00"), kPlane}));
    EXPECT_EQ(exchange(dataMessage({{1, 8}})),
              join({fromHex("05 00 00 00 04 00 00 00 07 00 00 00"), kPlane}));
}

TEST_F(TarnelDataTest, WarnsOfAMessageWhoseLastItemIsMissingAndExecutesNothing) {
    defineTwoActions();
    const Bytes message = dataMessage({{1, 5}, {2, 6}});
    EXPECT_EQ(feed(Bytes(message.begin(), message.end() - 8)), 0);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_THAT(
        logger.At(LogLevelWarning),
        ElementsAre("WARNING@TarnelProtocol::tryParseData : numBytes (20) < packetSize(28)"));
    EXPECT_EQ(logger.messages.back().first, LogLevelWarning) << "nothing follows the warning";
    EXPECT_THAT(writes(), IsEmpty());
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 20U);

    EXPECT_EQ(feed(Bytes(message.end() - 8, message.end())), 28);
    EXPECT_THAT(writes(), ElementsAre("sim/int, 5", "sim/other, 6"));
}

TEST_F(TarnelDataTest, StopsAtAnUnknownActionAndStartsOverWithTheNextRequest) {
    defineTwoActions();
    EXPECT_EQ(feed(dataMessage({{1, 5}, {99, 6}, {2, 7}})), 0);
    EXPECT_THAT(writes(), ElementsAre("sim/int, 5"));
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("WARNING@TarnelProtocol::tryParseData : unknown action id(99)"));
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 36U);
    EXPECT_EQ(answer(), kNoPlane);

    EXPECT_EQ(feed(), 0);
    EXPECT_THAT(writes(), ElementsAre("sim/int, 5"));
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("WARNING@TarnelProtocol::tryParseData : unknown action id(99)",
                            "WARNING@TarnelProtocol::tryParseData : unknown action id(99)"));
    EXPECT_EQ(answer(), kNoPlane);
}

TEST_F(TarnelDataTest, NeverReachesDefinitionsAfterAnUnknownAction) {
    defineTwoActions();
    EXPECT_EQ(feed(dataMessage({{99, 6}})), 0);
    EXPECT_EQ(feed(definitionsMessage({{.action = 99}}, {})), 0);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 20U + 508U);
}

TEST_F(TarnelDataTest, PrintsAnUnknownActionAsUnsigned) {
    EXPECT_EQ(feed(dataMessage({{0xFFFFFFFF, 6}})), 0);
    EXPECT_THAT(
        logger.At(LogLevelWarning),
        ElementsAre("WARNING@TarnelProtocol::tryParseData : unknown action id(4294967295)"));
}

TEST_F(TarnelDataTest, KnowsNoActionBeforeTheFirstDefinitions) {
    EXPECT_EQ(feed(dataMessage({{0, 6}})), 0);
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("WARNING@TarnelProtocol::tryParseData : unknown action id(0)"));
}

TEST_F(TarnelDataTest, CountsTheDeclaredSizeButReadsItemsOf8Bytes) {
    defineTwoActions();
    const Bytes message = join({fromHex("DE AD BE EF 0A 00 00 00 02 00 00 00"
                                        "01 00 00 00 05 00 00 00"
                                        "02 00 00 00 06 00 00 00"),
                                fromHex("A0 A1 A2 A3")});
    EXPECT_EQ(feed(message), 12 + 2 * 10);
    EXPECT_THAT(writes(), ElementsAre("sim/int, 5", "sim/other, 6"));
    EXPECT_EQ(drain(in), fromHex("A0 A1 A2 A3"));
}

TEST_F(TarnelDataTest, ComputesTheSizeOfTheMessageIn32Bits) {
    defineTwoActions();
    EXPECT_EQ(feed(fromHex("DE AD BE EF 00 00 00 80 02 00 00 00"
                           "01 00 00 00 05 00 00 00"
                           "02 00 00 00 06 00 00 00")),
              12);
    EXPECT_THAT(writes(), ElementsAre("sim/int, 5", "sim/other, 6"));
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(TarnelDataTest, RunsIntoTheBuffersOwnCheckWhenTheItemsAreNotThere) {
    EXPECT_THROW(feed(fromHex("DE AD BE EF 00 00 00 00 01 00 00 00")), FatalReport);
    EXPECT_EQ(logger.messages.back(),
              (std::pair{LogLevelError, std::string("Error@RingBuffer::ReadUInt32 : "
                                                    "GetNumReadBytesAvailable() < 4")}));
}

// Time.

TEST_F(TarnelDataTest, TakesTheTimeOnceForAllItemsOfAMessage) {
    defineTwoActions();
    exchange(dataMessage({{1, 5}, {2, 6}, {1, 7}}));
    EXPECT_EQ(utilities.timeStampsTaken, 1);
}

TEST_F(TarnelDataTest, TakesNoTimeForAMessageThatIsNotExecuted) {
    defineTwoActions();
    feed();
    feed(fromHex("DE AD BE EF 08 00 00 00 01 00 00 00"));
    EXPECT_EQ(utilities.timeStampsTaken, 0);
}

TEST_F(TarnelDataTest, GivesAllItemsOfAMessageTheSameTime) {
    const InputRecord throttled{.repeatInterval = 200, .targetType = 6, .target = "sim/command"};
    InputRecord first = throttled;
    InputRecord second = throttled;
    first.action = 1;
    second.action = 2;
    exchange(definitionsMessage({first, second}, {}));
    simulator.Recorder().Enable();
    utilities.nowMs = 200;
    exchange(dataMessage({{1, 1}, {2, 1}}));
    EXPECT_THAT(simulator.Recorder().CallsOf("XPLMCommandOnce"), IsEmpty());
    utilities.nowMs = 201;
    exchange(dataMessage({{1, 1}, {2, 1}, {1, 1}}));
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMCommandOnce").size(), 2U);
}

} // namespace
