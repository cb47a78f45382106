#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnelFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TarnelOutputStreamTest : public TarnelFixture {
protected:
    // An int, a dataref that does not exist, an array of three and a command.
    Bytes defineOutputs() {
        simulator.Datarefs().Define(
            {.name = "sim/ints", .types = xplmType_IntArray, .elements = 8});
        simulator.Datarefs().SetIntArray("sim/ints", {1, 2, 3, 4, 5, 6, 7, 8});
        simulator.Datarefs().SetInt("sim/int", 42);
        return exchange(definitionsMessage(
            {}, {{.id = 0x11, .name = "sim/int", .type = 1},
                 {.id = 0x12, .name = "sim/unknown", .type = 2},
                 {.id = 0x13, .name = "sim/ints", .type = 3, .first = 2, .count = 3},
                 {.id = 0x14, .name = "kyr/command", .type = 6}}));
    }

    Bytes stream() {
        protocol.writeOutputInfos(&in, &out);
        return answer();
    }

    const Bytes kDummies = fromHex(
        "11 00 00 00 04 00 00 00 00 00 00 00"
        "12 00 00 00 04 00 00 00 00 00 00 00"
        "13 00 00 00 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
        "14 00 00 00 14 00 00 00 01 00 00 00 00");
    const Bytes kValues = fromHex(
        "11 00 00 00 04 00 00 00 2A 00 00 00"
        "12 00 00 00 04 00 00 00 00 00 00 00"
        "13 00 00 00 0C 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00"
        "14 00 00 00 01 00 00 00 00");
};

TEST_F(TarnelOutputStreamTest, IsTheTrailerAloneForEveryFeedWithoutOutputs) {
    loadPlane();
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(toHex(answer()), "FF FF 00 00 04 00 00 00 78 56 34 12");
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(toHex(answer()), "FF FF 00 00 04 00 00 00 78 56 34 12");
}

TEST_F(TarnelOutputStreamTest, EndsInFourZeroBytesWithoutAPlane) {
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(toHex(answer()), "FF FF 00 00 04 00 00 00 00 00 00 00");
}

TEST_F(TarnelOutputStreamTest, HoldsAllValuesInTheOrderOfTheirDefinitionWithAPlane) {
    loadPlane();
    EXPECT_EQ(defineOutputs(), join({kValues, kPlane}));
    EXPECT_EQ(stream(), join({kValues, kPlane}));
}

TEST_F(TarnelOutputStreamTest, HoldsDummiesOfTheSameOutputsWithoutAPlane) {
    EXPECT_EQ(defineOutputs(), join({kDummies, kNoPlane}));
    EXPECT_EQ(stream(), join({kDummies, kNoPlane}));
}

TEST_F(TarnelOutputStreamTest, FollowsThePlaneFromStreamToStream) {
    defineOutputs();
    loadPlane();
    EXPECT_EQ(stream(), join({kValues, kPlane}));
    simState.SetPlaneLoaded(false);
    EXPECT_EQ(stream(), join({kDummies, kNoPlane})) << "the id is hidden, though it is still known";
    simState.SetPlaneLoaded(true);
    EXPECT_EQ(stream(), join({kValues, kPlane}));
}

TEST_F(TarnelOutputStreamTest, AsksTheSimulatorForNoValueWithoutAPlane) {
    defineOutputs();
    simulator.Recorder().Enable();
    stream();
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(TarnelOutputStreamTest, IsLoggedWithAPlaneOnly) {
    defineOutputs();
    logger.messages.clear();
    stream();
    EXPECT_THAT(logger.messages, IsEmpty());
    loadPlane();
    stream();
    EXPECT_EQ(
        logger.messages,
        (Log{{LogLevelVerbose, "VERBOSE@TarnelProtocol::writeOutputInfos : outputInfos.size(4)"}}));
}

TEST_F(TarnelOutputStreamTest, DoesNotLookAtTheReceivedBytes) {
    fill(in, versionMessage());
    stream();
    EXPECT_EQ(drain(in), versionMessage());
}

TEST_F(TarnelOutputStreamTest, IsSentOnceForDefinitionsAndOnceForTheEmptyRequestAfterThem) {
    loadPlane();
    EXPECT_EQ(feed(definitionsMessage({}, {{.id = 5, .name = "sim/int", .type = 1}})), 136);
    const Bytes once = join({fromHex("05 00 00 00 04 00 00 00 00 00 00 00"), kPlane});
    EXPECT_EQ(answer(), once);
    EXPECT_EQ(feed(), 0);
    EXPECT_EQ(answer(), once);
}

TEST_F(TarnelOutputStreamTest, IsNotSentForAVersionRequest) {
    loadPlane();
    EXPECT_EQ(exchange(versionMessage()).size(), 12U);
    EXPECT_THAT(logger.At(LogLevelVerbose),
                ElementsAre("Verbose@TarnelProtocol::tryParseVersion is VERSION",
                            "Verbose@TarnelProtocol::tryParseVersion available 4"));
}

TEST_F(TarnelOutputStreamTest, RunsIntoTheBuffersOwnCheckWhenThereIsNoRoom) {
    RingBuffer small(12, &logger);
    EXPECT_THROW(protocol.writeOutputInfos(&in, &small), FatalReport);
    EXPECT_EQ(logger.messages.back().second,
              "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4");
}

} // namespace
