#include <chrono>
#include <string>
#include <vector>

#include "e2e/ClientLibraryTest.h"
#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"

namespace {

using namespace orvane;
using std::chrono::milliseconds;
using tarnel::ConditionDataref;
using tarnel::Input;
using Names = std::vector<std::string>;

constexpr tarnel::ActionId kHold = 1;

// A client releases the commands that it holds, whatever happens to it.
class ClientReleaseTest : public ClientLibraryTest {
protected:
    // How often the command was begun and ended in the simulator.
    std::string begunAndEnded() {
        const std::string counts = simulator->Ask("events test/hold");
        const auto numberAfter = [&counts](const std::string& what) {
            return std::stoi(counts.substr(counts.find(what) + what.size()));
        };
        return std::to_string(numberAfter(" begin=")) + " begun, " +
               std::to_string(numberAfter(" end=")) + " ended";
    }

    static tarnel::Definitions holding(const Input& input) {
        tarnel::Definitions definitions;
        definitions.add(input).add(tarnel::Output::ofInt(1, "test/int"));
        return definitions;
    }

    static tarnel::Definitions holding() {
        return holding(Input::toCommand(kHold, "test/hold").held());
    }

    // Presses the input; returns the counts after the client was destroyed.
    std::string afterPressing(const Input& input) {
        {
            tarnel::Client client(options());
            client.define(holding(input));
            client.exchange({{kHold, 1}});
            client.exchange();
        }
        return begunAndEnded();
    }
};

class TarnelReleaseTest : public ClientReleaseTest {};

TEST_F(TarnelReleaseTest, ReleasesOnClose) {
    tarnel::Client client(options());
    client.define(holding());
    client.exchange({{kHold, 1}});
    EXPECT_EQ(begunAndEnded(), "1 begun, 0 ended");
    client.close();
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
}

TEST_F(TarnelReleaseTest, ReleasesWhenItIsDestroyedOrReplaced) {
    EXPECT_EQ(afterPressing(Input::toCommand(kHold, "test/hold").held()), "1 begun, 1 ended");
    tarnel::Client client(options());
    client.define(holding());
    client.exchange({{kHold, 1}});
    client = tarnel::Client(options());
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

TEST_F(TarnelReleaseTest, EndsNothingThatTheProgramHasReleased) {
    {
        tarnel::Client client(options());
        client.define(holding());
        client.exchange({{kHold, 1}, {kHold, 0}});
        client.exchange({{kHold, 1}});
        client.exchange({{kHold, 0}});
    }
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

TEST_F(TarnelReleaseTest, ReleasesBeforeNewDefinitions) {
    tarnel::Client client(options());
    client.define(holding());
    client.exchange({{kHold, 1}});
    client.define(holding());
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
    client.exchange({{kHold, 1}});
    client.exchange({{kHold, 0}});
    client.exchange();
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

// Two inputs hold the same command; the simulator counts both.
TEST_F(TarnelReleaseTest, ReleasesAsOftenAsItHolds) {
    {
        tarnel::Client client(options());
        tarnel::Definitions definitions = holding();
        definitions.add(Input::toCommand(kHold, "test/hold").held());
        definitions.add(Input::toCommand(2, "test/hold").held());
        client.define(definitions);
        client.exchange({{kHold, 1}, {2, 1}});
        client.exchange({{2, 0}});
        client.exchange();
        EXPECT_EQ(begunAndEnded(), "3 begun, 1 ended");
    }
    EXPECT_EQ(begunAndEnded(), "3 begun, 3 ended");
}

TEST_F(TarnelReleaseTest, ReleasesWhenItIsCancelledAndTheFlagStaysSet) {
    bool isCancelled = false;
    Options cancellable = options();
    cancellable.cancelled = [&] { return isCancelled; };
    tarnel::Client client(cancellable);
    client.define(holding());
    client.exchange({{kHold, 1}});
    isCancelled = true;
    EXPECT_THROW(client.exchange({{kHold, 1}}), CancelledError);
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
}

// The plugin is reloaded and has no clients; the simulator still holds the command.
TEST_F(TarnelReleaseTest, ReleasesOnTheNewConnectionAfterALoss) {
    tarnel::Client client(options());
    client.define(holding());
    client.exchange({{kHold, 1}});
    simulator->Ask("reload");
    EXPECT_EQ(begunAndEnded(), "1 begun, 0 ended");
    client.exchange();
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
    client.exchange({{kHold, 1}});
    client.close();
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

TEST_F(TarnelReleaseTest, ReleasesOnAConnectionOfItsOwnWhenTheFirstIsLostForGood) {
    Options once = options();
    once.onLoss = OnLoss::Throw;
    {
        tarnel::Client client(once);
        client.define(holding());
        client.exchange({{kHold, 1}});
        simulator->Ask("reload");
        EXPECT_THROW(client.exchange(), ClosedError);
        EXPECT_EQ(begunAndEnded(), "1 begun, 0 ended");
    }
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
}

TEST_F(TarnelReleaseTest, ReleasesCommandsThatIgnoreAZero) {
    const Input held = Input::toCommand(kHold, "test/hold").held();
    EXPECT_EQ(afterPressing(Input(held).skippedWhenZero()), "1 begun, 1 ended");
    EXPECT_EQ(afterPressing(Input(held).fixed(1)), "2 begun, 2 ended");
    EXPECT_EQ(afterPressing(Input(held).fixed(0)), "2 begun, 2 ended");
    EXPECT_EQ(afterPressing(Input(held).skippedWhenOne()), "2 begun, 2 ended");
}

// The plugin skips values while the dataref is positive, and does not report that.
TEST_F(TarnelReleaseTest, ReleasesWhatIsDownIfADatarefCanSkipIt) {
    Input conditional = Input::toCommand(kHold, "test/hold").held();
    conditional.skippedWhilePositive({"test/int", ConditionDataref::Type::Int});
    EXPECT_EQ(afterPressing(conditional), "1 begun, 1 ended");
    {
        tarnel::Client client(options());
        client.define(holding(conditional));
        client.exchange({{kHold, 1}});
        simulator->Ask("set test/int 1");
        client.exchange({{kHold, 0}}); // skipped
        client.exchange();
        EXPECT_EQ(begunAndEnded(), "2 begun, 1 ended");
    }
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
    // A press that was skipped.
    EXPECT_EQ(afterPressing(conditional), "2 begun, 2 ended");
    simulator->Ask("set test/int 0");
    {
        tarnel::Client client(options());
        client.define(holding(conditional));
        client.exchange({{kHold, 1}});
        client.exchange({{kHold, 0}});
    }
    EXPECT_EQ(begunAndEnded(), "3 begun, 3 ended");
}

TEST_F(TarnelReleaseTest, ReleasesByNameAgainOnTheSameConnection) {
    const ConditionDataref never{"no/such"};
    tarnel::Definitions two;
    two.add(Input::toCommand(1, "test/hold").held().skippedWhilePositive(never));
    two.add(Input::toCommand(2, "test/once").held().skippedWhilePositive(never));
    Options own = options();
    own.onLoss = OnLoss::Throw;
    tarnel::Client client(own);
    client.define(two);
    client.exchange({{1, 1}, {2, 1}});
    client.exchange();
    client.define(holding(Input::toCommand(kHold, "test/hold").held().skippedWhilePositive(never)));
    client.exchange({{kHold, 1}});
    client.exchange();
    EXPECT_NO_THROW(client.define({}));
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

TEST_F(TarnelReleaseTest, ReleasesNothingIfToldNotTo) {
    Options own = options();
    own.releaseHeld = false;
    {
        tarnel::Client client(own);
        client.define(holding());
        client.exchange({{kHold, 1}});
        client.exchange();
    }
    EXPECT_EQ(begunAndEnded(), "1 begun, 0 ended");
}

class VelmarReleaseTest : public ClientReleaseTest {
protected:
    static void begin(velmar::Client& client, int times = 1) {
        client.registerCommand("test/hold");
        for (int i = 0; i < times; ++i) {
            client.run("test/hold", velmar::Action::Begin);
        }
    }
};

TEST_F(VelmarReleaseTest, EndsAsOftenAsItBegan) {
    {
        velmar::Client client(options());
        begin(client, 3);
        client.run("test/hold", velmar::Action::End);
        EXPECT_EQ(begunAndEnded(), "3 begun, 1 ended");
        client.close();
        EXPECT_EQ(begunAndEnded(), "3 begun, 3 ended");
        begin(client, 2);
    }
    EXPECT_EQ(begunAndEnded(), "5 begun, 5 ended");
}

TEST_F(VelmarReleaseTest, EndsWhatWasUnregisteredMeanwhile) {
    velmar::Client client(options());
    begin(client);
    client.unregisterCommand("test/hold");
    client.close();
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
}

// More ends than fit in one network packet.
TEST_F(VelmarReleaseTest, EndsMoreThanOneRequestHolds) {
    velmar::Client client(options());
    begin(client, 200);
    client.close();
    EXPECT_EQ(begunAndEnded(), "200 begun, 200 ended");
}

TEST_F(VelmarReleaseTest, EndsWhenItIsCancelledAndTheFlagStaysSet) {
    bool isCancelled = false;
    Options cancellable = options();
    cancellable.cancelled = [&] { return isCancelled; };
    velmar::Client client(cancellable);
    begin(client, 2);
    isCancelled = true;
    EXPECT_THROW(client.poll(), CancelledError);
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
}

TEST_F(VelmarReleaseTest, EndsOnTheNewConnectionAfterALossAndFollowsTheCommandThere) {
    velmar::Client client(options());
    begin(client, 2);
    simulator->Ask("reload");
    EXPECT_TRUE(client.poll().empty());
    EXPECT_EQ(begunAndEnded(), "2 begun, 2 ended");
    simulator->Ask("command once test/hold");
    EXPECT_EQ(client.pollPresses().size(), 1U);
    client.run("test/hold", velmar::Action::Begin);
    client.reconnect();
    EXPECT_EQ(begunAndEnded(), "4 begun, 4 ended");
}

// The simulator has not yet handled the begin when the client gives up waiting for the answer.
TEST_F(VelmarReleaseTest, EndsWhatMayHaveBegun) {
    Options hasty = options();
    hasty.timeout = milliseconds(2'000);
    velmar::Client client(hasty);
    begin(client, 0);
    simulator->Ask("pause");
    EXPECT_THROW(client.run("test/hold", velmar::Action::Begin), TimeoutError);
    simulator->Ask("run");
    client.close();
    EXPECT_EQ(begunAndEnded(), "1 begun, 1 ended");
}

TEST_F(VelmarReleaseTest, ReportsWhatItCouldNotRelease) {
    bool isCancelled = false;
    Options impatient = options();
    impatient.cancelled = [&] { return isCancelled; };
    impatient.releaseWithin = milliseconds(100);
    velmar::Client client(impatient);
    Names commands;
    std::string reason;
    client.setCallbacks({.notReleased = [&](const Names& names, const Error& error) {
        commands = names;
        reason = error.what();
    }});
    begin(client);
    simulator.reset();
    isCancelled = true;
    try {
        client.poll();
        FAIL() << "was answered";
    } catch (const CancelledError& error) {
        EXPECT_NE(std::string(error.what())
                      .find("; 127.0.0.1:48000: releasing test/hold: Connection refused"),
                  std::string::npos)
            << error.what();
    }
    EXPECT_EQ(commands, Names{"test/hold"});
    EXPECT_EQ(reason, "127.0.0.1:48000: releasing test/hold: Connection refused");
}

// As while it loads scenery.
TEST_F(VelmarReleaseTest, ReportsThatTheSimulatorDoesNotAnswer) {
    Options impatient = options();
    impatient.releaseWithin = milliseconds(100);
    velmar::Client client(impatient);
    std::string reason;
    client.setCallbacks(
        {.notReleased = [&](const Names&, const Error& error) { reason = error.what(); }});
    begin(client);
    simulator->Ask("pause");
    client.close();
    EXPECT_TRUE(reason.starts_with("127.0.0.1:48000: releasing test/hold: no answer within "))
        << reason;
    EXPECT_TRUE(reason.ends_with(" ms (is the simulator paused or loading?)")) << reason;
}

} // namespace
