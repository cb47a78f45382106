#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "UnexpectedAnswer.h"
#include "support/Bytes.h"
#include "tarnel/Wire.h"

namespace {

using namespace orvane::tarnel;
using orvane::detail::UnexpectedAnswer;

constexpr std::size_t kHead = 24;

// The record of the only input of a request.
Bytes recordOf(const Input& input) {
    Definitions definitions;
    definitions.add(input);
    const Bytes request = wire::definitionsRequest(definitions);
    EXPECT_EQ(toHex(Bytes(request.begin(), request.begin() + kHead)),
              "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 00 00 00 00");
    Bytes record(request.begin() + kHead, request.end());
    EXPECT_EQ(record.size(), 488U);
    return record;
}

// The fields of a record that are not zero: their four bytes, by offset.
std::string numbersOf(const Bytes& record) {
    std::string text;
    for (std::size_t offset = 0; offset < record.size(); offset += 4) {
        const bool isText = offset >= 80 && offset < 480;
        const Bytes field(record.begin() + static_cast<long>(offset),
                          record.begin() + static_cast<long>(offset) + 4);
        if (!isText && field != zeros(4)) {
            text += std::to_string(offset) + ": " + toHex(field) + "; ";
        }
    }
    return text;
}

Bytes textAt(const Bytes& record, std::size_t offset) {
    return {record.begin() + static_cast<long>(offset),
            record.begin() + static_cast<long>(offset) + 100};
}

TEST(ClientTarnelWireTest, AsksForTheVersion) {
    EXPECT_EQ(toHex(wire::versionRequest()), "11 22 33 44 B1 6B 00 B5");
    const Version version = wire::readVersion(fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00"));
    EXPECT_EQ(version.parts, (std::array<std::uint8_t, 4>{1, 0, 7, 10}));
    EXPECT_EQ(version.revision, 6U);
}

TEST(ClientTarnelWireTest, RejectsAVersionOfAnotherShape) {
    for (const char* wrong :
         {"B1 6B 00 B5 01 00 07 0A 06 00 00", "FF FF 00 00 04 00 00 00 00 00 00 00",
          "B1 6B 00 B5 01 00 07 0A 06 00 00 00 00"}) {
        EXPECT_THROW(wire::readVersion(fromHex(wrong)), UnexpectedAnswer) << wrong;
    }
}

TEST(ClientTarnelWireTest, SendsDataItems) {
    EXPECT_EQ(toHex(wire::dataRequest({})), "11 22 33 44 DE AD BE EF 08 00 00 00 00 00 00 00");
    const std::vector<Item> items{{7, 49152}, {-1, -2}};
    EXPECT_EQ(toHex(wire::dataRequest(items)),
              "11 22 33 44 DE AD BE EF 08 00 00 00 02 00 00 00 "
              "07 00 00 00 00 C0 00 00 FF FF FF FF FE FF FF FF");
}

TEST(ClientTarnelWireTest, WritesTheFieldsOfAnAxis) {
    const Bytes record =
        recordOf(Input::toFloat(7, "a/axis").scaledByFloatRange(-1, 1).skippedWhenZero());
    EXPECT_EQ(numbersOf(record),
              "0: 07 00 00 00; 32: 02 00 00 00; 36: 02 00 00 00; 48: 02 00 00 00; "
              "56: 00 00 80 BF; 60: 00 00 80 3F; ");
    EXPECT_EQ(textAt(record, 280), name("a/axis", 100));
    EXPECT_EQ(textAt(record, 80), zeros(100));
    EXPECT_EQ(textAt(record, 180), zeros(100));
    EXPECT_EQ(textAt(record, 380), zeros(100));
}

TEST(ClientTarnelWireTest, WritesEachTarget) {
    EXPECT_EQ(numbersOf(recordOf(Input::toInt(1, "a"))), "0: 01 00 00 00; 32: 01 00 00 00; ");
    EXPECT_EQ(numbersOf(recordOf(Input::toIntElement(1, "a", 5))),
              "0: 01 00 00 00; 12: 05 00 00 00; 32: 03 00 00 00; ");
    EXPECT_EQ(numbersOf(recordOf(Input::toFloatElement(1, "a", 6))),
              "0: 01 00 00 00; 12: 06 00 00 00; 32: 04 00 00 00; ");
    EXPECT_EQ(numbersOf(recordOf(Input::toCommand(1, "a"))), "0: 01 00 00 00; 32: 06 00 00 00; ");
}

TEST(ClientTarnelWireTest, WritesEachScaling) {
    EXPECT_EQ(numbersOf(recordOf(Input::toFloat(1, "a").scaledByIntRange(-2, 3))),
              "0: 01 00 00 00; 24: FE FF FF FF; 28: 03 00 00 00; 32: 02 00 00 00; "
              "36: 01 00 00 00; ");
    const Bytes datarefs = recordOf(Input::toFloat(1, "a").scaledByDatarefs("low", "high"));
    EXPECT_EQ(numbersOf(datarefs),
              "0: 01 00 00 00; 32: 02 00 00 00; 36: 03 00 00 00; 40: 02 00 00 00; ");
    EXPECT_EQ(textAt(datarefs, 80), name("low", 100));
    EXPECT_EQ(textAt(datarefs, 180), name("high", 100));
    EXPECT_EQ(numbersOf(recordOf(
                  Input::toFloatElement(1, "a", 2).scaledByDatarefElements("low", "high", 3))),
              "0: 01 00 00 00; 12: 02 00 00 00; 32: 04 00 00 00; 36: 03 00 00 00; "
              "40: 04 00 00 00; 44: 03 00 00 00; ");
}

TEST(ClientTarnelWireTest, WritesEachCondition) {
    EXPECT_EQ(numbersOf(recordOf(Input::toInt(1, "a").skippedWhenOne())),
              "0: 01 00 00 00; 32: 01 00 00 00; 48: 01 00 00 00; ");
    using Type = ConditionDataref::Type;
    const Bytes positive =
        recordOf(Input::toInt(1, "a").skippedWhilePositive({"gate", Type::FloatElement, 2}));
    EXPECT_EQ(numbersOf(positive),
              "0: 01 00 00 00; 32: 01 00 00 00; 48: 03 00 00 00; 480: 04 00 00 00; "
              "484: 02 00 00 00; ");
    EXPECT_EQ(textAt(positive, 380), name("gate", 100));
    EXPECT_EQ(numbersOf(recordOf(Input::toInt(1, "a").skippedWhileZero({"gate", Type::Int}))),
              "0: 01 00 00 00; 32: 01 00 00 00; 48: 04 00 00 00; 480: 01 00 00 00; ");
}

TEST(ClientTarnelWireTest, WritesFixedValuesHoldAndRepeat) {
    EXPECT_EQ(numbersOf(recordOf(Input::toInt(1, "a").fixed(-5))),
              "0: 01 00 00 00; 16: FB FF FF FF; 32: 01 00 00 00; 64: 01 00 00 00; ");
    EXPECT_EQ(numbersOf(recordOf(Input::toFloat(1, "a").fixed(2.0F))),
              "0: 01 00 00 00; 32: 02 00 00 00; 52: 00 00 00 40; 64: 01 00 00 00; ");
    EXPECT_EQ(numbersOf(recordOf(Input::toCommand(1, "a").held())),
              "0: 01 00 00 00; 32: 06 00 00 00; 68: 01 00 00 00; ");
    EXPECT_EQ(
        numbersOf(recordOf(Input::toCommand(1, "a").repeatedEvery(std::chrono::milliseconds(300)))),
        "0: 01 00 00 00; 20: 2C 01 00 00; 32: 06 00 00 00; ");
}

TEST(ClientTarnelWireTest, WritesOutputsAfterInputs) {
    Definitions definitions;
    definitions.add(Output::ofFloatArray(3, "a/b", 8, 2)).add(Input::toInt(1, "c"));
    definitions.add(Output::ofCommand(4, "kyr/d"));
    const Bytes request = wire::definitionsRequest(definitions);
    ASSERT_EQ(request.size(), 24U + 488 + 2 * 116);
    EXPECT_EQ(definitions.requestSize(), request.size());
    EXPECT_EQ(toHex(Bytes(request.begin() + 8, request.begin() + 24)),
              "E8 01 00 00 01 00 00 00 74 00 00 00 02 00 00 00");
    const Bytes first(request.begin() + 24 + 488, request.begin() + 24 + 488 + 116);
    EXPECT_EQ(first, join({fromHex("03 00 00 00"), name("a/b", 100),
                           fromHex("04 00 00 00 02 00 00 00 08 00 00 00")}));
    const Bytes second(request.begin() + 24 + 488 + 116, request.end());
    EXPECT_EQ(second, join({fromHex("04 00 00 00"), name("kyr/d", 100),
                            fromHex("06 00 00 00 00 00 00 00 01 00 00 00")}));
}

class AnswerTest : public testing::Test {
protected:
    AnswerTest() {
        definitions.add(Output::ofInt(1, "a"))
            .add(Output::ofCommand(2, "kyr/b"))
            .add(Output::ofFloatArray(3, "c", 2))
            .add(Output::ofFloat(4, "d"))
            .add(Output::ofIntArray(5, "e", 1))
            .add(Output::ofCommand(6, "kyr/f"));
    }

    Answer read(const char* hex) const {
        return wire::readAnswer(fromHex(hex), definitions.outputs());
    }

    Definitions definitions;
};

TEST_F(AnswerTest, IsDecodedByWhatWasDeclared) {
    const Answer answer = read(
        "01 00 00 00 04 00 00 00 FF FF FF FF "
        "02 00 00 00 01 00 00 00 01 "
        "03 00 00 00 08 00 00 00 00 00 00 3F 00 00 00 40 "
        "04 00 00 00 04 00 00 00 00 00 80 3F "
        "05 00 00 00 04 00 00 00 07 00 00 00 "
        "06 00 00 00 01 00 00 00 00 "
        "FF FF 00 00 04 00 00 00 5C 2B 57 A4");
    EXPECT_EQ(definitions.answerSize(), 86U);
    ASSERT_EQ(answer.outputs.size(), 6U);
    EXPECT_EQ(answer.outputs[2].id, 3U);
    EXPECT_EQ(answer.get<std::int32_t>(1), -1);
    EXPECT_TRUE(answer.get<bool>(2));
    EXPECT_EQ(answer.get<std::vector<float>>(3), (std::vector<float>{0.5F, 2.0F}));
    EXPECT_EQ(answer.get<float>(4), 1.0F);
    EXPECT_EQ(answer.get<std::vector<std::int32_t>>(5), (std::vector<std::int32_t>{7}));
    EXPECT_FALSE(answer.get<bool>(6));
    EXPECT_EQ(answer.aircraftId, 0xA4572B5CU);
    EXPECT_TRUE(answer.isAircraftLoaded());
    EXPECT_THROW(answer.at(7), std::out_of_range);
    EXPECT_THROW(answer.get<float>(1), std::bad_variant_access);
}

TEST_F(AnswerTest, HasTheIdentifierOfACommandTwiceWithoutAnAircraft) {
    const Answer answer = read(
        "01 00 00 00 04 00 00 00 00 00 00 00 "
        "02 00 00 00 02 00 00 00 01 00 00 00 00 "
        "03 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00 "
        "04 00 00 00 04 00 00 00 00 00 00 00 "
        "05 00 00 00 04 00 00 00 00 00 00 00 "
        "06 00 00 00 06 00 00 00 01 00 00 00 00 "
        "FF FF 00 00 04 00 00 00 00 00 00 00");
    EXPECT_FALSE(answer.get<bool>(2));
    EXPECT_FALSE(answer.isAircraftLoaded());
}

TEST_F(AnswerTest, OfAnotherLengthNamesTheAllowedLengths) {
    try {
        read("FF FF 00 00 04 00 00 00 5C 2B 57 A4");
        FAIL() << "was accepted";
    } catch (const UnexpectedAnswer& answer) {
        EXPECT_STREQ(answer.what(),
                     "expected an answer of 82 or, without an aircraft, 90 bytes, got 12");
    }
}

TEST(ClientTarnelWireTest, RejectsAnEntryOfAnotherShape) {
    Definitions definitions;
    definitions.add(Output::ofCommand(1, "kyr/a"));
    for (const char* wrong : {
             "02 00 00 00 01 00 00 00 01 FF FF 00 00 04 00 00 00 00 00 00 00", // identifier
             "01 00 00 00 02 00 00 00 01 FF FF 00 00 04 00 00 00 00 00 00 00", // length
             "01 00 00 00 01 00 00 00 02 FF FF 00 00 04 00 00 00 00 00 00 00", // state
             "01 00 00 00 01 00 00 00 01 FE FF 00 00 04 00 00 00 00 00 00 00", // aircraft
             "01 00 00 00 01 00 00 00 01 FF FF 00 00 05 00 00 00 00 00 00 00", // its length
             "01 00 00 00 02 00 00 00 01 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00",
             "01 00 00 00 01 00 00 00 01 FF FF 00 00 04 00 00 00 00 00 00",
         }) {
        EXPECT_THROW(wire::readAnswer(fromHex(wrong), definitions.outputs()), UnexpectedAnswer)
            << wrong;
    }
}

} // namespace
