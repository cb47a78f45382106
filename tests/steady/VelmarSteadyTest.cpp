// A steady exchange of a Velmar client allocates nothing.

#include <gtest/gtest.h>

#include "protocols/velmar/VelmarProtocol.h"
#include "steady/SteadyWorld.h"
#include "support/VelmarMessages.h"

namespace {

using testing::Values;

// The parameter is the number of datarefs of each type, or of commands.
class VelmarSteadyTest : public testing::TestWithParam<int> {
protected:
    static constexpr std::uint32_t kTypes = 5;

    void exchange(Bytes request) { world.Exchange(protocol, request); }

    void registerDatarefs() {
        const char* const prefixes[kTypes] = {"sim/int/", "sim/float/", "sim/int/", "sim/ints/",
                                              "sim/floats/"};
        for (std::uint32_t id = 0; id < count * kTypes; ++id) {
            exchange(
                registerDataref(id, id % kTypes + 1, SteadyWorld::kElements,
                                numbered(prefixes[id % kTypes], static_cast<int>(id / kTypes))));
        }
    }

    static Bytes valueOf(std::uint32_t type) {
        const std::size_t size = type == 3 ? 1 : type < 3 ? 4 : 4 * SteadyWorld::kElements;
        return zeros(size);
    }

    std::size_t allocationsFor(Bytes request) {
        world.Exchange(protocol, request);
        const Allocations taken =
            Allocations::Of([&] { answered = world.Exchange(protocol, request); });
        return taken.count;
    }

    std::uint32_t count = static_cast<std::uint32_t>(GetParam());
    unsigned long answered = 0;
    SteadyWorld world{GetParam()};
    VelmarProtocol protocol{&world.simState, &world.observer, &world.logger, &world.utilities,
                            &world.provider};
};

TEST_P(VelmarSteadyTest, TakesNoMemoryToReadDatarefsOfEveryType) {
    registerDatarefs();
    Bytes request;
    for (std::uint32_t id = 0; id < count * kTypes; ++id) {
        request = join({request, readDataref(id)});
    }
    EXPECT_EQ(allocationsFor(request), 0U);
    EXPECT_EQ(answered, count * (5 * 16 + 4 + 4 + 1 + 12 + 12));
}

TEST_P(VelmarSteadyTest, TakesNoMemoryToWriteDatarefsOfEveryType) {
    registerDatarefs();
    Bytes request;
    for (std::uint32_t id = 0; id < count * kTypes; ++id) {
        request = join({request, writeDataref(id, valueOf(id % kTypes + 1))});
    }
    EXPECT_EQ(allocationsFor(request), 0U);
    EXPECT_EQ(answered, count * kTypes * 12);
}

TEST_P(VelmarSteadyTest, TakesNoMemoryToPollChangedCommands) {
    for (std::uint32_t id = 0; id < count; ++id) {
        const std::string name = numbered("sim/command/", static_cast<int>(id));
        world.simulator.Commands().Define(name, name);
        exchange(join({registerCommand(id, name), zeros(4)}));
        protocol.HandleCommand(id, 0);
    }
    EXPECT_EQ(allocationsFor(pollCommandStates()), 0U);
    EXPECT_EQ(answered, 4 + count * 5);
}

INSTANTIATE_TEST_SUITE_P(Sizes, VelmarSteadyTest, Values(1, 10, 100, 1000));

} // namespace
