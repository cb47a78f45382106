#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/velmar/XPlaneDataRef.h"
#include "support/Bytes.h"
#include "support/RecordingLogger.h"
#include "support/TextOf.h"

namespace {

constexpr const char* kName = "sim/value";

class XPlaneDataRefTest : public testing::Test {
protected:
    std::unique_ptr<XPlaneDataRef> read(const Bytes& bytes) {
        fill(in, bytes);
        return std::unique_ptr<XPlaneDataRef>(XPlaneDataRef::FromStream(&in, &logger));
    }

    void define(XPLMDataTypeID types, int elements = 0) {
        simulator.Datarefs().Define({.name = kName, .types = types, .elements = elements});
    }

    static std::unique_ptr<XPlaneDataRef> resolved(VelmarDataType type, unsigned int size = 0) {
        auto dataref = std::make_unique<XPlaneDataRef>(7, type, size, kName);
        EXPECT_TRUE(dataref->FindReference());
        return dataref;
    }

    // What ReadData writes.
    std::string valueOf(XPlaneDataRef& dataref) {
        EXPECT_TRUE(dataref.ReadData(&out));
        return toHex(drain(out));
    }

    // WriteData of these bytes and nothing else.
    bool write(XPlaneDataRef& dataref, const char* hex) {
        drain(in);
        fill(in, fromHex(hex));
        return dataref.WriteData(&in);
    }

    std::vector<std::string> callsOf(const std::string& function) {
        std::vector<std::string> calls;
        for (const auto& call : simulator.Recorder().CallsOf(function)) {
            calls.push_back(call.arguments);
        }
        return calls;
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    RingBuffer in{1024, &logger};
    RingBuffer out{1024, &logger};
};

TEST_F(XPlaneDataRefTest, KeepsWhatItIsGiven) {
    const XPlaneDataRef dataref(0xFFFFFFFF, VelmarDataType::FloatArray, 0x40000000, kName);
    EXPECT_EQ(dataref.GetId(), 0xFFFFFFFFU);
    EXPECT_EQ(dataref.GetDataType(), VelmarDataType::FloatArray);
    EXPECT_EQ(dataref.GetArraySize(), 0x40000000U);
    EXPECT_EQ(dataref.GetName(), "sim/value");
}

TEST_F(XPlaneDataRefTest, KeepsAnUnknownTypeThatItIsConstructedWith) {
    const XPlaneDataRef dataref(7, VelmarDataType{6}, 0, kName);
    EXPECT_EQ(dataref.GetDataType(), VelmarDataType{6});
}

TEST_F(XPlaneDataRefTest, ReadsItsDescriptor) {
    const auto dataref = read(fromHex("07 00 00 00  04 00 00 00  03 00 00 00  05  73 69 6D 2F 61"));
    EXPECT_EQ(dataref->GetId(), 7U);
    EXPECT_EQ(dataref->GetDataType(), VelmarDataType::IntArray);
    EXPECT_EQ(dataref->GetArraySize(), 3U);
    EXPECT_EQ(dataref->GetName(), "sim/a");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, ReadsANameLengthOfZeroAsAnEmptyName) {
    const auto dataref = read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00  00"));
    ASSERT_NE(dataref, nullptr);
    EXPECT_EQ(dataref->GetName(), "");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, ReadsTheLongestName) {
    const auto dataref =
        read(join({fromHex("07 00 00 00  01 00 00 00  00 00 00 00  FF"), Bytes(255, 'x'), {0xEE}}));
    EXPECT_EQ(dataref->GetName(), std::string(255, 'x'));
    EXPECT_EQ(toHex(drain(in)), "EE");
}

TEST_F(XPlaneDataRefTest, ReadsTypesAboveFiveAsNone) {
    EXPECT_EQ(read(fromHex("07 00 00 00  05 00 00 00  00 00 00 00  00"))->GetDataType(),
              VelmarDataType::FloatArray);
    EXPECT_EQ(read(fromHex("07 00 00 00  06 00 00 00  00 00 00 00  00"))->GetDataType(),
              VelmarDataType::None);
    EXPECT_EQ(read(fromHex("07 00 00 00  FF FF FF FF  00 00 00 00  00"))->GetDataType(),
              VelmarDataType::None);
}

TEST_F(XPlaneDataRefTest, ReturnsNullOfTwelveBytesAndConsumesNothing) {
    EXPECT_EQ(read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00")), nullptr);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 12U);
    EXPECT_EQ(logger.At(LogLevelWarning),
              std::vector<std::string>{
                  "WARNING@XPlaneDataRef::FromStream : Not enough bytes to read dataref."});
    EXPECT_EQ(logger.messages.size(), 1U);
}

TEST_F(XPlaneDataRefTest, EndsTheProcessOnATornNameWithTheLengthAsARawCharacter) {
    EXPECT_EQ(textOf<FatalReport>(
                  [&] { read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00  41  61 62 63")); }),
              "FATAL@XPlaneDataRef::FromStream : tried to read string with A bytes, got 3");
    EXPECT_EQ(logger.At(LogLevelError).size(), 1U);
}

TEST_F(XPlaneDataRefTest, PutsANonPrintableLengthIntoTheLineUnchanged) {
    EXPECT_EQ(
        textOf<FatalReport>([&] { read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00  FF")); }),
        "FATAL@XPlaneDataRef::FromStream : tried to read string with \xFF bytes, got 0");
    EXPECT_EQ(textOf<FatalReport>(
                  [&] { read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00  02  61")); }),
              "FATAL@XPlaneDataRef::FromStream : tried to read string with \x02 bytes, got 1");
}

// With a logger that returns, the missing bytes are zeros.
TEST_F(XPlaneDataRefTest, BuildsTheNameFromTheAnnouncedLengthAfterTheReport) {
    logger.throwsOnError = false;
    const auto dataref = read(fromHex("07 00 00 00  01 00 00 00  00 00 00 00  04  61 62"));
    ASSERT_NE(dataref, nullptr);
    EXPECT_EQ(dataref->GetName(), std::string("ab\0\0", 4));
}

TEST_F(XPlaneDataRefTest, FindsADatarefOfTheSimulator) {
    define(xplmType_Int);
    EXPECT_TRUE(XPlaneDataRef(7, VelmarDataType::Int, 0, kName).FindReference());
}

TEST_F(XPlaneDataRefTest, DoesNotFindWhatTheSimulatorDoesNotHave) {
    EXPECT_FALSE(XPlaneDataRef(7, VelmarDataType::Int, 0, kName).FindReference());
}

TEST_F(XPlaneDataRefTest, ReadsAnIntAsLengthFourAndAnInt32) {
    define(xplmType_Int);
    simulator.Datarefs().SetInt(kName, -2);
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::Int)), "04 00 00 00 FE FF FF FF");
}

TEST_F(XPlaneDataRefTest, ReadsAFloatAsLengthFourAndItsBits) {
    define(xplmType_Float);
    simulator.Datarefs().SetFloat(kName, 1.0F);
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::Float)), "04 00 00 00 00 00 80 3F");
}

TEST_F(XPlaneDataRefTest, ReadsAByteAsLengthOneAndTheLowByteOfTheInt) {
    define(xplmType_Int);
    simulator.Datarefs().SetInt(kName, 0x01020384);
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::Byte)), "01 00 00 00 84");
}

TEST_F(XPlaneDataRefTest, ReadsAnIntArrayAsRawElements) {
    define(xplmType_IntArray, 3);
    simulator.Datarefs().SetIntArray(kName, {1, -1, 0x01020304});
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::IntArray, 3)),
              "0C 00 00 00 01 00 00 00 FF FF FF FF 04 03 02 01");
}

TEST_F(XPlaneDataRefTest, ReadsAFloatArrayOfThreeAsLengthTwelveAndTwelveBytes) {
    define(xplmType_FloatArray, 3);
    simulator.Datarefs().SetFloatArray(kName, {1.0F, -2.0F, 0.5F});
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::FloatArray, 3)),
              "0C 00 00 00 00 00 80 3F 00 00 00 C0 00 00 00 3F");
}

TEST_F(XPlaneDataRefTest, ReadsAShorterArrayFromElementZero) {
    define(xplmType_IntArray, 4);
    simulator.Datarefs().SetIntArray(kName, {1, 2, 3, 4});
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::IntArray, 2)),
              "08 00 00 00 01 00 00 00 02 00 00 00");
}

TEST_F(XPlaneDataRefTest, ReadsZerosBeyondTheEndOfTheArray) {
    define(xplmType_IntArray | xplmType_FloatArray, 1);
    simulator.Datarefs().SetIntArray(kName, {9});
    simulator.Datarefs().SetFloatArray(kName, {1.0F});
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::IntArray, 3)),
              "0C 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::FloatArray, 3)),
              "0C 00 00 00 00 00 80 3F 00 00 00 00 00 00 00 00");
}

TEST_F(XPlaneDataRefTest, ReadsAnArrayOfSizeZeroAsLengthZeroAndNothingElse) {
    define(xplmType_IntArray | xplmType_FloatArray, 3);
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::IntArray, 0)), "00 00 00 00");
    EXPECT_EQ(valueOf(*resolved(VelmarDataType::FloatArray, 0)), "00 00 00 00");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, ReadsNothingForATypeWithoutAValue) {
    define(xplmType_Int);
    EXPECT_FALSE(resolved(VelmarDataType::None)->ReadData(&out));
    EXPECT_FALSE(resolved(VelmarDataType{6})->ReadData(&out));
    EXPECT_EQ(out.GetNumReadBytesAvailable(), 0U);
}

TEST_F(XPlaneDataRefTest, EndsTheProcessWhenAnArrayDoesNotFitTheAnswer) {
    define(xplmType_IntArray, 3);
    RingBuffer narrow(15, &logger);
    const auto dataref = resolved(VelmarDataType::IntArray, 3);
    EXPECT_EQ(textOf<FatalReport>([&] { dataref->ReadData(&narrow); }),
              "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length");
}

TEST_F(XPlaneDataRefTest, EndsTheProcessForAHugeArrayWithoutAskingForItsMemory) {
    define(xplmType_IntArray | xplmType_FloatArray, 3);
    RingBuffer narrow(64, &logger);
    for (const auto type : {VelmarDataType::IntArray, VelmarDataType::FloatArray}) {
        narrow.ResetBuffer();
        const auto dataref = resolved(type, 0xFFFFFFFF);
        EXPECT_EQ(textOf<FatalReport>([&] { dataref->ReadData(&narrow); }),
                  "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length");
        // The length of the whole array, though not all of it was read: 4 * 0xFFFFFFFF in 32 bits.
        EXPECT_EQ(toHex(drain(narrow)), "FC FF FF FF");
    }
}

TEST_F(XPlaneDataRefTest, WritesAnInt) {
    define(xplmType_Int);
    EXPECT_TRUE(write(*resolved(VelmarDataType::Int), "04 00 00 00 FE FF FF FF"));
    EXPECT_EQ(simulator.Datarefs().GetInt(kName), -2);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(XPlaneDataRefTest, WritesAFloat) {
    define(xplmType_Float);
    EXPECT_TRUE(write(*resolved(VelmarDataType::Float), "04 00 00 00 00 00 00 BF"));
    EXPECT_EQ(simulator.Datarefs().GetFloat(kName), -0.5F);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(XPlaneDataRefTest, WritesAByteAsAnIntWithoutASign) {
    define(xplmType_Int);
    simulator.Datarefs().SetInt(kName, 0x01020304);
    EXPECT_TRUE(write(*resolved(VelmarDataType::Byte), "01 00 00 00 FF"));
    EXPECT_EQ(simulator.Datarefs().GetInt(kName), 255);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(XPlaneDataRefTest, WritesAnIntArrayFromElementZero) {
    define(xplmType_IntArray, 3);
    simulator.Datarefs().SetIntArray(kName, {7, 8, 9});
    simulator.Recorder().Enable();
    EXPECT_TRUE(
        write(*resolved(VelmarDataType::IntArray, 2), "08 00 00 00 04 03 02 01 FF FF FF FF"));
    EXPECT_EQ(simulator.Datarefs().GetIntArray(kName), (std::vector<int>{0x01020304, -1, 9}));
    EXPECT_EQ(callsOf("XPLMSetDatavi"), std::vector<std::string>{"sim/value, 0, 2"});
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(XPlaneDataRefTest, WritesAFloatArrayFromElementZero) {
    define(xplmType_FloatArray, 2);
    simulator.Recorder().Enable();
    EXPECT_TRUE(
        write(*resolved(VelmarDataType::FloatArray, 2), "08 00 00 00 00 00 80 3F 00 00 00 C0"));
    EXPECT_EQ(simulator.Datarefs().GetFloatArray(kName), (std::vector<float>{1.0F, -2.0F}));
    EXPECT_EQ(callsOf("XPLMSetDatavf"), std::vector<std::string>{"sim/value, 0, 2"});
}

TEST_F(XPlaneDataRefTest, ReadsAnArrayThatWrapsAroundTheBuffer) {
    define(xplmType_IntArray, 2);
    RingBuffer small(16, &logger);
    fill(small, zeros(9));
    drain(small);
    fill(small, fromHex("08 00 00 00 01 02 03 04 05 06 07 08"));
    EXPECT_TRUE(resolved(VelmarDataType::IntArray, 2)->WriteData(&small));
    EXPECT_EQ(simulator.Datarefs().GetIntArray(kName), (std::vector<int>{0x04030201, 0x08070605}));
}

TEST_F(XPlaneDataRefTest, AcceptsTheWriteOfAnArrayOfSizeZero) {
    define(xplmType_IntArray | xplmType_FloatArray, 1);
    simulator.Datarefs().SetIntArray(kName, {7});
    simulator.Datarefs().SetFloatArray(kName, {7.0F});
    EXPECT_TRUE(write(*resolved(VelmarDataType::IntArray, 0), "00 00 00 00"));
    EXPECT_TRUE(write(*resolved(VelmarDataType::FloatArray, 0), "00 00 00 00"));
    EXPECT_EQ(simulator.Datarefs().GetIntArray(kName), std::vector<int>{7});
    EXPECT_EQ(simulator.Datarefs().GetFloatArray(kName), std::vector<float>{7.0F});
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, LeavesTheValueOfAnIntWithLengthEightUnread) {
    define(xplmType_Int);
    EXPECT_FALSE(write(*resolved(VelmarDataType::Int), "08 00 00 00 01 02 03 04 05 06 07 08"));
    EXPECT_EQ(toHex(drain(in)), "01 02 03 04 05 06 07 08");
    EXPECT_EQ(simulator.Datarefs().GetInt(kName), 0);
}

TEST_F(XPlaneDataRefTest, SetsNothingOfALengthThatDoesNotFitTheType) {
    define(xplmType_Int | xplmType_Float | xplmType_IntArray | xplmType_FloatArray, 2);
    simulator.Recorder().Enable();
    EXPECT_FALSE(write(*resolved(VelmarDataType::Int), "01 00 00 00 01"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::Int), "00 00 00 00"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::Float), "08 00 00 00 00 00 80 3F"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::Byte), "04 00 00 00 01 00 00 00"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::IntArray, 2), "04 00 00 00 01 00 00 00"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::FloatArray, 2),
                       "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"));
    for (const char* setter : {"XPLMSetDatai", "XPLMSetDataf", "XPLMSetDatavi", "XPLMSetDatavf"}) {
        EXPECT_TRUE(callsOf(setter).empty()) << setter;
    }
}

TEST_F(XPlaneDataRefTest, WritesNothingForATypeWithoutAValue) {
    define(xplmType_Int);
    EXPECT_FALSE(write(*resolved(VelmarDataType::None), "04 00 00 00 01 02 03 04"));
    EXPECT_EQ(toHex(drain(in)), "01 02 03 04");
    EXPECT_FALSE(write(*resolved(VelmarDataType{6}), "04 00 00 00 01 02 03 04"));
    EXPECT_EQ(toHex(drain(in)), "01 02 03 04");
}

// In 32 bits, four times this size would be 0, and 4 for the other.
TEST_F(XPlaneDataRefTest, ComparesTheLengthOfAHugeArrayWithoutWrapping) {
    define(xplmType_IntArray | xplmType_FloatArray, 1);
    simulator.Datarefs().SetIntArray(kName, {7});
    EXPECT_FALSE(write(*resolved(VelmarDataType::IntArray, 0x40000000), "00 00 00 00"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::FloatArray, 0x40000000), "00 00 00 00"));
    EXPECT_FALSE(write(*resolved(VelmarDataType::IntArray, 0x40000001), "04 00 00 00 01 00 00 00"));
    EXPECT_FALSE(
        write(*resolved(VelmarDataType::FloatArray, 0xC0000001), "04 00 00 00 01 00 00 00"));
    EXPECT_EQ(simulator.Datarefs().GetIntArray(kName), std::vector<int>{7});
}

TEST_F(XPlaneDataRefTest, SetsNothingOfAnIntArrayThatHasNotArrivedWhole) {
    define(xplmType_IntArray, 2);
    simulator.Datarefs().SetIntArray(kName, {7, 8});
    simulator.Recorder().Enable();
    EXPECT_FALSE(write(*resolved(VelmarDataType::IntArray, 2), "08 00 00 00 01 00 00 00 02 00 00"));
    EXPECT_TRUE(callsOf("XPLMSetDatavi").empty());
    EXPECT_EQ(toHex(drain(in)), "01 00 00 00 02 00 00");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, SetsNothingOfAFloatArrayThatHasNotArrivedWhole) {
    define(xplmType_FloatArray, 2);
    simulator.Recorder().Enable();
    EXPECT_FALSE(write(*resolved(VelmarDataType::FloatArray, 2), "08 00 00 00"));
    EXPECT_TRUE(callsOf("XPLMSetDatavf").empty());
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneDataRefTest, EndsTheProcessOnATornScalar) {
    define(xplmType_Int | xplmType_Float);
    const auto lineOf = [&](VelmarDataType type, const char* hex) {
        return textOf<FatalReport>([&] { write(*resolved(type), hex); });
    };
    EXPECT_EQ(lineOf(VelmarDataType::Int, "04 00 00"),
              "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4");
    EXPECT_EQ(lineOf(VelmarDataType::Int, "04 00 00 00 01 02 03"),
              "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
    EXPECT_EQ(lineOf(VelmarDataType::Float, "04 00 00 00 00 00 80"),
              "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4");
    EXPECT_EQ(lineOf(VelmarDataType::Byte, "01 00 00 00"),
              "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1");
    EXPECT_EQ(simulator.Datarefs().GetInt(kName), 0);
}

} // namespace
