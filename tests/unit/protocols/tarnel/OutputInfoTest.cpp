#include "protocols/tarnel/OutputInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "datarefs/DatarefProvider.h"
#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "support/Bytes.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeDatarefProvider.h"
#include "support/FakeProtocol.h"
#include "support/RecordingLogger.h"
#include "support/TarnelMessages.h"
#include "support/TemporaryDirectory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputInfoTest : public testing::Test {
protected:
    OutputInfoTest() {
        define("sim/int", xplmType_Int);
        define("sim/float", xplmType_Float);
        define("sim/ints", xplmType_IntArray, 6);
        define("sim/floats", xplmType_FloatArray, 6);
        define("sim/several", xplmType_Int | xplmType_Float | xplmType_Double);
        simulator.Datarefs().SetInt("sim/int", -2);
        simulator.Datarefs().SetFloat("sim/float", 0.1F);
        simulator.Datarefs().SetIntArray("sim/ints", {1, 2, 3, 4, 5, 6});
        simulator.Datarefs().SetFloatArray("sim/floats", {1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F});
        simulator.Recorder().Enable();
    }

    void define(const std::string& name, XPLMDataTypeID types, int elements = 0) {
        simulator.Datarefs().Define({.name = name, .types = types, .elements = elements});
    }

    std::unique_ptr<OutputInfo> make(const OutputRecord& fields) { return make(fields, provider); }

    std::unique_ptr<OutputInfo> make(const OutputRecord& fields, IDatarefProvider& from) {
        const Bytes bytes = toBytes(fields);
        OutputDefinitionStruct record{};
        std::memcpy(&record, bytes.data(), bytes.size());
        return std::make_unique<OutputInfo>(&protocol, record, &from, &observer);
    }

    std::string data(OutputInfo& output) {
        output.GetData(&out);
        return toHex(drain(out));
    }
    std::string data(const OutputRecord& fields) { return data(*make(fields)); }

    std::string dummy(OutputInfo& output) {
        output.GetDummyData(&out);
        return toHex(drain(out));
    }
    std::string dummy(const OutputRecord& fields) { return dummy(*make(fields)); }

    std::vector<std::string> found() {
        std::vector<std::string> names;
        for (const auto& call : simulator.Recorder().CallsOf("XPLMFindDataRef")) {
            names.push_back(call.arguments);
        }
        return names;
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    RingBuffer out{10'000, &logger};
    FakeProtocol protocol;
    FakeDatarefProvider provider;
    FakeCommandObserver observer;
};

// Resolution of the name.

TEST_F(OutputInfoTest, RegistersAnOwnDatarefOfEachTypeWithTheProvider) {
    provider.handle = simulator.Datarefs().Lookup("sim/int");
    make({.name = "kyr/int", .type = 1, .count = 9});
    make({.name = "kyr/float", .type = 2, .count = 9});
    make({.name = "kyr/ints", .type = 3, .first = 1, .count = 7});
    make({.name = "kyr/floats", .type = 4, .first = 1, .count = 8});
    EXPECT_THAT(provider.calls,
                ElementsAre("RegisterInt kyr/int", "RegisterFloat kyr/float",
                            "RegisterIntArray 7 kyr/ints", "RegisterFloatArray 8 kyr/floats"));
    EXPECT_THAT(found(), IsEmpty()) << "a handle of the provider's is not looked up again";
    EXPECT_THAT(observer.registered, IsEmpty());
}

TEST_F(OutputInfoTest, ReadsTheHandleThatTheProviderReturned) {
    provider.handle = simulator.Datarefs().Lookup("sim/int");
    EXPECT_EQ(data({.id = 5, .name = "kyr/int", .type = 1}), "05 00 00 00 04 00 00 00 FE FF FF FF");
}

TEST_F(OutputInfoTest, LooksUpAnOwnDatarefThatTheProviderDidNotRegister) {
    define("kyr/int", xplmType_Int);
    simulator.Datarefs().SetInt("kyr/int", 9);
    EXPECT_EQ(data({.id = 5, .name = "kyr/int", .type = 1}), "05 00 00 00 04 00 00 00 09 00 00 00");
    EXPECT_THAT(provider.calls, ElementsAre("RegisterInt kyr/int"));
    EXPECT_THAT(found(), ElementsAre("kyr/int"));
}

TEST_F(OutputInfoTest, LooksUpANameWithoutThePrefixInTheSimulator) {
    for (const int type : {1, 2, 3, 4}) {
        make({.name = "sim/float", .type = type, .count = 1});
    }
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("sim/float", "sim/float", "sim/float", "sim/float"));
}

TEST_F(OutputInfoTest, TakesExactlyTheFourCharactersOfThePrefix) {
    make({.name = "kyr", .type = 1});
    make({.name = "Kyr/a", .type = 1});
    make({.name = " kyr/a", .type = 1});
    make({.name = "kyrx/a", .type = 1});
    EXPECT_THAT(provider.calls, IsEmpty());
    make({.name = "kyr/", .type = 1});
    EXPECT_THAT(provider.calls, ElementsAre("RegisterInt kyr/"));
}

TEST_F(OutputInfoTest, SubscribesToAnOwnCommandAndLooksUpNoDataref) {
    const auto output = make({.id = 0xFEDCBA98, .name = "kyr/command", .type = 6});
    EXPECT_TRUE(output->IsCommand());
    EXPECT_THAT(observer.registered, ElementsAre(FakeCommandObserver::Subscription{
                                         &protocol, 0xFEDCBA98, "kyr/command"}));
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(OutputInfoTest, DoesNotSubscribeToACommandOfTheSimulators) {
    simulator.Commands().Define("sim/command", "a command");
    const auto output = make({.id = 5, .name = "sim/command", .type = 6});
    EXPECT_FALSE(output->IsCommand());
    EXPECT_THAT(observer.registered, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("sim/command"));
    EXPECT_EQ(data(*output), "05 00 00 00") << "the dummy of an output without a value";
}

TEST_F(OutputInfoTest, LooksUpAnOwnNameOfAnyOtherType) {
    for (const int type : {0, 5, 7, -1}) {
        EXPECT_FALSE(make({.name = "kyr/a", .type = type})->IsCommand());
    }
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_THAT(observer.registered, IsEmpty());
    EXPECT_THAT(found(), ElementsAre("kyr/a", "kyr/a", "kyr/a", "kyr/a"));
}

TEST_F(OutputInfoTest, IsNoCommandWhenItIsADataref) {
    EXPECT_FALSE(make({.name = "sim/int", .type = 1})->IsCommand());
    EXPECT_FALSE(make({.name = "kyr/int", .type = 1})->IsCommand());
}

TEST_F(OutputInfoTest, DoesNotLookAgainForADatarefThatAppearsLater) {
    const auto output = make({.id = 5, .name = "sim/later", .type = 1});
    define("sim/later", xplmType_Int);
    simulator.Datarefs().SetInt("sim/later", 9);
    EXPECT_EQ(data(*output), "05 00 00 00 04 00 00 00 00 00 00 00");
}

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

// A dataref of another plugin that was taken back no longer fills anything.
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

// Commands.

class OutputInfoCommandTest : public OutputInfoTest {
protected:
    const std::string kUp = "05 00 00 00 01 00 00 00 00";
    const std::string kDown = "05 00 00 00 01 00 00 00 01";
    std::unique_ptr<OutputInfo> output = make({.id = 5, .name = "kyr/command", .type = 6});
};

TEST_F(OutputInfoCommandTest, StartsUp) {
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, ReportsAPressThatEndedBetweenTwoReportsOnce) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, ReportsAHeldCommandEachTime) {
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, RemembersAPressUntilItIsReported) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    output->SetCommandState(false);
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kDown);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, DoesNotTakeAContinueAfterTheReportForANewPress) {
    output->SetCommandState(true);
    EXPECT_EQ(data(*output), kDown);
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(data(*output), kUp);
}

TEST_F(OutputInfoCommandTest, KeepsAPressOverADummy) {
    output->SetCommandState(true);
    output->SetCommandState(false);
    EXPECT_EQ(dummy(*output), "05 00 00 00 05 00 00 00 01 00 00 00 00");
    EXPECT_EQ(data(*output), kDown);
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

TEST_F(OutputInfoTest, NamesTheElementTypeOfADummyForWhichThereIsNoRoom) {
    const auto fatalLineOf = [&](std::int32_t type) -> std::string {
        RingBuffer narrow(64, &logger);
        try {
            make({.name = "no/such", .type = type, .count = 100})->GetDummyData(&narrow);
        } catch (const FatalReport& report) {
            return report.what();
        }
        return {};
    };
    EXPECT_EQ(fatalLineOf(3), "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4");
    EXPECT_EQ(fatalLineOf(4), "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
}

TEST_F(OutputInfoTest, EndsTheProcessForAHugeArrayWithoutAskingForItsMemory) {
    const auto fatalLineOf = [&](const OutputRecord& fields) -> std::string {
        RingBuffer narrow(64, &logger);
        try {
            make(fields)->GetData(&narrow);
        } catch (const FatalReport& report) {
            return report.what();
        }
        return {};
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
