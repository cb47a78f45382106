#include "tools/demo/TarnelWire.h"

#include "support/Bytes.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <variant>

namespace {

using demo::OutputRecord;
using demo::OutputStream;
using demo::ValueType;

class TarnelWireTest : public testing::Test {
protected:
    // What the decoder says about the answer, empty when it is content.
    static std::string complaint(const std::string& payload,
                                 const std::vector<OutputRecord>& declared) {
        try {
            demo::DecodeOutputs(fromHex(payload), declared);
        } catch (const demo::WireError& error) {
            return error.what();
        }
        return "";
    }

    static OutputStream decode(const std::string& payload,
                               const std::vector<OutputRecord>& declared) {
        return demo::DecodeOutputs(fromHex(payload), declared);
    }

    static OutputRecord output(std::int32_t id, ValueType type, std::int32_t count = 0,
                               const char* name = "sim/x") {
        return {.outputId = id, .name = name, .type = type, .elementCount = count};
    }

    static OutputRecord command(std::int32_t id) {
        return output(id, ValueType::Command, 0, "kyr/button");
    }

    // Bytes `first` to `first + 3` of the only input record of a message.
    static std::string inputField(const demo::InputRecord& record, std::size_t first) {
        const Bytes message = demo::EncodeDefinitions({&record, 1}, {});
        const auto begin = message.begin() + static_cast<std::ptrdiff_t>(24 + first);
        return toHex({begin, begin + 4});
    }
};

TEST_F(TarnelWireTest, BeginsEveryRequestWithTheIdentification) {
    EXPECT_EQ(toHex(demo::EncodeIdentification()), "11 22 33 44");
}

TEST_F(TarnelWireTest, AsksForTheVersionWithTheBareSpecifier) {
    EXPECT_EQ(toHex(demo::EncodeVersion()), "11 22 33 44 B1 6B 00 B5");
}

TEST_F(TarnelWireTest, DeclaresNothingWithSizesAndZeroCounts) {
    EXPECT_EQ(toHex(demo::EncodeDefinitions({}, {})),
              "11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 00 00 00 00");
}

TEST_F(TarnelWireTest, PutsEveryFieldOfAnInputAtItsOffset) {
    const demo::InputRecord record{.actionId = 0x01020304,
                                   .reservedA = 0x11,
                                   .reservedB = 0x12,
                                   .targetIndex = 0x13,
                                   .fixedInt = -2,
                                   .repeatIntervalMs = 200,
                                   .intRangeMinimum = -100,
                                   .intRangeMaximum = 100,
                                   .targetType = ValueType::Command,
                                   .scaling = demo::Scaling::DatarefRange,
                                   .rangeType = ValueType::FloatArray,
                                   .rangeIndex = 0x14,
                                   .condition = demo::Condition::SkipIfDatarefZero,
                                   .fixedFloat = 1.0F,
                                   .floatRangeMinimum = -1.0F,
                                   .floatRangeMaximum = 0.5F,
                                   .useFixedValue = 0x15,
                                   .holdCommand = 0x16,
                                   .reservedC = 0x17,
                                   .commandHeld = 0x18,
                                   .rangeMinimumName = "min",
                                   .rangeMaximumName = "max",
                                   .targetName = "target",
                                   .conditionName = "when",
                                   .conditionType = ValueType::IntArray,
                                   .conditionIndex = 0x19};
    EXPECT_EQ(toHex(demo::EncodeDefinitions({&record, 1}, {})),
              "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 00 00 00 00 "
              "04 03 02 01 11 00 00 00 12 00 00 00 13 00 00 00 FE FF FF FF C8 00 00 00 "
              "9C FF FF FF 64 00 00 00 06 00 00 00 03 00 00 00 04 00 00 00 14 00 00 00 "
              "04 00 00 00 00 00 80 3F 00 00 80 BF 00 00 00 3F 15 00 00 00 16 00 00 00 "
              "17 00 00 00 18 00 00 00 " +
                  toHex(join({fromHex("6D 69 6E"), zeros(97), fromHex("6D 61 78"), zeros(97),
                              fromHex("74 61 72 67 65 74"), zeros(94), fromHex("77 68 65 6E"),
                              zeros(96)})) +
                  " 03 00 00 00 19 00 00 00");
}

TEST_F(TarnelWireTest, GivesEveryScalingItsNumber) {
    EXPECT_EQ(inputField({.scaling = demo::Scaling::None}, 36), "00 00 00 00");
    EXPECT_EQ(inputField({.scaling = demo::Scaling::IntRange}, 36), "01 00 00 00");
    EXPECT_EQ(inputField({.scaling = demo::Scaling::FloatRange}, 36), "02 00 00 00");
    EXPECT_EQ(inputField({.scaling = demo::Scaling::DatarefRange}, 36), "03 00 00 00");
}

TEST_F(TarnelWireTest, GivesEveryConditionItsNumber) {
    EXPECT_EQ(inputField({.condition = demo::Condition::None}, 48), "00 00 00 00");
    EXPECT_EQ(inputField({.condition = demo::Condition::SkipOne}, 48), "01 00 00 00");
    EXPECT_EQ(inputField({.condition = demo::Condition::SkipZero}, 48), "02 00 00 00");
    EXPECT_EQ(inputField({.condition = demo::Condition::SkipIfDatarefPositive}, 48), "03 00 00 00");
    EXPECT_EQ(inputField({.condition = demo::Condition::SkipIfDatarefZero}, 48), "04 00 00 00");
}

TEST_F(TarnelWireTest, GivesEveryValueTypeItsNumber) {
    EXPECT_EQ(inputField({.targetType = ValueType::Int}, 32), "01 00 00 00");
    EXPECT_EQ(inputField({.targetType = ValueType::Float}, 32), "02 00 00 00");
    EXPECT_EQ(inputField({.targetType = ValueType::IntArray}, 32), "03 00 00 00");
    EXPECT_EQ(inputField({.targetType = ValueType::FloatArray}, 32), "04 00 00 00");
    EXPECT_EQ(inputField({.targetType = ValueType::Command}, 32), "06 00 00 00");
}

TEST_F(TarnelWireTest, PutsEveryFieldOfAnOutputAtItsOffset) {
    const OutputRecord record{.outputId = 0x0A0B0C0D,
                              .name = "kyr/b",
                              .type = ValueType::FloatArray,
                              .firstElement = 2,
                              .elementCount = -3};
    EXPECT_EQ(toHex(demo::EncodeDefinitions({}, {&record, 1})),
              "11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 01 00 00 00 "
              "0D 0C 0B 0A 6B 79 72 2F 62 " +
                  toHex(zeros(95)) + " 04 00 00 00 02 00 00 00 FD FF FF FF");
}

TEST_F(TarnelWireTest, PutsInputsBeforeOutputs) {
    const std::vector<demo::InputRecord> inputs(2);
    const std::vector<OutputRecord> outputs(3);
    const Bytes message = demo::EncodeDefinitions(inputs, outputs);
    EXPECT_EQ(message.size(), 24U + 2 * 488 + 3 * 116);
    EXPECT_EQ(toHex({message.begin() + 8, message.begin() + 24}),
              "E8 01 00 00 02 00 00 00 74 00 00 00 03 00 00 00");
}

TEST_F(TarnelWireTest, SendsANameOfAHundredBytesAsItIs) {
    const OutputRecord record{.name = std::string(100, 'n')};
    const Bytes message = demo::EncodeDefinitions({}, {&record, 1});
    EXPECT_EQ(message.size(), 24U + 116);
    EXPECT_EQ(Bytes(message.begin() + 28, message.begin() + 128), Bytes(100, 'n'));
}

TEST_F(TarnelWireTest, RefusesANameThatDoesNotFit) {
    const OutputRecord record{.name = std::string(101, 'n')};
    EXPECT_THROW(demo::EncodeDefinitions({}, {&record, 1}), std::invalid_argument);
}

TEST_F(TarnelWireTest, SendsItemsInOrder) {
    const std::vector<demo::DataItem> items{{7, 65535}, {0xFFFFFFFF, -1}};
    EXPECT_EQ(toHex(demo::EncodeData(items)),
              "11 22 33 44 DE AD BE EF 08 00 00 00 02 00 00 00 "
              "07 00 00 00 FF FF 00 00 FF FF FF FF FF FF FF FF");
}

TEST_F(TarnelWireTest, SendsNoItems) {
    EXPECT_EQ(toHex(demo::EncodeData({})), "11 22 33 44 DE AD BE EF 08 00 00 00 00 00 00 00");
}

TEST_F(TarnelWireTest, TakesThePayloadOutOfAFrame) {
    EXPECT_EQ(toHex(demo::DecodeFrame(fromHex("03 00 00 00 AA BB CC"))), "AA BB CC");
    EXPECT_EQ(demo::DecodeFrame(fromHex("00 00 00 00")), Bytes());
}

TEST_F(TarnelWireTest, RefusesAFrameThatIsShorterOrLongerThanItSays) {
    EXPECT_THROW(demo::DecodeFrame(fromHex("03 00 00")), demo::WireError);
    EXPECT_THROW(demo::DecodeFrame(fromHex("03 00 00 00 AA BB")), demo::WireError);
    EXPECT_THROW(demo::DecodeFrame(fromHex("03 00 00 00 AA BB CC DD")), demo::WireError);
}

TEST_F(TarnelWireTest, RefusesALengthThatNoServerCanSend) {
    const std::array<std::uint8_t, 4> longest{0xFB, 0xFF, 0xFF, 0x0F};
    EXPECT_EQ(demo::DecodeFrameHeader(longest), 0x0FFFFFFBU);
    const std::array<std::uint8_t, 4> longer{0xFC, 0xFF, 0xFF, 0x0F};
    EXPECT_THROW(demo::DecodeFrameHeader(longer), demo::WireError);
}

TEST_F(TarnelWireTest, ReadsTheVersionAnswer) {
    const demo::VersionAnswer answer =
        demo::DecodeVersion(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00"));
    EXPECT_EQ(answer, (demo::VersionAnswer{{1, 0, 7, 10}, 6}));
}

TEST_F(TarnelWireTest, RefusesAVersionAnswerOfAnotherLengthOrSpecifier) {
    EXPECT_THROW(demo::DecodeVersion(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00")), demo::WireError);
    EXPECT_THROW(demo::DecodeVersion(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00 00")),
                 demo::WireError);
    EXPECT_THROW(demo::DecodeVersion(fromHex("B2 6B 00 B5 01 00 07 0A 06 00 00 00")),
                 demo::WireError);
    EXPECT_THROW(demo::DecodeVersion({}), demo::WireError);
}

TEST_F(TarnelWireTest, ReadsAStreamWithoutOutputs) {
    const OutputStream stream = decode("FF FF 00 00 04 00 00 00 78 56 34 12", {});
    EXPECT_TRUE(stream.outputs.empty());
    EXPECT_EQ(stream.aircraftId, 0x12345678U);
    EXPECT_FALSE(stream.commandIdsTwice);
}

TEST_F(TarnelWireTest, ReadsValuesOfEveryType) {
    const OutputStream stream = decode(
        "01 00 00 00 04 00 00 00 FE FF FF FF "
        "02 00 00 00 04 00 00 00 00 00 80 BF "
        "03 00 00 00 08 00 00 00 05 00 00 00 FF FF FF FF "
        "04 00 00 00 04 00 00 00 00 00 00 3F "
        "05 00 00 00 01 00 00 00 01 "
        "FF FF 00 00 04 00 00 00 01 00 00 00",
        {output(1, ValueType::Int), output(2, ValueType::Float), output(3, ValueType::IntArray, 2),
         output(4, ValueType::FloatArray, 1), command(5)});
    EXPECT_EQ(stream.outputs, (std::vector<demo::OutputValue>{{1, -2},
                                                              {2, -1.0F},
                                                              {3, std::vector<std::int32_t>{5, -1}},
                                                              {4, std::vector<float>{0.5F}},
                                                              {5, true}}));
    EXPECT_EQ(stream.aircraftId, 1U);
}

TEST_F(TarnelWireTest, ReadsArraysOfNoElements) {
    const OutputStream stream = decode(
        "01 00 00 00 00 00 00 00 02 00 00 00 FC FF FF FF FF FF 00 00 04 00 00 00 00 00 00 00",
        {output(1, ValueType::IntArray, 0), output(2, ValueType::FloatArray, -1)});
    EXPECT_EQ(stream.outputs, (std::vector<demo::OutputValue>{{1, std::vector<std::int32_t>{}},
                                                              {2, std::vector<float>{}}}));
}

TEST_F(TarnelWireTest, ReadsTheIdentifierAloneOfAnOutputOfUnknownType) {
    const OutputStream stream = decode(
        "09 00 00 00 0A 00 00 00 04 00 00 00 07 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
        {output(9, static_cast<ValueType>(5)), output(10, ValueType::Int)});
    EXPECT_EQ(stream.outputs, (std::vector<demo::OutputValue>{{9, std::monostate{}}, {10, 7}}));
}

TEST_F(TarnelWireTest, ReadsTheIdentifierAloneOfACommandWithAnotherPrefix) {
    const OutputStream stream =
        decode("09 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
               {output(9, ValueType::Command, 0, "sim/flight_controls/flaps_up")});
    EXPECT_EQ(stream.outputs, (std::vector<demo::OutputValue>{{9, std::monostate{}}}));
}

TEST_F(TarnelWireTest, ReadsACommandWithItsIdentifierTwice) {
    const OutputStream stream = decode(
        "05 00 00 00 05 00 00 00 01 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00", {command(5)});
    EXPECT_EQ(stream.outputs, (std::vector<demo::OutputValue>{{5, false}}));
    EXPECT_TRUE(stream.commandIdsTwice);
}

TEST_F(TarnelWireTest, TellsBothFormsOfACommandWhoseIdentifierIsOne) {
    const OutputStream once =
        decode("01 00 00 00 01 00 00 00 01 FF FF 00 00 04 00 00 00 02 00 00 00", {command(1)});
    EXPECT_EQ(once.outputs, (std::vector<demo::OutputValue>{{1, true}}));
    EXPECT_FALSE(once.commandIdsTwice);

    const OutputStream twice = decode(
        "01 00 00 00 01 00 00 00 01 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00", {command(1)});
    EXPECT_EQ(twice.outputs, (std::vector<demo::OutputValue>{{1, false}}));
    EXPECT_TRUE(twice.commandIdsTwice);
}

TEST_F(TarnelWireTest, SaysHowLongTheStreamShouldBe) {
    EXPECT_EQ(complaint("FF FF 00 00 04 00 00 00 00 00 00", {}),
              "output stream of 11 bytes, the 0 declared outputs take 12");
    EXPECT_EQ(complaint("FF FF 00 00 04 00 00 00 00 00 00 00 00", {}),
              "output stream of 13 bytes, the 0 declared outputs take 12");
    EXPECT_EQ(complaint("", {output(1, ValueType::Int), command(2)}),
              "output stream of 0 bytes, the 2 declared outputs take 33 or 37");
}

TEST_F(TarnelWireTest, SaysWhichFieldOfTheStreamIsWrong) {
    const std::vector<OutputRecord> number{output(1, ValueType::Int)};
    EXPECT_EQ(complaint("02 00 00 00 04 00 00 00 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
                        number),
              "identifier in the entry of output 1 is 0x00000002, not 0x00000001");
    EXPECT_EQ(complaint("01 00 00 00 05 00 00 00 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
                        number),
              "length in the entry of output 1 is 0x00000005, not 0x00000004");
    EXPECT_EQ(complaint("01 00 00 00 04 00 00 00 00 00 00 00 FE FF 00 00 04 00 00 00 00 00 00 00",
                        number),
              "identifier of the trailer is 0x0000FFFE, not 0x0000FFFF");
    EXPECT_EQ(complaint("01 00 00 00 04 00 00 00 00 00 00 00 FF FF 00 00 03 00 00 00 00 00 00 00",
                        number),
              "length of the trailer is 0x00000003, not 0x00000004");
}

TEST_F(TarnelWireTest, SaysWhichFieldOfACommandIsWrong) {
    EXPECT_EQ(
        complaint("05 00 00 00 06 00 00 00 01 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
                  {command(5)}),
        "second identifier in the entry of output 5 is 0x00000006, not 0x00000005");
    EXPECT_EQ(
        complaint("05 00 00 00 01 00 00 00 02 FF FF 00 00 04 00 00 00 00 00 00 00", {command(5)}),
        "state in the entry of output 5 is 2, not 0 or 1");
}

} // namespace
