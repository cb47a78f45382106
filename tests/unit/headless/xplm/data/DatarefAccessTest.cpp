#include <array>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "headless/xplm/Simulator.h"

using headless::Refusal;
using headless::Simulator;

class DatarefAccessTest : public ::testing::Test {
protected:
    XPLMDataRef define(const std::string& name, XPLMDataTypeID types, int elements = 0,
                       bool writable = true) {
        sim.Datarefs().Define({name, types, elements, writable});
        return XPLMFindDataRef(name.c_str());
    }

    std::size_t refusals(Refusal reason) { return sim.Recorder().Refusals(reason); }

    Simulator sim;
};

TEST_F(DatarefAccessTest, ReadsWhatWasWrittenInEveryScalarType) {
    const XPLMDataRef anInt = define("t/int", xplmType_Int);
    const XPLMDataRef aFloat = define("t/float", xplmType_Float);
    const XPLMDataRef aDouble = define("t/double", xplmType_Double);
    XPLMSetDatai(anInt, std::numeric_limits<int>::min());
    XPLMSetDataf(aFloat, 0.1F);
    XPLMSetDatad(aDouble, 0.1);
    EXPECT_EQ(XPLMGetDatai(anInt), std::numeric_limits<int>::min());
    EXPECT_EQ(XPLMGetDataf(aFloat), 0.1F);
    EXPECT_EQ(XPLMGetDatad(aDouble), 0.1);
}

TEST_F(DatarefAccessTest, TellsTypesAndWhetherADatarefCanBeWritten) {
    const XPLMDataRef both = define("t/both", xplmType_Int | xplmType_Float);
    const XPLMDataRef fixed = define("t/fixed", xplmType_Double, 0, false);
    EXPECT_EQ(XPLMGetDataRefTypes(both), 3);
    EXPECT_EQ(XPLMCanWriteDataRef(both), 1);
    EXPECT_EQ(XPLMGetDataRefTypes(fixed), 4);
    EXPECT_EQ(XPLMCanWriteDataRef(fixed), 0);
}

TEST_F(DatarefAccessTest, DoesNotConvertToATypeThatTheDatarefDoesNotOffer) {
    const XPLMDataRef aFloat = define("t/float", xplmType_Float);
    XPLMSetDataf(aFloat, 5.0F);
    EXPECT_EQ(XPLMGetDatai(aFloat), 0);
    EXPECT_EQ(XPLMGetDatad(aFloat), 0.0);
    XPLMSetDatai(aFloat, 9);
    EXPECT_EQ(XPLMGetDataf(aFloat), 5.0F);
    EXPECT_EQ(refusals(Refusal::WrongType), 3U);
}

TEST_F(DatarefAccessTest, ShowsOneNumberInAllTheTypesThatTheDatarefOffers) {
    const XPLMDataRef both = define("t/both", xplmType_Int | xplmType_Float | xplmType_Double);
    XPLMSetDataf(both, 2.5F);
    EXPECT_EQ(XPLMGetDatai(both), 2);
    EXPECT_EQ(XPLMGetDatad(both), 2.5);
    XPLMSetDatad(both, 1e300);
    EXPECT_EQ(XPLMGetDatai(both), 0);
}

TEST_F(DatarefAccessTest, ANullHandleIsHarmlessReadsAsZeroAndIsRecorded) {
    int ints[2] = {7, 7};
    float floats[2] = {7, 7};
    char bytes[2] = {7, 7};
    EXPECT_EQ(XPLMGetDatai(nullptr), 0);
    EXPECT_EQ(XPLMGetDataf(nullptr), 0.0F);
    EXPECT_EQ(XPLMGetDatad(nullptr), 0.0);
    EXPECT_EQ(XPLMGetDatavi(nullptr, ints, 0, 2), 0);
    EXPECT_EQ(XPLMGetDatavf(nullptr, floats, 0, 2), 0);
    EXPECT_EQ(XPLMGetDatab(nullptr, bytes, 0, 2), 0);
    XPLMSetDatai(nullptr, 1);
    XPLMSetDataf(nullptr, 1);
    XPLMSetDatad(nullptr, 1);
    XPLMSetDatavi(nullptr, ints, 0, 2);
    XPLMSetDatavf(nullptr, floats, 0, 2);
    XPLMSetDatab(nullptr, bytes, 0, 2);
    EXPECT_EQ(XPLMCanWriteDataRef(nullptr), 0);
    EXPECT_EQ(XPLMGetDataRefTypes(nullptr), 0);
    XPLMUnregisterDataAccessor(nullptr);
    EXPECT_EQ(sim.Recorder().NullHandleCalls(), 15U);
    EXPECT_EQ(sim.Recorder().RecentRefusals().front().function, "XPLMGetDatai");
    EXPECT_EQ(sim.Recorder().RecentRefusals().back().function, "XPLMUnregisterDataAccessor");
    EXPECT_EQ(ints[0], 7);
}

TEST_F(DatarefAccessTest, AHandleThatWasNeverGivenOutIsHarmlessAndRecorded) {
    int somewhere = 0;
    EXPECT_EQ(XPLMGetDatai(&somewhere), 0);
    XPLMSetDatai(&somewhere, 1);
    EXPECT_EQ(somewhere, 0);
    EXPECT_EQ(refusals(Refusal::UnknownHandle), 2U);
}

TEST_F(DatarefAccessTest, WritesToAReadOnlyDatarefAreDroppedAndRecorded) {
    const XPLMDataRef fixed = define("t/fixed", xplmType_Int, 0, false);
    XPLMSetDatai(fixed, 4);
    EXPECT_EQ(XPLMGetDatai(fixed), 0);
    ASSERT_EQ(refusals(Refusal::ReadOnly), 1U);
    EXPECT_EQ(sim.Recorder().RecentRefusals().back().function, "XPLMSetDatai");
    EXPECT_EQ(sim.Recorder().RecentRefusals().back().detail, "t/fixed");
}

TEST_F(DatarefAccessTest, AnArrayReadWithANullBufferReturnsTheSize) {
    EXPECT_EQ(XPLMGetDatavi(define("t/ints", xplmType_IntArray, 4), nullptr, 0, 0), 4);
    EXPECT_EQ(XPLMGetDatavf(define("t/floats", xplmType_FloatArray, 8), nullptr, 3, 1), 8);
    EXPECT_EQ(XPLMGetDatab(define("t/bytes", xplmType_Data, 260), nullptr, -1, -1), 260);
}

TEST_F(DatarefAccessTest, AnArrayReadBeyondTheEndReturnsWhatIsThere) {
    const XPLMDataRef array = define("t/ints", xplmType_IntArray, 4);
    sim.Datarefs().SetIntArray("t/ints", {1, 2, 3, 4});
    std::array<int, 4> values{9, 9, 9, 9};
    EXPECT_EQ(XPLMGetDatavi(array, values.data(), 2, 4), 2);
    EXPECT_EQ(values, (std::array<int, 4>{3, 4, 9, 9}));
    EXPECT_EQ(XPLMGetDatavi(array, values.data(), 4, 1), 0);
    EXPECT_EQ(XPLMGetDatavi(array, values.data(), 1000, 1), 0);
}

TEST_F(DatarefAccessTest, NegativeOffsetsAndCountsCopyNothing) {
    const XPLMDataRef array = define("t/floats", xplmType_FloatArray, 2);
    float values[2] = {5, 5};
    EXPECT_EQ(XPLMGetDatavf(array, values, -1, 2), 0);
    EXPECT_EQ(XPLMGetDatavf(array, values, 0, -2), 0);
    EXPECT_EQ(XPLMGetDatavf(array, values, 0, 0), 0);
    EXPECT_EQ(values[0], 5.0F);
    XPLMSetDatavf(array, values, -1, 2);
    XPLMSetDatavf(array, values, 0, -1);
    EXPECT_EQ(sim.Datarefs().GetFloatArray("t/floats"), (std::vector<float>{0, 0}));
}

TEST_F(DatarefAccessTest, AnArrayWriteBeyondTheEndIsCutShort) {
    const XPLMDataRef array = define("t/ints", xplmType_IntArray, 3);
    int values[4] = {1, 2, 3, 4};
    XPLMSetDatavi(array, values, 2, std::numeric_limits<int>::max());
    EXPECT_EQ(sim.Datarefs().GetIntArray("t/ints"), (std::vector<int>{0, 0, 1}));
    XPLMSetDatavi(array, values, 3, 1);
    XPLMSetDatavi(array, nullptr, 0, 1);
    EXPECT_EQ(sim.Datarefs().GetIntArray("t/ints"), (std::vector<int>{0, 0, 1}));
}

TEST_F(DatarefAccessTest, ReadsAndWritesPartOfByteData) {
    const XPLMDataRef data = define("t/bytes", xplmType_Data, 6);
    std::string text = "abc";
    XPLMSetDatab(data, text.data(), 2, 3);
    EXPECT_EQ(sim.Datarefs().GetBytes("t/bytes"), std::string("\0\0abc\0", 6));
    char read[2] = {};
    EXPECT_EQ(XPLMGetDatab(data, read, 3, 2), 2);
    EXPECT_EQ(std::string(read, 2), "bc");
}

TEST_F(DatarefAccessTest, RecordsNameAndValueOfWritesInOrder) {
    const XPLMDataRef anInt = define("t/int", xplmType_Int);
    const XPLMDataRef array = define("t/floats", xplmType_FloatArray, 4);
    float values[2] = {1, 2};
    sim.Recorder().Enable();
    XPLMSetDatai(anInt, 7);
    XPLMSetDatavf(array, values, 1, 2);
    XPLMGetDatai(anInt);
    const auto& calls = sim.Recorder().Calls();
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0].function, "XPLMSetDatai");
    EXPECT_EQ(calls[0].arguments, "t/int, 7");
    EXPECT_EQ(calls[0].handle, anInt);
    EXPECT_EQ(calls[1].arguments, "t/floats, 1, 2");
    EXPECT_EQ(calls[2].function, "XPLMGetDatai");
}
