#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/CommandObserver.h"
#include "headless/xplm/Simulator.h"
#include "network/IProtocol.h"
#include "support/FakeProtocol.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Pair;

// Second names of commands, which the simulator's table does not have.
std::map<std::string, std::string>& aliases() {
    static std::map<std::string, std::string> names;
    return names;
}

// As the plugin's plain function.
CommandObserver* observing = nullptr;

int callBack(void* command, int phase, void* refcon) {
    return observing->HandleCommand(command, phase, refcon);
}

auto call(const std::string& function, const std::string& arguments, const void* handle) {
    return AllOf(Field("function", &headless::RecordedCall::function, function),
                 Field("arguments", &headless::RecordedCall::arguments, arguments),
                 Field("handle", &headless::RecordedCall::handle, handle));
}

} // namespace

// Replaces the simulator's function of this name.
XPLMCommandRef XPLMFindCommand(const char* name) {
    const auto found = aliases().find(name);
    return headless::Simulator::Current().Commands().Find(
        found == aliases().end() ? name : found->second.c_str());
}

namespace {

class CommandObserverTest : public testing::Test {
protected:
    CommandObserverTest() {
        observing = &observer;
        gear = &simulator.Commands().Define("sim/flight_controls/landing_gear_down", "Gear down.");
        flaps = &simulator.Commands().Define("sim/flight_controls/flaps_up", "Flaps up.");
        simulator.Recorder().Enable();
    }
    ~CommandObserverTest() override {
        observing = nullptr;
        aliases().clear();
    }

    const std::vector<headless::RecordedCall>& calls() { return simulator.Recorder().Calls(); }

    const std::string kGear = "sim/flight_controls/landing_gear_down";
    const std::string kFlaps = "sim/flight_controls/flaps_up";

    headless::Simulator simulator;
    CommandObserver observer{callBack};
    headless::Command* gear = nullptr;
    headless::Command* flaps = nullptr;
    FakeProtocol first;
    FakeProtocol second;
    FakeProtocol third;
};

// --- Registration

TEST_F(CommandObserverTest, StartsWithoutCallingTheSimulator) {
    const CommandObserver other(callBack);
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(CommandObserverTest, FindsAKnownCommandAndRegistersItsHandlerBeforeTheSimulator) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    EXPECT_THAT(calls(), ElementsAre(call("XPLMFindCommand", kGear, gear),
                                     call("XPLMRegisterCommandHandler", kGear + ", 1", gear)));
    EXPECT_THAT(gear->handlers, ElementsAre(headless::CommandHandler{callBack, true, nullptr}));
    EXPECT_EQ(gear->description, "Gear down.");
}

TEST_F(CommandObserverTest, CreatesAnUnknownCommandWithItsNameAsDescriptionAndObservesIt) {
    observer.RegisterProtocolForCommandCallback(&first, 7, "kyr/client/button");
    const headless::Command* const created = simulator.Commands().Lookup("kyr/client/button");
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(created->description, "kyr/client/button");
    EXPECT_THAT(
        calls(),
        ElementsAre(call("XPLMFindCommand", "kyr/client/button", nullptr),
                    call("XPLMCreateCommand", "kyr/client/button, kyr/client/button", created),
                    call("XPLMRegisterCommandHandler", "kyr/client/button, 1", created)));
    simulator.Commands().Once(XPLMFindCommand("kyr/client/button"));
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0), Pair(7, 2)));
}

TEST_F(CommandObserverTest, DoesNotCallTheSimulatorForANameThatItKnows) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    simulator.Recorder().Clear();
    observer.RegisterProtocolForCommandCallback(&second, 8, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 9, kGear);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(observer.HandleCommand(gear, 0, nullptr), 1);
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0)));
}

TEST_F(CommandObserverTest, KeepsTheFirstIdOfAProtocolThatRegistersTwice) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 8, kGear);
    observer.HandleCommand(gear, 0, nullptr);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0)));
}

TEST_F(CommandObserverTest, KeepsAnIdPerCommand) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 4294967295U, kFlaps);
    observer.HandleCommand(flaps, 0, nullptr);
    observer.HandleCommand(gear, 2, nullptr);
    EXPECT_THAT(first.commands, ElementsAre(Pair(4294967295U, 0), Pair(7, 2)));
}

TEST_F(CommandObserverTest, DistinguishesNamesByLetterCase) {
    observer.RegisterProtocolForCommandCallback(&first, 7, "kyr/button");
    observer.RegisterProtocolForCommandCallback(&second, 8, "kyr/Button");
    simulator.Commands().Once(simulator.Commands().Lookup("kyr/Button"));
    EXPECT_THAT(first.commands, IsEmpty());
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0), Pair(8, 2)));
}

// --- Dispatch

TEST_F(CommandObserverTest, HandsEveryPhaseToTheProtocolUnchanged) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    for (const int phase : {0, 1, 2, 17}) {
        EXPECT_EQ(observer.HandleCommand(gear, phase, nullptr), 1);
    }
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0), Pair(7, 1), Pair(7, 2), Pair(7, 17)));
}

TEST_F(CommandObserverTest, IsCalledByTheSimulatorWhenACommandIsHeld) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    simulator.Commands().Begin(gear);
    simulator.RunFrame(0.02);
    simulator.RunFrame(0.02);
    simulator.Commands().End(gear);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0), Pair(7, 1), Pair(7, 1), Pair(7, 2)));
}

TEST_F(CommandObserverTest, DoesNotLookAtTheRefcon) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    int anything = 0;
    EXPECT_EQ(observer.HandleCommand(gear, 0, &anything), 1);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0)));
}

TEST_F(CommandObserverTest, PassesOnACommandWithoutListeners) {
    EXPECT_EQ(observer.HandleCommand(gear, 0, nullptr), 1);
    EXPECT_EQ(observer.HandleCommand(nullptr, 0, nullptr), 1);
}

TEST_F(CommandObserverTest, PassesOnACommandAfterItsListenersLeft) {
    first.commandResult = 0;
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.UnregisterProtocolForCommandCallback(&first, kGear);
    EXPECT_EQ(observer.HandleCommand(gear, 0, nullptr), 1);
    EXPECT_THAT(first.commands, IsEmpty());
}

TEST_F(CommandObserverTest, PassesOnACommandOnlyIfEveryListenerReturnsOne) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, kGear);
    const auto result = [&](int firstResult, int secondResult) {
        first.commandResult = firstResult;
        second.commandResult = secondResult;
        return observer.HandleCommand(gear, 0, nullptr);
    };
    EXPECT_EQ(result(1, 1), 1);
    EXPECT_EQ(result(0, 1), 0);
    EXPECT_EQ(result(1, 0), 0);
    EXPECT_EQ(result(0, 0), 0);
    EXPECT_EQ(result(2, 1), 0);
    EXPECT_EQ(result(1, -1), 0);
    // Both were called every time, whatever the other returned.
    EXPECT_EQ(first.commands.size(), 6U);
    EXPECT_EQ(second.commands.size(), 6U);
}

TEST_F(CommandObserverTest, SwallowsACommandInTheSimulator) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    first.commandResult = 0;
    simulator.Commands().Once(gear);
    EXPECT_THAT(gear->pressed, ElementsAre(1, 0, 1));
    EXPECT_THAT(gear->passedOn, ElementsAre(0, 0, 0));
    first.commandResult = 1;
    simulator.Commands().Once(gear);
    EXPECT_THAT(gear->passedOn, ElementsAre(1, 0, 1));
}

// Notes the order in which instances are called.
class OrderedProtocol final : public IProtocol {
public:
    explicit OrderedProtocol(std::vector<const IProtocol*>& orderOfCalls) : order(orderOfCalls) {}
    unsigned int GetProtocolIdentification() override { return 0; }
    int Feed(IRingBuffer*, IRingBuffer*) override { return 0; }
    int HandleCommand(unsigned int, int) override {
        order.push_back(this);
        return 1;
    }

private:
    std::vector<const IProtocol*>& order;
};

TEST_F(CommandObserverTest, CallsListenersInAscendingOrderOfTheirAddresses) {
    std::vector<const IProtocol*> order;
    // In one array, so that the addresses ascend.
    OrderedProtocol protocols[] = {OrderedProtocol(order), OrderedProtocol(order),
                                   OrderedProtocol(order), OrderedProtocol(order)};
    observer.RegisterProtocolForCommandCallback(&protocols[2], 7, kGear);
    observer.RegisterProtocolForCommandCallback(&protocols[0], 9, kGear);
    observer.RegisterProtocolForCommandCallback(&protocols[3], 6, kGear);
    observer.RegisterProtocolForCommandCallback(&protocols[1], 8, kGear);
    observer.HandleCommand(gear, 0, nullptr);
    EXPECT_THAT(order, ElementsAre(&protocols[0], &protocols[1], &protocols[2], &protocols[3]));
}

// --- Leaving

TEST_F(CommandObserverTest, RemovesOneListenerAndKeepsTheOthers) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 9, kFlaps);
    observer.UnregisterProtocolForCommandCallback(&first, kGear);
    observer.HandleCommand(gear, 0, nullptr);
    observer.HandleCommand(flaps, 0, nullptr);
    EXPECT_THAT(first.commands, ElementsAre(Pair(9, 0)));
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0)));
}

TEST_F(CommandObserverTest, IgnoresAProtocolThatLeavesWithoutListening) {
    observer.UnregisterProtocolForCommandCallback(&first, "kyr/unknown");
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    simulator.Recorder().Clear();
    observer.UnregisterProtocolForCommandCallback(&second, kGear);
    observer.UnregisterProtocolForCommandCallback(&first, kFlaps);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(observer.HandleCommand(gear, 0, nullptr), 1);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0)));
}

TEST_F(CommandObserverTest, KeepsTheHandlerAfterTheLastListenerOfACommandLeft) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    simulator.Recorder().Clear();
    observer.UnregisterProtocolForCommandCallback(&first, kGear);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(gear->handlers.size(), 1U);
    simulator.Commands().Once(gear);
    EXPECT_THAT(gear->passedOn, ElementsAre(1, 0, 1));
}

TEST_F(CommandObserverTest, TakesAListenerBackWithoutCallingTheSimulator) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.UnregisterProtocolForCommandCallback(&first, kGear);
    simulator.Recorder().Clear();
    observer.RegisterProtocolForCommandCallback(&first, 8, kGear);
    EXPECT_THAT(calls(), IsEmpty());
    simulator.Commands().Once(gear);
    EXPECT_THAT(first.commands, ElementsAre(Pair(8, 0), Pair(8, 2)));
}

TEST_F(CommandObserverTest, RemovesAProtocolFromAllCommands) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 9, kFlaps);
    simulator.Recorder().Clear();
    observer.UnregisterAllForProtocol(&first);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(observer.HandleCommand(gear, 0, nullptr), 1);
    EXPECT_EQ(observer.HandleCommand(flaps, 0, nullptr), 1);
    EXPECT_THAT(first.commands, IsEmpty());
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0)));
    EXPECT_EQ(gear->handlers.size(), 1U);
    EXPECT_EQ(flaps->handlers.size(), 1U);
}

TEST_F(CommandObserverTest, IgnoresTheRemovalOfAnUnknownProtocol) {
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.UnregisterAllForProtocol(&second);
    observer.HandleCommand(gear, 0, nullptr);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0)));
}

TEST_F(CommandObserverTest, LeavesItsHandlersRegisteredWhenItIsDeleted) {
    {
        CommandObserver other(callBack);
        other.RegisterProtocolForCommandCallback(&first, 7, kGear);
        simulator.Recorder().Clear();
    }
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(gear->handlers.size(), 1U);
}

// --- Two names of one command

TEST_F(CommandObserverTest, SharesTheListenersOfTwoNamesOfOneCommand) {
    aliases()["kyr/gear"] = kGear;
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, "kyr/gear");
    simulator.Commands().Once(gear);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0), Pair(7, 2)));
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0), Pair(8, 2)));
}

// The simulator would call a handler that is registered twice twice per phase.
TEST_F(CommandObserverTest, RegistersOneHandlerForTwoNamesOfOneCommand) {
    aliases()["kyr/gear"] = kGear;
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, "kyr/gear");
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterCommandHandler").size(), 1U);
    EXPECT_EQ(simulator.Recorder().Refusals(headless::Refusal::AlreadyRegistered), 0U);
}

TEST_F(CommandObserverTest, LeavesUnderEitherNameOfACommand) {
    aliases()["kyr/gear"] = kGear;
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&second, 8, "kyr/gear");
    observer.UnregisterProtocolForCommandCallback(&first, "kyr/gear");
    observer.HandleCommand(gear, 0, nullptr);
    EXPECT_THAT(first.commands, IsEmpty());
    EXPECT_THAT(second.commands, ElementsAre(Pair(8, 0)));
}

TEST_F(CommandObserverTest, KeepsTheFirstIdOfAProtocolThatRegistersUnderASecondName) {
    aliases()["kyr/gear"] = kGear;
    observer.RegisterProtocolForCommandCallback(&first, 7, kGear);
    observer.RegisterProtocolForCommandCallback(&first, 8, "kyr/gear");
    observer.HandleCommand(gear, 0, nullptr);
    EXPECT_THAT(first.commands, ElementsAre(Pair(7, 0)));
}

} // namespace
