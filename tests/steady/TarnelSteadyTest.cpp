// A steady exchange of a Tarnel client allocates nothing.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "protocols/tarnel/TarnelProtocol.h"
#include "steady/SteadyWorld.h"
#include "support/TarnelMessages.h"

namespace {

using testing::Values;

// The parameter is the number of everything.
class TarnelSteadyTest : public testing::TestWithParam<int> {
protected:
    void define(const std::vector<InputRecord>& inputs, const std::vector<OutputRecord>& outputs) {
        Bytes message = definitionsMessage(inputs, outputs);
        world.Exchange(protocol, message);
    }

    // Of the third exchange with the same request.
    std::size_t allocationsFor(Bytes request) {
        world.Exchange(protocol, request);
        world.Exchange(protocol, request);
        return Allocations::Of([&] { world.Exchange(protocol, request); }).count;
    }

    std::vector<OutputRecord> outputsOfEveryType() const {
        std::vector<OutputRecord> outputs;
        const auto add = [&](std::string name, std::int32_t type) {
            outputs.push_back({.id = static_cast<std::uint32_t>(outputs.size()),
                               .name = std::move(name),
                               .type = type,
                               .count = SteadyWorld::kElements});
        };
        for (int i = 0; i < GetParam(); ++i) {
            add(numbered("sim/int/", i), 1);
            add(numbered("sim/float/", i), 2);
            add(numbered("sim/ints/", i), 3);
            add(numbered("sim/floats/", i), 4);
            add(numbered("kyr/command/", i), 6);
            add(numbered("sim/unknown/", i), 3);
        }
        return outputs;
    }

    // Every target type and scaling. A held command stays held.
    std::vector<InputRecord> inputsOfEveryType() const {
        std::vector<InputRecord> inputs;
        const auto add = [&](const char* prefix, int number, std::int32_t type,
                             std::int32_t scaling) {
            inputs.push_back({.action = static_cast<std::int32_t>(inputs.size()),
                              .targetType = type,
                              .scaling = scaling,
                              .rangeType = 2,
                              .floatMaximum = 1.0F,
                              .hold = 1,
                              .rangeMinimumName = "sim/float/10000",
                              .rangeMaximumName = "sim/float/10000",
                              .target = numbered(prefix, number)});
        };
        for (int i = 0; i < GetParam(); ++i) {
            add("sim/int/", i, 1, 0);
            add("sim/float/", i, 2, 0);
            add("sim/float/", i, 2, 1);
            add("sim/float/", i, 2, 2);
            add("sim/float/", i, 2, 3);
            add("sim/ints/", i, 3, 0);
            add("sim/floats/", i, 4, 2);
            add("sim/unknown/", i, 6, 0);
        }
        return inputs;
    }

    static Bytes dataFor(const std::vector<InputRecord>& inputs) {
        std::vector<std::pair<std::uint32_t, std::int32_t>> items;
        for (const InputRecord& input : inputs) {
            items.emplace_back(static_cast<std::uint32_t>(input.action), 1);
        }
        return dataMessage(items);
    }

    SteadyWorld world{GetParam()};
    TarnelProtocol protocol{&world.simState, &world.logger, &world.utilities, &world.provider,
                            &world.observer};
};

TEST_P(TarnelSteadyTest, TakesNoMemoryForADataMessage) {
    const std::vector<InputRecord> inputs = inputsOfEveryType();
    define(inputs, outputsOfEveryType());
    EXPECT_EQ(allocationsFor(dataFor(inputs)), 0U);
}

TEST_P(TarnelSteadyTest, TakesNoMemoryWithoutAnAircraft) {
    const std::vector<InputRecord> inputs = inputsOfEveryType();
    define(inputs, outputsOfEveryType());
    world.simState.SetPlaneLoaded(false);
    EXPECT_EQ(allocationsFor(dataFor(inputs)), 0U);
}

TEST_P(TarnelSteadyTest, TakesNoMemoryForAPollWithoutAMessage) {
    define({}, outputsOfEveryType());
    EXPECT_EQ(allocationsFor({}), 0U);
}

TEST_P(TarnelSteadyTest, TakesNoMemoryForAVersionRequest) {
    EXPECT_EQ(allocationsFor(versionMessage()), 0U);
}

TEST_P(TarnelSteadyTest, TakesNoMemoryWhateverTheOrderOfTheItems) {
    std::vector<InputRecord> inputs = inputsOfEveryType();
    define(inputs, {});
    Bytes forward = dataFor(inputs);
    std::reverse(inputs.begin(), inputs.end());
    Bytes backward = dataFor(inputs);
    world.Exchange(protocol, forward);
    world.Exchange(protocol, backward);
    EXPECT_EQ(Allocations::Of([&] { world.Exchange(protocol, forward); }).count, 0U);
    EXPECT_EQ(Allocations::Of([&] { world.Exchange(protocol, backward); }).count, 0U);
}

TEST_P(TarnelSteadyTest, TakesNoMemoryWhenAnObservedCommandChangesItsPhase) {
    define({}, outputsOfEveryType());
    EXPECT_EQ(Allocations::Of([&] {
                  protocol.HandleCommand(4, 0);
                  protocol.HandleCommand(4, 2);
              }).count,
              0U);
}

INSTANTIATE_TEST_SUITE_P(Sizes, TarnelSteadyTest, Values(1, 10, 100, 1000));

} // namespace
