#include <vector>

#include "VelmarProtocolTest.h"

namespace {

constexpr int kBegin = 0;
constexpr int kContinue = 1;
constexpr int kEnd = 2;

constexpr const char* kPoll = "08 00 00 00";

class VelmarProtocolCommandsTest : public VelmarProtocolTest {
protected:
    std::vector<headless::RecordedCall> callsOf(const char* function) {
        return simulator.Recorder().CallsOf(function);
    }
};

TEST_F(VelmarProtocolCommandsTest, RegistersACommandAndListensToIt) {
    simulator.Commands().Define("sim/fire", "");
    EXPECT_EQ(ask("03 00 00 00  07 00 00 00  08  73 69 6D 2F 66 69 72 65"),
              "03 00 00 00 07 00 00 00 01 00 00 00");
    const FakeCommandObserver::Subscription expected{protocol.get(), 7, "sim/fire"};
    EXPECT_EQ(observer.registered, std::vector{expected});
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(VelmarProtocolCommandsTest, RefusesACommandThatTheSimulatorDoesNotKnow) {
    EXPECT_EQ(ask(commandPacket(7, "sim/nowhere")),
              "03 00 00 00 07 00 00 00 02 00 00 00 02 00 00 00");
    EXPECT_TRUE(observer.registered.empty());
    EXPECT_EQ(ask("04 00 00 00  07 00 00 00"), "04 00 00 00 07 00 00 00 02 00 00 00 02 00 00 00");
}

// Two words of padding, each an unknown packet type, bring the descriptor to thirteen bytes.
TEST_F(VelmarProtocolCommandsTest, RegistersAShortNameThatIsFollowedByOtherBytes) {
    simulator.Commands().Define("abc", "");
    EXPECT_EQ(ask("03 00 00 00  07 00 00 00  03  61 62 63  00 00 00 00  00 00 00 00"),
              "03 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(VelmarProtocolCommandsTest, RefusesACommandWithoutAName) {
    EXPECT_EQ(ask("03 00 00 00  07 00 00 00  00  08 00 00 00  08 00 00 00"),
              "03 00 00 00 07 00 00 00 02 00 00 00 02 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, LooksACommandUpAfterTheReplysFirstTwoWords) {
    simulator.Commands().Define("sim/fire", "");
    simulator.Recorder().Enable();
    RingBuffer roomForOneWord(5, &logger);
    fill(in, commandPacket(7, "sim/fire"));
    EXPECT_THROW(protocol->Feed(&in, &roomForOneWord), FatalReport);
    EXPECT_TRUE(callsOf("XPLMFindCommand").empty());

    drain(in);
    RingBuffer roomForTwoWords(9, &logger);
    fill(in, commandPacket(7, "sim/fire"));
    EXPECT_THROW(protocol->Feed(&in, &roomForTwoWords), FatalReport);
    EXPECT_EQ(callsOf("XPLMFindCommand").size(), 1U);
    // The status comes last, after the subscription.
    EXPECT_EQ(observer.registered.size(), 1U);
    EXPECT_EQ(toHex(drain(roomForTwoWords)), "03 00 00 00 07 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, ReplacesACommandThatIsRegisteredTwice) {
    registerCommand(7, "sim/first");
    registerCommand(7, "sim/second");
    simulator.Recorder().Enable();
    ask("07 00 00 00  07 00 00 00  01");
    ASSERT_EQ(callsOf("XPLMCommandOnce").size(), 1U);
    EXPECT_EQ(callsOf("XPLMCommandOnce")[0].arguments, "sim/second");
}

TEST_F(VelmarProtocolCommandsTest, KeepsTheFormerCommandWhenItsReplacementIsRefused) {
    registerCommand(7, "sim/first");
    protocol->HandleCommand(7, kBegin);
    ask(commandPacket(7, "sim/nowhere"));
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
    EXPECT_EQ(ask("04 00 00 00  07 00 00 00"), "04 00 00 00 07 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, UnregistersACommandByItsName) {
    registerCommand(7, "sim/fire");
    EXPECT_EQ(ask("04 00 00 00  07 00 00 00"), "04 00 00 00 07 00 00 00 01 00 00 00");
    const FakeCommandObserver::Subscription expected{protocol.get(), 0, "sim/fire"};
    EXPECT_EQ(observer.unregistered, std::vector{expected});
    EXPECT_EQ(ask("04 00 00 00  07 00 00 00"), "04 00 00 00 07 00 00 00 02 00 00 00 02 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, RefusesToUnregisterAnUnknownCommand) {
    EXPECT_EQ(ask("04 00 00 00  09 00 00 00"), "04 00 00 00 09 00 00 00 02 00 00 00 02 00 00 00");
    EXPECT_TRUE(observer.unregistered.empty());
}

TEST_F(VelmarProtocolCommandsTest, RunsACommandOnceForActionOneWithoutAReply) {
    registerCommand(7, "sim/fire");
    simulator.Recorder().Enable();
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  01"), "");
    ASSERT_EQ(simulator.Recorder().Calls().size(), 1U);
    EXPECT_EQ(simulator.Recorder().Calls()[0].function, "XPLMCommandOnce");
    EXPECT_EQ(simulator.Recorder().Calls()[0].arguments, "sim/fire");
}

TEST_F(VelmarProtocolCommandsTest, BeginsACommandForActionTwoWithoutAReply) {
    registerCommand(7, "sim/fire");
    simulator.Recorder().Enable();
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  02"), "");
    ASSERT_EQ(simulator.Recorder().Calls().size(), 1U);
    EXPECT_EQ(simulator.Recorder().Calls()[0].function, "XPLMCommandBegin");
}

TEST_F(VelmarProtocolCommandsTest, EndsACommandForAnyOtherActionWithoutAReply) {
    registerCommand(7, "sim/fire");
    simulator.Recorder().Enable();
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  00"), "");
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  03"), "");
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  FF"), "");
    EXPECT_EQ(callsOf("XPLMCommandEnd").size(), 3U);
    EXPECT_EQ(simulator.Recorder().Calls().size(), 3U);
}

TEST_F(VelmarProtocolCommandsTest, DropsTheRunOfAnUnknownCommandWhole) {
    simulator.Recorder().Enable();
    EXPECT_EQ(ask("07 00 00 00  09 00 00 00  01  08 00 00 00"), "00 00 00 00");
    EXPECT_TRUE(simulator.Recorder().Calls().empty());
}

TEST_F(VelmarProtocolCommandsTest, PollsACountOfZeroWhenNothingChanged) {
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
    registerCommand(7, "sim/fire");
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
    protocol->HandleCommand(7, kEnd);
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, PollsOneWhileACommandIsDown) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kBegin);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
    protocol->HandleCommand(7, kContinue);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
}

TEST_F(VelmarProtocolCommandsTest, SeesACommandThatWasBegunBeforeInItsContinuePhase) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kContinue);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
}

TEST_F(VelmarProtocolCommandsTest, PollsTwoInEachLaterPollOnceACommandWasPressedAndReleased) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kBegin);
    protocol->HandleCommand(7, kEnd);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 02");
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 02");
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarProtocolCommandsTest, ResetsNothingByPolling) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kBegin);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
    // After a reset this release would be reported as 0.
    protocol->HandleCommand(7, kEnd);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 02");
    protocol->HandleCommand(7, kBegin);
    EXPECT_EQ(ask(kPoll), "01 00 00 00 07 00 00 00 01");
}

TEST_F(VelmarProtocolCommandsTest, PollsInAscendingOrderOfUnsignedIdentifiers) {
    registerCommand(0x80000001, "sim/first");
    registerCommand(2, "sim/second");
    registerCommand(5, "sim/third");
    registerCommand(3, "sim/unchanged");
    protocol->HandleCommand(0x80000001, kBegin);
    protocol->HandleCommand(5, kBegin);
    protocol->HandleCommand(5, kEnd);
    protocol->HandleCommand(2, kBegin);
    EXPECT_EQ(ask(kPoll),
              "03 00 00 00 "
              "02 00 00 00 01 "
              "05 00 00 00 02 "
              "01 00 00 80 01");
}

TEST_F(VelmarProtocolCommandsTest, StartsAfreshWhenACommandIsRegisteredAgain) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kBegin);
    protocol->HandleCommand(7, kEnd);
    registerCommand(7, "sim/fire");
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, ForgetsTheStateOfAnUnregisteredCommand) {
    registerCommand(7, "sim/fire");
    protocol->HandleCommand(7, kBegin);
    ask("04 00 00 00  07 00 00 00");
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
    EXPECT_EQ(protocol->HandleCommand(7, kBegin), 1);
    EXPECT_EQ(ask(kPoll), "00 00 00 00");
}

TEST_F(VelmarProtocolCommandsTest, LetsEveryCommandGoOnToTheSimulator) {
    registerCommand(7, "sim/fire");
    for (const int phase : {kBegin, kContinue, kEnd, 3}) {
        EXPECT_EQ(protocol->HandleCommand(7, phase), 1);
        EXPECT_EQ(protocol->HandleCommand(9, phase), 1);
    }
}

TEST_F(VelmarProtocolCommandsTest, UnregistersEachCommandAndThenAllWhenDeleted) {
    registerCommand(9, "sim/ninth");
    registerCommand(2, "sim/second");
    registerCommand(2, "sim/replacement");
    VelmarProtocol* const deleted = protocol.get();
    protocol.reset();
    const std::vector<FakeCommandObserver::Subscription> expected{{deleted, 0, "sim/replacement"},
                                                                  {deleted, 0, "sim/ninth"}};
    EXPECT_EQ(observer.unregistered, expected);
    EXPECT_EQ(observer.protocolsGone, std::vector<IProtocol*>{deleted});
}

} // namespace
