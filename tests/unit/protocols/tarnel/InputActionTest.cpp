#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputTargetsFixture.h"
#include "protocols/tarnel/InputAction.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InputActionTest : public InputTargetsFixture {
protected:
    static void execute(InputAction& action, std::int32_t value, unsigned long nowMs = 1'000'000) {
        Bytes bytes = i32(value);
        action.ExecuteAction(bytes.data(), nowMs);
    }
};

TEST_F(InputActionTest, KeepsItsIdentifier) {
    EXPECT_EQ(InputAction(7).GetActionID(), 7);
    EXPECT_EQ(InputAction(0).GetActionID(), 0);
    EXPECT_EQ(InputAction(-2147483647).GetActionID(), -2147483647);
}

TEST_F(InputActionTest, DoesNothingWithoutDefinitions) {
    InputAction action(7);
    execute(action, 1);
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
}

TEST_F(InputActionTest, AppliesAValueToEveryDefinitionInTheOrderOfAddition) {
    InputAction action(7);
    action.AddInputDefinition(toRecord({.targetType = 4, .target = "sim/floats"}));
    action.AddInputDefinition(toRecord({.targetType = 6, .target = "sim/command"}));
    action.AddInputDefinition(toRecord({.targetType = 1, .target = "sim/int"}));
    execute(action, 1);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatavf(sim/floats, 0, 1)",
                                       "XPLMCommandOnce(sim/command)", "XPLMSetDatai(sim/int, 1)"));
}

TEST_F(InputActionTest, LetsEachDefinitionDecideForItself) {
    InputAction action(7);
    action.AddInputDefinition(toRecord({.targetType = 1, .condition = 2, .target = "sim/int"}));
    action.AddInputDefinition(toRecord({.targetIndex = 3, .targetType = 3, .target = "sim/ints"}));
    execute(action, 0);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatavi(sim/ints, 3, 1)"));
}

TEST_F(InputActionTest, ResolvesANameWhenTheDefinitionIsAddedAndNeverAgain) {
    InputAction action(7);
    action.AddInputDefinition(toRecord({.targetType = 1, .target = "sim/int"}));
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMFindDataRef").size(), 1U);
    execute(action, 1);
    execute(action, 2);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMFindDataRef").size(), 1U);
}

TEST_F(InputActionTest, GivesTheTimeOfTheMessageToEveryDefinition) {
    InputAction action(7);
    const InputRecord throttled{.repeatInterval = 200, .targetType = 6, .target = "sim/command"};
    action.AddInputDefinition(toRecord(throttled));
    action.AddInputDefinition(toRecord(throttled));
    execute(action, 1, 200);
    EXPECT_THAT(effects(), IsEmpty());
    execute(action, 1, 201);
    EXPECT_THAT(effects(),
                ElementsAre("XPLMCommandOnce(sim/command)", "XPLMCommandOnce(sim/command)"));
}

TEST_F(InputActionTest, DoesNotEndAHeldCommandWhenItGoes) {
    {
        InputAction action(7);
        action.AddInputDefinition(toRecord({.targetType = 6, .hold = 1, .target = "sim/command"}));
        execute(action, 1);
        EXPECT_THAT(effects(), ElementsAre("XPLMCommandBegin(sim/command)"));
    }
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_EQ(simulator.Commands().Lookup("sim/command")->held, 1);
}

} // namespace
