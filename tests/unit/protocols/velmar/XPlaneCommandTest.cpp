#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/velmar/XPlaneCommand.h"
#include "support/Bytes.h"
#include "support/RecordingLogger.h"
#include "support/TextOf.h"

namespace {

constexpr const char* kTooShort =
    "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref";

class XPlaneCommandTest : public testing::Test {
protected:
    std::unique_ptr<XPlaneCommand> read(const Bytes& bytes) {
        fill(in, bytes);
        return std::unique_ptr<XPlaneCommand>(XPlaneCommand::FromStream(&in, &logger));
    }

    // The line that ends the process, or nothing.
    std::string fatalLineOf(const Bytes& bytes) {
        return textOf<FatalReport>([&] { read(bytes); });
    }

    headless::Simulator simulator;
    RecordingLogger logger;
    RingBuffer in{1024, &logger};
};

TEST_F(XPlaneCommandTest, KeepsWhatItIsGiven) {
    const XPlaneCommand command(0xFFFFFFFF, "sim/flight_controls/flaps_up");
    EXPECT_EQ(command.GetId(), 0xFFFFFFFFU);
    EXPECT_EQ(command.GetName(), "sim/flight_controls/flaps_up");
}

TEST_F(XPlaneCommandTest, ReadsItsDescriptor) {
    const auto command = read(fromHex("07 00 00 00  08  73 69 6D 2F 66 69 72 65")); // "sim/fire"
    EXPECT_EQ(command->GetId(), 7U);
    EXPECT_EQ(command->GetName(), "sim/fire");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneCommandTest, LeavesWhatFollowsItsDescriptor) {
    const auto command = read(fromHex("07 00 00 00  03  61 62 63  DE AD BE EF 00"));
    EXPECT_EQ(command->GetName(), "abc");
    EXPECT_EQ(toHex(drain(in)), "DE AD BE EF 00");
}

TEST_F(XPlaneCommandTest, ReadsANameLengthOfZeroAsAnEmptyName) {
    const auto command = read(fromHex("07 00 00 00  00  01 02 03 04 05 06 07 08"));
    EXPECT_EQ(command->GetName(), "");
    EXPECT_EQ(toHex(drain(in)), "01 02 03 04 05 06 07 08");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(XPlaneCommandTest, ReadsTheLongestName) {
    const auto command = read(join({fromHex("07 00 00 00 FF"), Bytes(255, 'x')}));
    EXPECT_EQ(command->GetName(), std::string(255, 'x'));
}

TEST_F(XPlaneCommandTest, EndsTheProcessBelowThirteenBytesThoughTheNameIsWhole) {
    EXPECT_EQ(fatalLineOf(fromHex("07 00 00 00  07  61 62 63 64 65 66 67")), kTooShort);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 12U);
}

TEST_F(XPlaneCommandTest, ReportsOneLineOfAShortDescriptorAtTheErrorLevel) {
    fatalLineOf({});
    EXPECT_EQ(logger.At(LogLevelError), std::vector<std::string>{kTooShort});
    EXPECT_EQ(logger.messages.size(), 1U);
}

// With a logger that returns, a short name is read all the same.
TEST_F(XPlaneCommandTest, GoesOnAfterTheReportOfAShortDescriptor) {
    logger.throwsOnError = false;
    const auto command = read(fromHex("07 00 00 00  03  61 62 63"));
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->GetId(), 7U);
    EXPECT_EQ(command->GetName(), "abc");
    EXPECT_EQ(logger.At(LogLevelError), std::vector<std::string>{kTooShort});
}

TEST_F(XPlaneCommandTest, EndsTheProcessOnATornNameWithTheLengthAsARawCharacter) {
    EXPECT_EQ(fatalLineOf(fromHex("07 00 00 00  41  61 62 63 64 65 66 67 68")),
              "FATAL@VelmarDataRef::FromStream : tried to read string with A bytes, got 8");
}

TEST_F(XPlaneCommandTest, PutsANonPrintableLengthIntoTheLineUnchanged) {
    EXPECT_EQ(fatalLineOf(fromHex("07 00 00 00  FF  61 62 63 64 65 66 67 68 69 6A")),
              "FATAL@VelmarDataRef::FromStream : tried to read string with \xFF bytes, got 10");
    drain(in);
    EXPECT_EQ(fatalLineOf(fromHex("07 00 00 00  09  61 62 63 64 65 66 67 68")),
              "FATAL@VelmarDataRef::FromStream : tried to read string with \t bytes, got 8");
}

TEST_F(XPlaneCommandTest, FindsACommandOfTheSimulator) {
    simulator.Commands().Define("sim/fire", "Fire");
    EXPECT_TRUE(XPlaneCommand(7, "sim/fire").FindReference());
}

TEST_F(XPlaneCommandTest, DoesNotFindWhatTheSimulatorDoesNotHave) {
    EXPECT_FALSE(XPlaneCommand(7, "sim/fire").FindReference());
    EXPECT_EQ(simulator.Commands().Lookup("sim/fire"), nullptr);
}

TEST_F(XPlaneCommandTest, RunsBeginsAndEndsItsCommand) {
    simulator.Commands().Define("sim/fire", "Fire");
    simulator.Recorder().Enable();
    XPlaneCommand command(7, "sim/fire");
    ASSERT_TRUE(command.FindReference());
    command.Once();
    command.Begin();
    command.End();
    std::vector<std::string> calls;
    for (const auto& call : simulator.Recorder().Calls()) {
        calls.push_back(call.function + " " + call.arguments);
    }
    EXPECT_EQ(calls,
              (std::vector<std::string>{"XPLMFindCommand sim/fire", "XPLMCommandOnce sim/fire",
                                        "XPLMCommandBegin sim/fire", "XPLMCommandEnd sim/fire"}));
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 0U);
}

} // namespace
