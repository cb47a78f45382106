#include <utility>

#include "VelmarProtocolTest.h"
#include "WiredCommandObserver.h"

namespace {

// The protocol with the real observer, and commands that the simulator itself runs.
class VelmarCommandObservationTest : public VelmarProtocolTest {
protected:
    VelmarCommandObservationTest() { protocol = makeProtocol(); }

    // Destroyed before the observer, which it uses to unregister.
    ~VelmarCommandObservationTest() override { protocol.reset(); }

    std::unique_ptr<VelmarProtocol> makeProtocol() {
        return std::make_unique<VelmarProtocol>(nullptr, wired.Get(), &logger, nullptr, nullptr);
    }

    void begin(const char* command) {
        simulator.Commands().Begin(simulator.Commands().Lookup(command));
    }
    void end(const char* command) {
        simulator.Commands().End(simulator.Commands().Lookup(command));
    }
    void press(const char* command) {
        simulator.Commands().Once(simulator.Commands().Lookup(command));
    }
    std::size_t passedOn(const char* command, int phase) {
        return simulator.Commands().Lookup(command)->passedOn.at(static_cast<std::size_t>(phase));
    }

    std::string poll() { return ask("08 00 00 00"); }

    WiredCommandObserver wired;
};

TEST_F(VelmarCommandObservationTest, ReportsACommandThatTheSimulatorHoldsAndReleases) {
    registerCommand(7, "sim/fire");
    begin("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 01");
    simulator.RunFrame(0.02);
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 01");
    end("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarCommandObservationTest, ReportsAPressBetweenTwoPolls) {
    registerCommand(7, "sim/fire");
    EXPECT_EQ(poll(), "00 00 00 00");
    press("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarCommandObservationTest, SwallowsNothing) {
    registerCommand(7, "sim/fire");
    begin("sim/fire");
    simulator.RunFrame(0.02);
    end("sim/fire");
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandBegin), 1U);
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandContinue), 1U);
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandEnd), 1U);
}

TEST_F(VelmarCommandObservationTest, ReportsACommandThatItsOwnClientRuns) {
    registerCommand(7, "sim/fire");
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  01  08 00 00 00"), "01 00 00 00 07 00 00 00 02");
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  02  08 00 00 00"), "01 00 00 00 07 00 00 00 01");
    EXPECT_EQ(ask("07 00 00 00  07 00 00 00  00  08 00 00 00"), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarCommandObservationTest, SeesAHeldCommandAgainAfterItIsRegisteredAnew) {
    registerCommand(7, "sim/fire");
    begin("sim/fire");
    registerCommand(7, "sim/fire");
    EXPECT_EQ(poll(), "00 00 00 00");
    simulator.RunFrame(0.02);
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 01");
}

TEST_F(VelmarCommandObservationTest, StopsReportingAnUnregisteredCommand) {
    registerCommand(7, "sim/fire");
    ask("04 00 00 00  07 00 00 00");
    press("sim/fire");
    EXPECT_EQ(poll(), "00 00 00 00");
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandBegin), 1U);
}

TEST_F(VelmarCommandObservationTest, ReportsACommandUnderANewIdentifierAfterItWasUnregistered) {
    registerCommand(7, "sim/fire");
    ask("04 00 00 00  07 00 00 00");
    ask(commandPacket(8, "sim/fire"));
    press("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 08 00 00 00 02");
}

// A protocol has one identifier per command: the first.
TEST_F(VelmarCommandObservationTest, ReportsACommandUnderItsFirstIdentifierOnly) {
    registerCommand(7, "sim/fire");
    ask(commandPacket(8, "sim/fire"));
    press("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarCommandObservationTest, ReportsACommandOfTwoIdentifiersNoMoreWhenOneIsUnregistered) {
    registerCommand(7, "sim/first");
    ask(commandPacket(8, "sim/first"));
    ask("04 00 00 00  07 00 00 00");
    press("sim/first");
    EXPECT_EQ(poll(), "00 00 00 00");

    registerCommand(1, "sim/second");
    ask(commandPacket(2, "sim/second"));
    ask("04 00 00 00  02 00 00 00");
    press("sim/second");
    EXPECT_EQ(poll(), "00 00 00 00");
}

// The replaced command is still observed, under the number that the other has now.
TEST_F(VelmarCommandObservationTest, ReportsAReplacedCommandUnderItsFormerIdentifier) {
    registerCommand(7, "sim/first");
    registerCommand(7, "sim/second");
    press("sim/first");
    EXPECT_EQ(poll(), "01 00 00 00 07 00 00 00 02");
}

TEST_F(VelmarCommandObservationTest, IsNotCalledAfterItWasDeleted) {
    registerCommand(7, "sim/fire");
    begin("sim/fire");
    protocol.reset();
    simulator.RunFrame(0.02);
    end("sim/fire");
    press("sim/fire");
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandBegin), 2U);
    EXPECT_EQ(passedOn("sim/fire", xplm_CommandEnd), 2U);
}

TEST_F(VelmarCommandObservationTest, LeavesNoListenerOfAReplacedCommand) {
    registerCommand(7, "sim/first");
    registerCommand(7, "sim/second");
    protocol.reset();
    press("sim/first");
    press("sim/second");
    EXPECT_EQ(passedOn("sim/first", xplm_CommandBegin), 1U);
    EXPECT_EQ(passedOn("sim/second", xplm_CommandBegin), 1U);
}

TEST_F(VelmarCommandObservationTest, LeavesTheListenersOfAnotherInstanceAlone) {
    registerCommand(7, "sim/fire");
    std::unique_ptr<VelmarProtocol> leaving = std::exchange(protocol, makeProtocol());
    ask(commandPacket(9, "sim/fire"));
    leaving.reset();
    press("sim/fire");
    EXPECT_EQ(poll(), "01 00 00 00 09 00 00 00 02");
}

} // namespace
