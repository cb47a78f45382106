#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMUtilities.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/utilities/CommandTable.h"

using headless::Command;
using headless::PhaseCounts;
using headless::Refusal;
using headless::Simulator;

namespace {

// Writes down who was called with which phase, and answers as told.
struct Listener {
    std::vector<std::string>* journal = nullptr;
    std::string name;
    int answer = 1;
};

int listen(XPLMCommandRef /*command*/, XPLMCommandPhase phase, void* refcon) {
    auto* listener = static_cast<Listener*>(refcon);
    listener->journal->push_back(listener->name + std::to_string(phase));
    return listener->answer;
}

int removeMyself(XPLMCommandRef command, XPLMCommandPhase /*phase*/, void* refcon) {
    XPLMUnregisterCommandHandler(command, &removeMyself, 1, refcon);
    ++*static_cast<int*>(refcon);
    return 1;
}

int removeTheOther(XPLMCommandRef command, XPLMCommandPhase /*phase*/, void* refcon) {
    XPLMUnregisterCommandHandler(command, &listen, 1, refcon);
    return 1;
}

int addAnother(XPLMCommandRef command, XPLMCommandPhase /*phase*/, void* refcon) {
    XPLMRegisterCommandHandler(command, &listen, 1, refcon);
    return 1;
}

} // namespace

class CommandTableTest : public ::testing::Test {
protected:
    Simulator sim;
    Command& gear = sim.Commands().Define("sim/gear", "Gear");
    std::vector<std::string> journal;
    Listener a{&journal, "a"};
    Listener b{&journal, "b"};
};

TEST_F(CommandTableTest, FindsOnlyCommandsThatExist) {
    EXPECT_EQ(XPLMFindCommand("sim/gear"), &gear);
    EXPECT_EQ(XPLMFindCommand("sim/none"), nullptr);
    EXPECT_EQ(XPLMFindCommand(nullptr), nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownName), 1U);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NullText), 1U);
}

TEST_F(CommandTableTest, CreatingAKnownCommandReturnsItUnchanged) {
    EXPECT_EQ(XPLMCreateCommand("sim/gear", "Other"), &gear);
    EXPECT_EQ(gear.description, "Gear");
    const XPLMCommandRef created = XPLMCreateCommand("plugin/new", "New");
    EXPECT_EQ(XPLMFindCommand("plugin/new"), created);
    EXPECT_EQ(sim.Commands().Lookup("plugin/new")->description, "New");
}

TEST_F(CommandTableTest, OnceRaisesBeginAndEndAtOnce) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandOnce(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(journal, (std::vector<std::string>{"a0", "a2"}));
}

TEST_F(CommandTableTest, AHeldCommandContinuesOncePerFrameUntilItEnds) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandBegin(&gear);
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    XPLMCommandEnd(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(journal, (std::vector<std::string>{"a0", "a1", "a1", "a2"}));
}

TEST_F(CommandTableTest, ACommandBegunTwiceIsHeldUntilItEndedTwice) {
    XPLMCommandBegin(&gear);
    XPLMCommandBegin(&gear);
    XPLMCommandEnd(&gear);
    sim.RunFrame(0.1);
    XPLMCommandEnd(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(gear.pressed, (PhaseCounts{2, 1, 2}));
}

TEST_F(CommandTableTest, AnEndWithoutABeginIsRaisedAndRecorded) {
    XPLMCommandEnd(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(gear.pressed, (PhaseCounts{0, 0, 1}));
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnbalancedEnd), 1U);
    XPLMCommandBegin(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(gear.pressed, (PhaseCounts{1, 1, 1}));
}

TEST_F(CommandTableTest, HandlersBeforeTheSimulatorRunFirstInTheOrderOfRegistration) {
    Listener after{&journal, "after"};
    XPLMRegisterCommandHandler(&gear, &listen, 0, &after);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &b);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    gear.action = [this](XPLMCommandPhase phase) {
        journal.push_back("sim" + std::to_string(phase));
    };
    XPLMCommandBegin(&gear);
    EXPECT_EQ(journal, (std::vector<std::string>{"b0", "a0", "sim0", "after0"}));
}

TEST_F(CommandTableTest, AHandlerThatReturnsZeroSwallowsThePhase) {
    Listener after{&journal, "after"};
    b.answer = 0;
    XPLMRegisterCommandHandler(&gear, &listen, 1, &b);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMRegisterCommandHandler(&gear, &listen, 0, &after);
    XPLMCommandOnce(&gear);
    EXPECT_EQ(journal, (std::vector<std::string>{"b0", "b2"}));
    EXPECT_EQ(gear.pressed, (PhaseCounts{1, 0, 1}));
    EXPECT_EQ(gear.passedOn, (PhaseCounts{0, 0, 0}));
}

TEST_F(CommandTableTest, CountsPhasesThatWerePassedOn) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandOnce(&gear);
    a.answer = 0;
    XPLMCommandBegin(&gear);
    sim.RunFrame(0.1);
    EXPECT_EQ(gear.pressed, (PhaseCounts{2, 1, 1}));
    EXPECT_EQ(gear.passedOn, (PhaseCounts{1, 0, 1}));
}

TEST_F(CommandTableTest, AnUnregisteredHandlerIsNotCalled) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMUnregisterCommandHandler(&gear, &listen, 0, &a);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NotRegistered), 1U);
    XPLMUnregisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandOnce(&gear);
    EXPECT_TRUE(journal.empty());
}

TEST_F(CommandTableTest, AHandlerRegisteredTwiceIsCalledOnce) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandBegin(&gear);
    EXPECT_EQ(journal, (std::vector<std::string>{"a0"}));
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::AlreadyRegistered), 1U);
}

TEST_F(CommandTableTest, AHandlerMayUnregisterItselfWhileItRuns) {
    int calls = 0;
    XPLMRegisterCommandHandler(&gear, &removeMyself, 1, &calls);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandOnce(&gear);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(journal, (std::vector<std::string>{"a0", "a2"}));
}

TEST_F(CommandTableTest, AHandlerThatWasUnregisteredDuringDispatchIsNotCalledAnyMore) {
    XPLMRegisterCommandHandler(&gear, &removeTheOther, 1, &a);
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandBegin(&gear);
    EXPECT_TRUE(journal.empty());
}

TEST_F(CommandTableTest, AHandlerRegisteredDuringDispatchIsCalledFromTheNextPhaseOn) {
    XPLMRegisterCommandHandler(&gear, &addAnother, 1, &a);
    XPLMCommandBegin(&gear);
    EXPECT_TRUE(journal.empty());
    XPLMCommandEnd(&gear);
    EXPECT_EQ(journal, (std::vector<std::string>{"a2"}));
}

TEST_F(CommandTableTest, NullAndForeignHandlesAreHarmlessAndRecorded) {
    int somewhere = 0;
    XPLMCommandBegin(nullptr);
    XPLMCommandEnd(nullptr);
    XPLMCommandOnce(nullptr);
    XPLMRegisterCommandHandler(nullptr, &listen, 1, nullptr);
    XPLMUnregisterCommandHandler(nullptr, &listen, 1, nullptr);
    XPLMRegisterCommandHandler(&gear, nullptr, 1, nullptr);
    XPLMCommandOnce(&somewhere);
    EXPECT_EQ(sim.Recorder().NullHandleCalls(), 6U);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
    EXPECT_EQ(gear.pressed, (PhaseCounts{0, 0, 0}));
}

TEST_F(CommandTableTest, RecordsTheCallsOfPlugins) {
    sim.Recorder().Enable();
    XPLMFindCommand("sim/gear");
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    XPLMCommandOnce(&gear);
    const auto& calls = sim.Recorder().Calls();
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0].function, "XPLMFindCommand");
    EXPECT_EQ(calls[1].function, "XPLMRegisterCommandHandler");
    EXPECT_EQ(calls[1].arguments, "sim/gear, 1");
    EXPECT_EQ(calls[2].function, "XPLMCommandOnce");
    EXPECT_EQ(calls[2].handle, &gear);
}

TEST_F(CommandTableTest, DroppingHandlersKeepsTheCommands) {
    XPLMRegisterCommandHandler(&gear, &listen, 1, &a);
    sim.Commands().DropOf(XPLM_PLUGIN_XPLANE);
    XPLMCommandOnce(&gear);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(gear.passedOn, (PhaseCounts{1, 0, 1}));
}
