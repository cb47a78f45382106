#include <cstring>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnelFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TarnelDefinitionsTest : public TarnelFixture {
protected:
    static Bytes header(std::uint32_t inputSize, std::uint32_t inputCount, std::uint32_t outputSize,
                        std::uint32_t outputCount) {
        return join({{0xC0, 0xFF, 0xEE, 0xDD},
                     u32(inputSize),
                     u32(inputCount),
                     u32(outputSize),
                     u32(outputCount)});
    }

    // Sends one value to an action that must exist.
    void drive(std::uint32_t action, std::int32_t value) {
        exchange(dataMessage({{action, value}}));
    }

    std::vector<std::string> effects() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            if (call.function.starts_with("XPLMSet") || call.function.starts_with("XPLMCommand")) {
                found.push_back(call.function + "(" + call.arguments + ")");
            }
        }
        return found;
    }
};

// Logging.

TEST_F(TarnelDefinitionsTest, LogsTooFewBytesForTheHeader) {
    fill(in, Bytes(19, 0xC0));
    EXPECT_EQ(protocol.tryParseConfig(&in, &out), 0);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 19U);
    EXPECT_EQ(logger.messages, (Log{{LogLevelVerbose,
                                     "Verbose@TarnelProtocol::tryParseConfig numBytes(19) < "
                                     "sizeof(DefinitionHeaderStruct)(20)"}}));
}

TEST_F(TarnelDefinitionsTest, LogsAnotherSpecifierInDecimal) {
    fill(in, join({fromHex("DE AD BE EF"), zeros(16)}));
    const auto address = std::to_string(reinterpret_cast<std::intptr_t>(in.GetReadPosAddress()));
    EXPECT_EQ(protocol.tryParseConfig(&in, &out), 0);
    EXPECT_EQ(logger.messages,
              (Log{{LogLevelVerbose,
                    "Verbose@TarnelProtocol::tryParseConfig : recv() readposptr " + address},
                   {LogLevelVerbose,
                    "Verbose@TarnelProtocol::tryParseConfig "
                    "defHeader.specifier(4022250974) != CMD_DEFINITIONS(3723427776)"}}));
}

TEST_F(TarnelDefinitionsTest, LogsTheStepsOfACompleteMessage) {
    fill(in, definitionsMessage({{.action = 7}, {.action = 8}}, {{.id = 1, .type = 1}}));
    const auto address = std::to_string(reinterpret_cast<std::intptr_t>(in.GetReadPosAddress()));
    EXPECT_EQ(protocol.tryParseConfig(&in, &out), 20 + 2 * 488 + 116);
    EXPECT_EQ(
        logger.messages,
        (Log{{LogLevelVerbose,
              "Verbose@TarnelProtocol::tryParseConfig : recv() readposptr " + address},
             {LogLevelVerbose, "Verbose@TarnelProtocol::tryParseConfig is DEFINITIONS"},
             {LogLevelVerbose,
              "Verbose@TarnelProtocol::tryParseConfig  defHeader.inputStructCount(2) "
              "defHeader.outputStructCount(1)"},
             {LogLevelVerbose, "VERBOSE@TarnelProtocol::tryParseConfig : outputInfos.size(1)"}}));
}

TEST_F(TarnelDefinitionsTest, WarnsOfAnIncompleteMessageInSpiteOfItsFirstWord) {
    fill(in, header(488, 1, 116, 1));
    EXPECT_EQ(protocol.tryParseConfig(&in, &out), 0);
    EXPECT_THAT(
        logger.At(LogLevelWarning),
        ElementsAre("Error@TarnelProtocol::tryParseConfig : numBytes (20) < packetSize(624)"));
    EXPECT_EQ(logger.messages.back().first, LogLevelWarning) << "nothing follows the warning";
}

// Completeness.

TEST_F(TarnelDefinitionsTest, ClearsAllEarlierDefinitionsWhenBothCountsAreZero) {
    exchange(definitionsMessage({{.action = 7, .targetType = 1, .target = "sim/int"}},
                                {{.id = 1, .name = "sim/int", .type = 1}}));
    drive(7, 5);
    EXPECT_EQ(feed(header(488, 0, 116, 0)), 20);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(feed(dataMessage({{7, 6}})), 0);
    EXPECT_EQ(answer(), kNoPlane);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), 5);
}

TEST_F(TarnelDefinitionsTest, ChangesNothingUntilTheLastOutputRecordHasArrived) {
    exchange(definitionsMessage({{.action = 7, .targetType = 1, .target = "sim/int"}},
                                {{.id = 1, .name = "sim/int", .type = 1}}));
    const Bytes earlierOutputs = fromHex("01 00 00 00 04 00 00 00 00 00 00 00");
    const Bytes message = definitionsMessage(
        {{.action = 8, .targetType = 1, .target = "sim/other"}},
        {{.id = 2, .name = "sim/other", .type = 1}, {.id = 3, .name = "sim/other", .type = 1}});
    const auto split = message.end() - 116;

    EXPECT_EQ(feed(Bytes(message.begin(), split)), 0);
    EXPECT_EQ(answer(), join({earlierOutputs, kNoPlane}));
    EXPECT_EQ(in.GetNumReadBytesAvailable(), message.size() - 116);

    EXPECT_EQ(feed(Bytes(split, message.end())), 20 + 488 + 2 * 116);
    EXPECT_EQ(answer(), join({fromHex("02 00 00 00 04 00 00 00 00 00 00 00"
                                      "03 00 00 00 04 00 00 00 00 00 00 00"),
                              kNoPlane}));
    drive(8, 9);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/other"), 9);
}

TEST_F(TarnelDefinitionsTest, WaitsForTheVeryLastByte) {
    const Bytes message = definitionsMessage({}, {{.id = 1, .name = "sim/int", .type = 1}});
    EXPECT_EQ(feed(Bytes(message.begin(), message.end() - 1)), 0);
    EXPECT_EQ(feed({message.back()}), 136);
}

TEST_F(TarnelDefinitionsTest, CountsTheDeclaredSizesButReadsRecordsAtTheirOwn) {
    const Bytes message = join({header(500, 1, 120, 1), toBytes(InputRecord{.action = 7}),
                                toBytes(OutputRecord{.id = 1, .name = "sim/int", .type = 1}),
                                fromHex("A0 A1 A2 A3 A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF")});
    EXPECT_EQ(feed(message), 20 + 500 + 120);
    EXPECT_EQ(answer(), join({fromHex("01 00 00 00 04 00 00 00 00 00 00 00"), kNoPlane}));
    EXPECT_EQ(drain(in), fromHex("A0 A1 A2 A3 A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF"));
}

TEST_F(TarnelDefinitionsTest, ComputesTheSizeOfTheMessageIn32Bits) {
    const Bytes message = join({header(0x80000000, 2, 0, 0), toBytes(InputRecord{.action = 7}),
                                toBytes(InputRecord{.action = 8})});
    EXPECT_EQ(feed(message), 20);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U) << "the records were read all the same";
}

TEST_F(TarnelDefinitionsTest, RunsIntoTheBuffersOwnCheckWhenTheRecordsAreNotThere) {
    EXPECT_THROW(feed(header(0, 1, 0, 0)), FatalReport);
    EXPECT_EQ(logger.messages.back(),
              (std::pair{LogLevelError, std::string("Error@RingBuffer::ReadInt32 : "
                                                    "GetNumReadBytesAvailable() < 4")}));
}

// Records.

const InputRecord kEveryField{.action = 101,
                              .reserved4 = 102,
                              .reserved8 = 103,
                              .targetIndex = 104,
                              .fixedInt = 105,
                              .repeatInterval = 106,
                              .intMinimum = -107,
                              .intMaximum = 108,
                              .targetType = 109,
                              .scaling = 110,
                              .rangeType = 111,
                              .rangeIndex = 112,
                              .condition = 113,
                              .fixedFloat = 1.5F,
                              .floatMinimum = -2.5F,
                              .floatMaximum = 3.5F,
                              .useFixed = 114,
                              .hold = 115,
                              .reserved72 = 116,
                              .held = 117,
                              .rangeMinimumName = "minimum",
                              .rangeMaximumName = "maximum",
                              .target = "target",
                              .conditionName = "condition",
                              .conditionType = 118,
                              .conditionIndex = -119};

TEST_F(TarnelDefinitionsTest, ReadsEveryFieldOfAnInputRecordFromItsOffset) {
    fill(in, toBytes(kEveryField));
    InputDefinitionStruct record;
    std::memset(&record, 0xEE, sizeof(record));
    protocol.extractInputStruct(&in, &record);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(record.actionIdentifier, 101);
    EXPECT_EQ(record.reserved4, 102);
    EXPECT_EQ(record.reserved8, 103);
    EXPECT_EQ(record.targetIndex, 104);
    EXPECT_EQ(record.fixedIntValue, 105);
    EXPECT_EQ(record.repeatInterval, 106);
    EXPECT_EQ(record.intRangeMinimum, -107);
    EXPECT_EQ(record.intRangeMaximum, 108);
    EXPECT_EQ(record.targetType, 109);
    EXPECT_EQ(record.scalingMode, 110);
    EXPECT_EQ(record.rangeType, 111);
    EXPECT_EQ(record.rangeIndex, 112);
    EXPECT_EQ(record.condition, 113);
    EXPECT_EQ(record.fixedFloatValue, 1.5F);
    EXPECT_EQ(record.floatRangeMinimum, -2.5F);
    EXPECT_EQ(record.floatRangeMaximum, 3.5F);
    EXPECT_EQ(record.useFixedValue, 114);
    EXPECT_EQ(record.holdCommand, 115);
    EXPECT_EQ(record.reserved72, 116);
    EXPECT_EQ(record.commandHeld, 117);
    EXPECT_STREQ(record.rangeMinimumName, "minimum");
    EXPECT_STREQ(record.rangeMaximumName, "maximum");
    EXPECT_STREQ(record.targetName, "target");
    EXPECT_STREQ(record.conditionName, "condition");
    EXPECT_EQ(record.conditionType, 118);
    EXPECT_EQ(record.conditionIndex, -119);
}

TEST_F(TarnelDefinitionsTest, TerminatesEveryNameOfAnInputRecord) {
    fill(in, toBytes({.rangeMinimumName = std::string(100, 'a'),
                      .rangeMaximumName = std::string(100, 'b'),
                      .target = std::string(100, 'c'),
                      .conditionName = std::string(100, 'd')}));
    InputDefinitionStruct record{};
    protocol.extractInputStruct(&in, &record);
    EXPECT_EQ(record.rangeMinimumName, std::string(99, 'a'));
    EXPECT_EQ(record.rangeMaximumName, std::string(99, 'b'));
    EXPECT_EQ(record.targetName, std::string(99, 'c'));
    EXPECT_EQ(record.conditionName, std::string(99, 'd'));
}

TEST_F(TarnelDefinitionsTest, ReadsEveryFieldOfAnOutputRecordFromItsOffset) {
    fill(in, toBytes(OutputRecord{
                 .id = 0xFEDCBA98, .name = "output", .type = 4, .first = -3, .count = 9}));
    OutputDefinitionStruct record;
    std::memset(&record, 0xEE, sizeof(record));
    protocol.extractOutputStruct(&in, &record);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(record.outputIdentifier, 0xFEDCBA98U);
    EXPECT_STREQ(record.name, "output");
    EXPECT_EQ(record.type, 4);
    EXPECT_EQ(record.firstElement, -3);
    EXPECT_EQ(record.elementCount, 9);
}

TEST_F(TarnelDefinitionsTest, TerminatesTheNameOfAnOutputRecord) {
    fill(in, toBytes(OutputRecord{.name = std::string(100, 'x')}));
    OutputDefinitionStruct record{};
    protocol.extractOutputStruct(&in, &record);
    EXPECT_EQ(record.name, std::string(99, 'x'));
}

TEST_F(TarnelDefinitionsTest, ReadsAnItemWithItsValueAsRawBytes) {
    fill(in, fromHex("98 BA DC FE 01 02 03 04"));
    HardwareDataStruct record{};
    protocol.extractHardwareDataStruct(&in, &record);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(record.actionIdentifier, 0xFEDCBA98U);
    EXPECT_THAT(record.value, ElementsAre(1, 2, 3, 4));
}

// What a record becomes.

TEST_F(TarnelDefinitionsTest, CutsANameOf100BytesTo99) {
    const std::string name99(99, 'n');
    simulator.Datarefs().Define({.name = name99, .types = xplmType_Int});
    exchange(
        definitionsMessage({{.action = 7, .targetType = 1, .target = std::string(100, 'n')}}, {}));
    drive(7, 42);
    EXPECT_EQ(simulator.Datarefs().GetInt(name99), 42);
}

TEST_F(TarnelDefinitionsTest, GathersRecordsOfOneIdentifierInOneActionInMessageOrder) {
    exchange(definitionsMessage({{.action = 7, .targetType = 1, .target = "sim/other"},
                                 {.action = 8, .targetType = 6, .target = "sim/command"},
                                 {.action = 7, .targetType = 1, .target = "sim/int"}},
                                {}));
    simulator.Recorder().Enable();
    drive(7, 1);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/other, 1)", "XPLMSetDatai(sim/int, 1)"));
}

TEST_F(TarnelDefinitionsTest, TakesActionIdentifiersAsSigned) {
    exchange(definitionsMessage({{.action = -1, .targetType = 1, .target = "sim/int"}}, {}));
    drive(0xFFFFFFFF, 5);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), 5);
}

TEST_F(TarnelDefinitionsTest, GivesOutputsTheProviderAndTheObserverAndItself) {
    exchange(definitionsMessage({}, {{.id = 1, .name = "kyr/int", .type = 1},
                                     {.id = 9, .name = "kyr/command", .type = 6},
                                     {.id = 2, .name = "kyr/floats", .type = 4, .count = 3}}));
    EXPECT_THAT(provider.calls,
                ElementsAre("RegisterInt kyr/int", "RegisterFloatArray 3 kyr/floats"));
    EXPECT_THAT(observer.registered,
                ElementsAre(FakeCommandObserver::Subscription{&protocol, 9, "kyr/command"}));
}

TEST_F(TarnelDefinitionsTest, AnswersAtOnceWithTheOutputsInTheOrderOfTheMessage) {
    loadPlane();
    simulator.Datarefs().SetInt("sim/int", 0x01020304);
    simulator.Datarefs().SetInt("sim/other", -2);
    EXPECT_EQ(exchange(definitionsMessage({}, {{.id = 9, .name = "sim/other", .type = 1},
                                               {.id = 3, .name = "kyr/command", .type = 6},
                                               {.id = 5, .name = "sim/int", .type = 1}})),
              join({fromHex("09 00 00 00 04 00 00 00 FE FF FF FF"
                            "03 00 00 00 01 00 00 00 00"
                            "05 00 00 00 04 00 00 00 04 03 02 01"),
                    kPlane}));
}

TEST_F(TarnelDefinitionsTest, NotifiesTheFirstOfTwoCommandOutputsOfOneIdentifier) {
    loadPlane();
    exchange(definitionsMessage({}, {{.id = 5, .name = "kyr/first", .type = 6},
                                     {.id = 5, .name = "kyr/second", .type = 6}}));
    protocol.HandleCommand(5, 0);
    feed();
    EXPECT_EQ(answer(), join({fromHex("05 00 00 00 01 00 00 00 01"
                                      "05 00 00 00 01 00 00 00 00"),
                              kPlane}));
}

TEST_F(TarnelDefinitionsTest, DoesNotNotifyAnOutputThatIsNotACommand) {
    loadPlane();
    exchange(definitionsMessage({}, {{.id = 5, .name = "sim/int", .type = 1}}));
    EXPECT_EQ(protocol.HandleCommand(5, 0), 1);
    feed();
    EXPECT_EQ(answer(), join({fromHex("05 00 00 00 04 00 00 00 00 00 00 00"), kPlane}));
}

// Replacement.

TEST_F(TarnelDefinitionsTest, ReplacesAllEarlierInputs) {
    exchange(definitionsMessage({{.action = 7, .targetType = 1, .target = "sim/int"},
                                 {.action = 8, .targetType = 1, .target = "sim/int"}},
                                {}));
    exchange(definitionsMessage({{.action = 7, .targetType = 1, .target = "sim/other"}}, {}));
    drive(7, 5);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), 0);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/other"), 5);
    EXPECT_EQ(feed(dataMessage({{8, 6}})), 0);
}

TEST_F(TarnelDefinitionsTest, NoLongerNotifiesCommandOutputsOfTheEarlierMessage) {
    loadPlane();
    exchange(definitionsMessage({}, {{.id = 5, .name = "kyr/command", .type = 6}}));
    exchange(definitionsMessage({}, {{.id = 6, .name = "kyr/command", .type = 6}}));
    EXPECT_EQ(protocol.HandleCommand(5, 0), 1);
    feed();
    EXPECT_EQ(answer(), join({fromHex("06 00 00 00 01 00 00 00 00"), kPlane}));
}

TEST_F(TarnelDefinitionsTest, ForgetsThePressOfACommandOutputThatIsDefinedAgain) {
    loadPlane();
    const Bytes message = definitionsMessage({}, {{.id = 5, .name = "kyr/command", .type = 6}});
    exchange(message);
    protocol.HandleCommand(5, 0);
    EXPECT_EQ(exchange(message), join({fromHex("05 00 00 00 01 00 00 00 00"), kPlane}));
}

TEST_F(TarnelDefinitionsTest, DiscardsTheEarlierDefinitionsBeforeItBuildsTheNew) {
    exchange(definitionsMessage({}, {{.id = 5, .name = "kyr/command", .type = 6}}));
    int results = 0;
    provider.onCall = [&] { results = protocol.HandleCommand(5, 0); };
    loadPlane();
    EXPECT_EQ(exchange(definitionsMessage({}, {{.id = 6, .name = "kyr/int", .type = 1},
                                               {.id = 5, .name = "kyr/command", .type = 6}})),
              join({fromHex("06 00 00 00 04 00 00 00 00 00 00 00"
                            "05 00 00 00 01 00 00 00 00"),
                    kPlane}));
    EXPECT_EQ(results, 1);
}

TEST_F(TarnelDefinitionsTest, LetsTheExceptionOfAnOutputOut) {
    provider.onCall = [] { throw std::length_error("too long"); };
    EXPECT_THROW(feed(definitionsMessage({}, {{.name = "kyr/ints", .type = 3, .count = -1}})),
                 std::length_error);
    EXPECT_THAT(provider.calls, ElementsAre("RegisterIntArray 18446744073709551615 kyr/ints"));
}

} // namespace
