#include <algorithm>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OutputInfoTest.h"
#include "datarefs/DatarefProvider.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

namespace {

using testing::IsEmpty;

// Values.

TEST_F(OutputInfoTest, WritesAnInt) {
    EXPECT_EQ(data({.id = 0x12345678, .name = "sim/int", .type = 1}),
              "78 56 34 12 04 00 00 00 FE FF FF FF");
}

TEST_F(OutputInfoTest, WritesAFloat) {
    EXPECT_EQ(data({.id = 5, .name = "sim/float", .type = 2}),
              "05 00 00 00 04 00 00 00 CD CC CC 3D");
}

TEST_F(OutputInfoTest, ReadsTheValueAnewForEveryReport) {
    const auto output = make({.id = 5, .name = "sim/int", .type = 1});
    data(*output);
    simulator.Datarefs().SetInt("sim/int", 3);
    EXPECT_EQ(data(*output), "05 00 00 00 04 00 00 00 03 00 00 00");
}

TEST_F(OutputInfoTest, ReadsADatarefOfSeveralTypesInTheTypeOfTheRecord) {
    simulator.Datarefs().SetInt("sim/several", 2);
    EXPECT_EQ(data({.id = 5, .name = "sim/several", .type = 1}),
              "05 00 00 00 04 00 00 00 02 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/several", .type = 2}),
              "05 00 00 00 04 00 00 00 00 00 00 40");
}

TEST_F(OutputInfoTest, WritesElements2To4OfAnIntArray) {
    EXPECT_EQ(data({.id = 5, .name = "sim/ints", .type = 3, .first = 2, .count = 3}),
              "05 00 00 00 0C 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00");
}

TEST_F(OutputInfoTest, WritesElements2To4OfAFloatArray) {
    EXPECT_EQ(data({.id = 5, .name = "sim/floats", .type = 4, .first = 2, .count = 3}),
              "05 00 00 00 0C 00 00 00 00 00 40 40 00 00 80 40 00 00 A0 40");
}

TEST_F(OutputInfoTest, WritesZerosForElementsThatTheDatarefDoesNotHave) {
    EXPECT_EQ(data({.id = 5, .name = "sim/ints", .type = 3, .first = 5, .count = 3}),
              "05 00 00 00 0C 00 00 00 06 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/floats", .type = 4, .first = 4, .count = 3}),
              "05 00 00 00 0C 00 00 00 00 00 A0 40 00 00 C0 40 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/ints", .type = 3, .first = 6, .count = 1}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/ints", .type = 3, .first = -1, .count = 1}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
}

int fillWithNines(void* /*refcon*/, int* values, int /*offset*/, int max) {
    std::fill_n(values, max, 9);
    return max;
}

// A dataref that another plugin unregistered gives no values.
TEST_F(OutputInfoTest, NeverSendsTheElementsOfAnEarlierReport) {
    const XPLMDataRef handle = simulator.Datarefs().Register("other/ints", xplmType_IntArray, true,
                                                             {.readInts = fillWithNines});
    const auto output = make({.id = 6, .name = "other/ints", .type = 3, .count = 2});
    EXPECT_EQ(data(*output), "06 00 00 00 08 00 00 00 09 00 00 00 09 00 00 00");
    simulator.Datarefs().Unregister(handle);
    EXPECT_EQ(data(*output), "06 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(OutputInfoTest, WritesTheLengthOfAnEmptyArrayWithoutAskingTheSimulator) {
    const auto ints = make({.id = 5, .name = "sim/ints", .type = 3, .count = 0});
    const auto floats = make({.id = 6, .name = "sim/floats", .type = 4, .count = 0});
    simulator.Recorder().Clear();
    EXPECT_EQ(data(*ints), "05 00 00 00 00 00 00 00");
    EXPECT_EQ(data(*floats), "06 00 00 00 00 00 00 00");
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(OutputInfoTest, WritesTheLengthOfANegativeCountWithoutAskingTheSimulator) {
    const auto ints = make({.id = 5, .name = "sim/ints", .type = 3, .count = -1});
    const auto floats = make({.id = 6, .name = "sim/floats", .type = 4, .count = -2147483647});
    simulator.Recorder().Clear();
    EXPECT_EQ(data(*ints), "05 00 00 00 FC FF FF FF");
    EXPECT_EQ(data(*floats), "06 00 00 00 04 00 00 00");
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(OutputInfoTest, WritesOnlyTheIdentifierForAnotherTypeWhetherItsDatarefResolvesOrNot) {
    EXPECT_EQ(data({.id = 5, .name = "sim/int", .type = 5, .count = 4}), "05 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/unknown", .type = 5, .count = 4}), "05 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/int", .type = 0}), "05 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/int", .type = 7}), "05 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/int", .type = -1}), "05 00 00 00");
}

TEST_F(OutputInfoTest, WritesTheDummyOfADatarefThatIsNotFound) {
    EXPECT_EQ(data({.id = 5, .name = "sim/unknown", .type = 1}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/unknown", .type = 2}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/unknown", .type = 3, .count = 2}),
              "05 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(data({.id = 5, .name = "sim/unknown", .type = 4, .count = 1}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 0U);
}

// Dummies.

TEST_F(OutputInfoTest, WritesADummyOfTheShapeOfEachType) {
    EXPECT_EQ(dummy({.id = 5, .name = "sim/int", .type = 1}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/float", .type = 2}),
              "05 00 00 00 04 00 00 00 00 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/ints", .type = 3, .first = 2, .count = 2}),
              "05 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/floats", .type = 4, .count = 3}),
              "05 00 00 00 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/int", .type = 5}), "05 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/int", .type = 6}), "05 00 00 00");
}

TEST_F(OutputInfoTest, WritesTheIdentifierOfACommandTwiceInItsDummy) {
    EXPECT_EQ(dummy({.id = 5, .name = "kyr/command", .type = 6}),
              "05 00 00 00 05 00 00 00 01 00 00 00 00");
}

TEST_F(OutputInfoTest, WritesNoElementsIntoTheDummyOfACountOfZeroOrLess) {
    EXPECT_EQ(dummy({.id = 5, .name = "sim/ints", .type = 3, .count = 0}),
              "05 00 00 00 00 00 00 00");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/ints", .type = 3, .count = -1}),
              "05 00 00 00 FC FF FF FF");
    EXPECT_EQ(dummy({.id = 5, .name = "sim/floats", .type = 4, .count = -2}),
              "05 00 00 00 F8 FF FF FF");
}

// Counts that cannot be stored.

TEST_F(OutputInfoTest, LeavesNoTraceOfAnOwnArrayWithANegativeCount) {
    const TemporaryDirectory directory;
    directory.MakePluginsFolder();
    DatarefProvider realProvider(&logger, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_THROW(make({.name = "kyr/ints", .type = 3, .count = -1}, realProvider),
                 std::length_error);
    EXPECT_THROW(make({.name = "kyr/floats", .type = 4, .count = -2147483647}, realProvider),
                 std::length_error);
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_FALSE(directory.Has("Resources/plugins/xplaneorvane_datarefs.cfg"));
}

TEST_F(OutputInfoTest, NamesTheElementTypeOfADummyThatDoesNotFit) {
    const auto fatalLineOf = [&](std::int32_t type) {
        RingBuffer narrow(64, &logger);
        const auto output = make({.name = "no/such", .type = type, .count = 100});
        return textOf<FatalReport>([&] { output->GetDummyData(&narrow); });
    };
    EXPECT_EQ(fatalLineOf(3), "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4");
    EXPECT_EQ(fatalLineOf(4), "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
}

TEST_F(OutputInfoTest, EndsTheProcessForAHugeArrayWithoutAskingForItsMemory) {
    const auto fatalLineOf = [&](const OutputRecord& fields) {
        RingBuffer narrow(64, &logger);
        const auto output = make(fields);
        return textOf<FatalReport>([&] { output->GetData(&narrow); });
    };
    EXPECT_EQ(fatalLineOf({.name = "sim/ints", .type = 3, .count = 2147483647}),
              "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4");
    EXPECT_EQ(fatalLineOf({.name = "sim/floats", .type = 4, .count = 2147483647}),
              "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
}

TEST_F(OutputInfoTest, LetsAnExceptionOfTheProviderOut) {
    provider.onCall = [] { throw std::bad_alloc(); };
    EXPECT_THROW(make({.name = "kyr/ints", .type = 3, .count = 2147483647}), std::bad_alloc);
}

} // namespace
