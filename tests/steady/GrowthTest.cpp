// Nothing that the plugin does grows faster than linearly with what clients ask for.
//
// Counted is what does not depend on the machine: calls to the simulator, operations on the ring
// buffers with the bytes of their block copies, and memory taken. Steps of a look-up in a map are
// not seen.

#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "protocols/tarnel/TarnelProtocol.h"
#include "protocols/velmar/VelmarProtocol.h"
#include "steady/CountingRingBuffer.h"
#include "steady/Growth.h"
#include "steady/SteadyWorld.h"
#include "support/TarnelMessages.h"
#include "support/VelmarMessages.h"

namespace {

// Tolerance for the doubling of vectors, which takes more memory right after a step than before it.
constexpr double kLinear = 1.05;

struct Work {
    double simulatorCalls = 0;
    double ringBufferOperations = 0;
    double allocations = 0;
    double allocatedBytes = 0;
};

double growthOf(const std::vector<int>& sizes, const std::vector<Work>& works,
                double Work::*count) {
    std::vector<double> counts;
    for (const Work& work : works) {
        counts.push_back(work.*count);
    }
    return exponentOf(sizes, counts);
}

class GrowthTest : public testing::Test {
protected:
    // Everything one protocol needs, with `size` datarefs of each type.
    struct Scene {
        explicit Scene(int size) : world(size) {}

        void Feed(IProtocol& protocol, Bytes request) {
            world.in.ResetBuffer();
            world.in.WriteByteArray(request.data(), request.size());
            protocol.Feed(&in, &out);
            world.out.ResetBuffer();
        }

        SteadyWorld world;
        CountingRingBuffer in{world.in};
        CountingRingBuffer out{world.out};
        TarnelProtocol tarnel{&world.simState, &world.logger, &world.utilities, &world.provider,
                              &world.observer};
        VelmarProtocol velmar{&world.simState, &world.observer, &world.logger, &world.utilities,
                              &world.provider};
    };
    using Step = std::function<void(Scene&, int size)>;

    // The work of `step` after `preparation`. Done twice, since recording calls takes memory.
    static Work workOf(int size, const Step& preparation, const Step& step) {
        Work work;
        {
            Scene scene(size);
            preparation(scene, size);
            const std::size_t before = scene.in.Operations() + scene.out.Operations();
            const Allocations taken = Allocations::Of([&] { step(scene, size); });
            const std::size_t after = scene.in.Operations() + scene.out.Operations();
            work.ringBufferOperations = static_cast<double>(after - before);
            work.allocations = static_cast<double>(taken.count);
            work.allocatedBytes = static_cast<double>(taken.bytes);
        }
        Scene scene(size);
        preparation(scene, size);
        scene.world.simulator.Recorder().Enable();
        step(scene, size);
        work.simulatorCalls = static_cast<double>(scene.world.simulator.Recorder().Calls().size());
        return work;
    }

    static void expectLinear(const Step& preparation, const Step& step) {
        const std::vector<int> sizes = {100, 300, 1000, 3000, 10'000};
        std::vector<Work> works;
        for (const int size : sizes) {
            works.push_back(workOf(size, preparation, step));
        }
        // Otherwise the step did nothing.
        EXPECT_GE(works.back().simulatorCalls + works.back().ringBufferOperations, 10'000);
        EXPECT_LE(growthOf(sizes, works, &Work::simulatorCalls), kLinear);
        EXPECT_LE(growthOf(sizes, works, &Work::ringBufferOperations), kLinear);
        EXPECT_LE(growthOf(sizes, works, &Work::allocations), kLinear);
        EXPECT_LE(growthOf(sizes, works, &Work::allocatedBytes), kLinear);
    }

    static std::vector<OutputRecord> outputs(int size, const char* prefix, std::int32_t type) {
        std::vector<OutputRecord> records;
        for (int i = 0; i < size; ++i) {
            records.push_back({.id = static_cast<std::uint32_t>(i),
                               .name = numbered(prefix, i),
                               .type = type,
                               .count = SteadyWorld::kElements});
        }
        return records;
    }

    static std::vector<InputRecord> inputs(int size) {
        std::vector<InputRecord> records;
        for (int i = 0; i < size; ++i) {
            records.push_back({.action = i, .targetType = 2, .target = numbered("sim/float/", i)});
        }
        return records;
    }

    static Bytes items(int size) {
        std::vector<std::pair<std::uint32_t, std::int32_t>> values;
        for (int i = 0; i < size; ++i) {
            values.emplace_back(static_cast<std::uint32_t>(i), 1);
        }
        return dataMessage(values);
    }

    // Of numbered packets, one after the other.
    template <typename Packet>
    static Bytes packets(int size, Packet packet) {
        Bytes all;
        for (int i = 0; i < size; ++i) {
            const Bytes one = packet(i);
            all.insert(all.end(), one.begin(), one.end());
        }
        return all;
    }

    static Bytes registrations(int size) {
        return packets(size, [](int i) {
            return registerDataref(static_cast<std::uint32_t>(i), 2, 0, numbered("sim/float/", i));
        });
    }

    static void nothing(Scene& /*scene*/, int /*size*/) {}
};

TEST_F(GrowthTest, OfDefinitionsIsLinearInInputsAndOutputs) {
    expectLinear(nothing, [](Scene& scene, int size) {
        scene.Feed(scene.tarnel, definitionsMessage(inputs(size), outputs(size, "sim/float/", 2)));
    });
}

TEST_F(GrowthTest, OfDefinitionsIsLinearInObservedCommands) {
    expectLinear(nothing, [](Scene& scene, int size) {
        scene.Feed(scene.tarnel, definitionsMessage({}, outputs(size, "kyr/command/", 6)));
    });
}

TEST_F(GrowthTest, OfARedefinitionIsLinearInWhatItReplaces) {
    const Step define = [](Scene& scene, int size) {
        scene.Feed(scene.tarnel,
                   definitionsMessage(inputs(size), outputs(size, "kyr/command/", 6)));
    };
    expectLinear(define, define);
}

TEST_F(GrowthTest, OfTheOutputStreamIsLinearInOutputs) {
    expectLinear(
        [](Scene& scene, int size) {
            scene.Feed(scene.tarnel, definitionsMessage({}, outputs(size, "sim/floats/", 4)));
        },
        [](Scene& scene, int /*size*/) { scene.Feed(scene.tarnel, {}); });
}

TEST_F(GrowthTest, OfADataMessageIsLinearInItems) {
    expectLinear([](Scene& scene,
                    int size) { scene.Feed(scene.tarnel, definitionsMessage(inputs(size), {})); },
                 [](Scene& scene, int size) { scene.Feed(scene.tarnel, items(size)); });
}

TEST_F(GrowthTest, OfRegistrationsIsLinearInDatarefs) {
    expectLinear(nothing,
                 [](Scene& scene, int size) { scene.Feed(scene.velmar, registrations(size)); });
}

TEST_F(GrowthTest, OfReadsIsLinearInDatarefs) {
    expectLinear([](Scene& scene, int size) { scene.Feed(scene.velmar, registrations(size)); },
                 [](Scene& scene, int size) {
                     scene.Feed(scene.velmar, packets(size, [](int i) {
                                    return readDataref(static_cast<std::uint32_t>(i));
                                }));
                 });
}

TEST_F(GrowthTest, OfCommandPhasesIsLinearInCommands) {
    expectLinear(
        [](Scene& scene, int size) {
            scene.Feed(scene.tarnel, definitionsMessage({}, outputs(size, "kyr/command/", 6)));
        },
        [](Scene& scene, int size) {
            for (int i = 0; i < size; ++i) {
                const std::string name = numbered("kyr/command/", i);
                scene.world.observer.HandleCommand(scene.world.simulator.Commands().Lookup(name), 0,
                                                   nullptr);
            }
            scene.Feed(scene.tarnel, {});
        });
}

} // namespace
