#include "e2e/ClientLibraryTest.h"

#include <chrono>
#include <string>
#include <vector>

#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"

namespace {

using namespace orvane;
using std::chrono::milliseconds;

constexpr std::uint32_t kAircraftOneId = 0xB9852EB1;
constexpr std::uint32_t kAircraftTwoId = 0x2311FCBA;

class TarnelLibraryTest : public ClientLibraryTest {
protected:
    enum Actions : tarnel::ActionId { kInt = 1, kFloat, kInts, kFloats, kHold, kSecond };
    enum Outputs : tarnel::OutputId { kIntOut = 1, kFloatOut, kIntsOut, kFloatsOut, kButton };

    static tarnel::Definitions definitions() {
        using tarnel::Input;
        using tarnel::Output;
        tarnel::Definitions made;
        made.add(Input::toInt(kInt, "test/int"))
            .add(Input::toFloat(kFloat, "test/float").scaledByFloatRange(-1, 1))
            .add(Input::toIntElement(kInts, "test/ints", 3))
            .add(Input::toFloatElement(kFloats, "test/floats", 2).scaledByIntRange(0, 10))
            .add(Input::toCommand(kHold, "test/hold").held())
            .add(Output::ofInt(kIntOut, "test/int"))
            .add(Output::ofFloat(kFloatOut, "test/float"))
            .add(Output::ofIntArray(kIntsOut, "test/ints", 2, 2))
            .add(Output::ofFloatArray(kFloatsOut, "test/floats", 3, 1))
            .add(Output::ofCommand(kButton, "kyr/test_button"));
        return made;
    }
};

TEST_F(TarnelLibraryTest, ReturnsTheVersion) {
    tarnel::Client client(options());
    const tarnel::Version version = client.version();
    EXPECT_EQ(version.parts, (std::array<std::uint8_t, 4>{1, 0, 7, 10}));
    EXPECT_EQ(version.revision, 6U);
}

TEST_F(TarnelLibraryTest, DrivesInputsAndReportsOutputs) {
    tarnel::Client client(options());
    EXPECT_EQ(client.define(definitions()).get<std::int32_t>(kIntOut), 0);
    client.exchange({{kInt, -7}, {kFloat, 65'535}, {kInts, 8}, {kFloats, 0}, {kHold, 1}});
    simulator->Ask("command once kyr/test_button");
    tarnel::Answer answer = client.exchange({{kFloats, 65'535}});
    EXPECT_EQ(answer.get<std::int32_t>(kIntOut), -7);
    EXPECT_EQ(answer.get<float>(kFloatOut), 1.0F);
    EXPECT_EQ(answer.get<std::vector<std::int32_t>>(kIntsOut), (std::vector<std::int32_t>{0, 8}));
    EXPECT_EQ(answer.get<std::vector<float>>(kFloatsOut), (std::vector<float>{0, 0, 0}));
    EXPECT_TRUE(answer.get<bool>(kButton));
    EXPECT_EQ(answer.aircraftId, kAircraftOneId);
    answer = client.exchange({{kHold, 0}});
    EXPECT_EQ(answer.get<std::vector<float>>(kFloatsOut), (std::vector<float>{0, 10, 0}));
    EXPECT_FALSE(answer.get<bool>(kButton));
    EXPECT_NE(simulator->Ask("events test/hold").find("begin=1"), std::string::npos);
    client.exchange();
    EXPECT_NE(simulator->Ask("events test/hold").find(" end=1"), std::string::npos);
}

TEST_F(TarnelLibraryTest, FollowsTheAircraft) {
    tarnel::Client client(options());
    std::vector<std::uint32_t> ids;
    client.onAircraftChanged([&](std::uint32_t id) { ids.push_back(id); });
    client.define(definitions());
    client.exchange({{kInt, 5}});
    simulator->Ask("aircraft unload");
    const tarnel::Answer without = client.exchange();
    EXPECT_FALSE(without.isAircraftLoaded());
    EXPECT_EQ(without.get<std::int32_t>(kIntOut), 0);
    EXPECT_FALSE(without.get<bool>(kButton));
    loadAircraft("Test aircraft two");
    EXPECT_EQ(client.exchange().get<std::int32_t>(kIntOut), 5);
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{0, kAircraftTwoId}));
}

TEST_F(TarnelLibraryTest, ReportsACommandUnderItsNewIdentifier) {
    tarnel::Client client(options());
    client.define(definitions());
    tarnel::Definitions renumbered;
    renumbered.add(tarnel::Output::ofCommand(77, "kyr/test_button"));
    client.define(renumbered);
    simulator->Ask("command once kyr/test_button");
    EXPECT_TRUE(client.exchange().get<bool>(77));
}

TEST_F(TarnelLibraryTest, ThrowsWhenNoFramesRunAndGoesOnWhenTheyDo) {
    Options hasty = options();
    hasty.timeout = milliseconds(2'000);
    tarnel::Client client(hasty);
    client.define(definitions());
    simulator->Ask("pause");
    EXPECT_THROW(client.exchange({{kInt, 1}}), TimeoutError);
    simulator->Ask("run");
    client.exchange({{kInt, 6}});
    EXPECT_EQ(client.exchange().get<std::int32_t>(kIntOut), 6);
}

TEST_F(TarnelLibraryTest, ComesBackWithItsDefinitionsWhenTheSimulatorRestarts) {
    tarnel::Client client(options());
    client.define(definitions());
    client.exchange({{kInt, 41}});
    EXPECT_EQ(client.exchange().get<std::int32_t>(kIntOut), 41);
    const tarnel::Answer answer = restartDuring(client, [&] {
        return client.exchange({{kInt, 42}});
    });
    // The value of the repeated definitions: the item was not sent again.
    EXPECT_EQ(answer.get<std::int32_t>(kIntOut), 0);
    EXPECT_EQ(client.exchange({{kInt, 43}}).get<std::int32_t>(kIntOut), 0);
    simulator->Ask("command once kyr/test_button");
    const tarnel::Answer after = client.exchange();
    EXPECT_EQ(after.get<std::int32_t>(kIntOut), 43);
    EXPECT_TRUE(after.get<bool>(kButton));
}

TEST_F(TarnelLibraryTest, WaitsForASimulatorThatStartsLater) {
    simulator.reset();
    std::promise<void> waiting;
    std::atomic<int> questions = 0;
    Options patient = options();
    patient.onStart = OnStart::Wait;
    // Called while it waits between two tries, and while it tries.
    patient.cancelled = [&] {
        if (++questions == 3) {
            waiting.set_value();
        }
        return false;
    };
    auto answer = std::async(std::launch::async, [&] {
        tarnel::Client client(patient);
        return client.define(definitions());
    });
    waiting.get_future().wait();
    start();
    EXPECT_EQ(answer.get().aircraftId, kAircraftOneId);
}

class VelmarLibraryTest : public ClientLibraryTest {};

TEST_F(VelmarLibraryTest, ReadsAndWritesEachType) {
    using velmar::Type;
    using velmar::Value;
    velmar::Client client(options());
    client.registerDatarefs(std::vector<velmar::Dataref>{{"test/int", Type::Int},
                                                         {"test/float", Type::Float},
                                                         {"test/minimum", Type::Float},
                                                         {"test/ints", Type::IntArray, 3},
                                                         {"test/floats", Type::FloatArray, 2}});
    const std::vector<std::pair<std::string, Value>> values{
        {"test/int", -5},
        {"test/float", 1.5F},
        {"test/ints", std::vector<std::int32_t>{1, 2, 3}},
        {"test/floats", std::vector<float>{0.5F, -0.5F}}};
    client.write(values);
    for (const auto& [name, value] : values) {
        EXPECT_EQ(client.read(name), value) << name;
    }
    const std::vector<std::string> names{"test/floats", "test/int"};
    EXPECT_EQ(client.read(names), (std::vector<Value>{values[3].second, values[0].second}));
    EXPECT_EQ(simulator->Get("test/int"), "-5");

    client.registerDataref({"test/int", Type::Byte});
    client.write("test/int", std::uint8_t{200});
    EXPECT_EQ(client.read("test/int"), Value(std::uint8_t{200}));
    EXPECT_EQ(simulator->Get("test/int"), "200");
}

TEST_F(VelmarLibraryTest, SaysWhatTheSimulatorDoesNotHave) {
    velmar::Client client(options());
    // Too short for the server without padding.
    EXPECT_THROW(client.registerCommand("no"), Refused);
    try {
        client.registerDataref({"no/such/dataref", velmar::Type::Int});
        FAIL() << "was accepted";
    } catch (const Refused& error) {
        EXPECT_EQ(error.refusedNames(), std::vector<std::string>{"no/such/dataref"});
        EXPECT_STREQ(error.what(),
                     "127.0.0.1:48000: registering: the simulator does not have no/such/dataref");
    }
    client.registerDataref({"test/int", velmar::Type::Int});
    EXPECT_EQ(client.read("test/int"), velmar::Value(0));
}

TEST_F(VelmarLibraryTest, RunsAndFollowsCommands) {
    velmar::Client client(options());
    const std::vector<std::string> names{"test/once", "test/hold"};
    client.registerCommands(names);
    EXPECT_TRUE(client.poll().empty());
    client.run("test/once", velmar::Action::Once);
    client.run("test/hold", velmar::Action::Begin);
    ASSERT_EQ(client.poll().size(), 2U);
    const auto presses = client.pollPresses();
    ASSERT_EQ(presses.size(), 2U);
    EXPECT_EQ(presses[0].name, "test/once");
    EXPECT_EQ(presses[0].state, velmar::CommandState::Pressed);
    EXPECT_EQ(presses[1].name, "test/hold");
    EXPECT_EQ(presses[1].state, velmar::CommandState::Down);
    client.run("test/hold", velmar::Action::End);
    client.pollPresses();
    EXPECT_TRUE(client.pollPresses().empty());
    simulator->Ask("command once test/once");
    EXPECT_EQ(client.pollPresses().size(), 1U);
    EXPECT_TRUE(client.pollPresses().empty());
    EXPECT_NE(simulator->Ask("events test/once").find("begin=2"), std::string::npos);
}

TEST_F(VelmarLibraryTest, CallsBackWithWhatChanges) {
    velmar::Client client(options());
    client.registerDataref({"test/int", velmar::Type::Int});
    client.registerDataref({"test/float", velmar::Type::Float});
    const std::vector<std::string> names{"test/int", "test/float"};
    std::vector<velmar::Changes> calls;
    client.changes(names, 1000, 0.5, [&](const velmar::Changes& changes) {
        calls.push_back(changes);
        if (calls.size() == 1) {
            client.write("test/float", 0.25F); // too little
            client.write("test/int", 3);
        } else if (calls.size() == 2) {
            client.write("test/float", 0.75F);
        }
        return calls.size() < 3;
    });
    EXPECT_EQ(calls, (std::vector<velmar::Changes>{{{"test/int", 0}, {"test/float", 0.0F}},
                                                   {{"test/int", 3}},
                                                   {{"test/float", 0.75F}}}));
}

TEST_F(VelmarLibraryTest, EndsWaitingForChangesWhenItIsCancelled) {
    bool isCancelled = false;
    Options cancellable = options();
    cancellable.cancelled = [&] { return isCancelled; };
    velmar::Client client(cancellable);
    client.registerDataref({"test/int", velmar::Type::Int});
    const std::vector<std::string> names{"test/int"};
    EXPECT_THROW(client.changes(names, 0.001, 0,
                                [&](const velmar::Changes&) {
                                    isCancelled = true;
                                    return true;
                                }),
                 CancelledError);
    EXPECT_FALSE(client.isConnected());
}

TEST_F(VelmarLibraryTest, ReadsALongListInSeveralRequests) {
    constexpr std::uint32_t kMost = 60'000;
    velmar::Client client(options());
    std::vector<std::string> names;
    for (int index = 0; index < 3; ++index) {
        names.emplace_back("test/many_floats");
        names.emplace_back("test/float");
    }
    client.registerDataref({"test/many_floats", velmar::Type::FloatArray, kMost});
    client.registerDataref({"test/float", velmar::Type::Float});
    client.write("test/float", 0.25F);
    const std::vector<velmar::Value> values = client.read(names);
    ASSERT_EQ(values.size(), 6U);
    EXPECT_EQ(std::get<std::vector<float>>(values[4]).size(), kMost);
    EXPECT_EQ(values[5], velmar::Value(0.25F));
}

TEST_F(VelmarLibraryTest, ComesBackWithItsNamesWhenTheSimulatorRestarts) {
    velmar::Client client(options());
    client.registerDataref({"test/float", velmar::Type::Float});
    client.registerDataref({"test/int", velmar::Type::Int});
    client.registerCommand("test/once");
    client.write("test/float", 0.75F);
    EXPECT_EQ(restartDuring(client, [&] { return client.read("test/float"); }),
              velmar::Value(0.0F));
    client.write("test/int", 3);
    EXPECT_EQ(client.read("test/int"), velmar::Value(3));
    client.run("test/once", velmar::Action::Once);
    ASSERT_EQ(client.poll().size(), 1U);
    EXPECT_EQ(simulator->Get("test/int"), "3");
}

TEST_F(VelmarLibraryTest, DoesNotWriteLateWhenTheSimulatorRestarts) {
    velmar::Client client(options());
    client.registerDataref({"test/int", velmar::Type::Int});
    EXPECT_TRUE(restartDuring(client, [&] {
        try {
            client.write("test/int", 9);
            return false;
        } catch (const ClosedError&) {
            return true;
        }
    }));
    EXPECT_EQ(client.read("test/int"), velmar::Value(0));
}

} // namespace
