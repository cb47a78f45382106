#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Beacon.h"
#include "Discovery.h"
#include "orvane/Discovery.h"
#include "orvane/velmar/Client.h"
#include "support/BeaconSender.h"
#include "support/Bytes.h"
#include "support/PrivateNetwork.h"
#include "unit/client/ScriptedClientTest.h"

namespace {

using namespace orvane;
using orvane::detail::parseBeacon;
using std::chrono::milliseconds;

// Version 1.2 of the beacon: a simulator, version 121400, a master with UDP port 49000.
const std::string kBegin = "42 45 43 4E 00 01 02 01 00 00 00 38 DA 01 00 01 00 00 00 68 BF ";
// "simpc", then another port.
const Bytes kBeacon = fromHex(kBegin + "73 69 6D 70 63 00 72 BF");

Bytes changed(Bytes beacon, std::size_t at, unsigned char value) {
    beacon.at(at) = value;
    return beacon;
}

TEST(BeaconTest, SaysWhatASimulatorIs) {
    const auto simulator = parseBeacon(kBeacon);
    ASSERT_TRUE(simulator.has_value());
    EXPECT_EQ(simulator->computer, "simpc");
    EXPECT_EQ(simulator->version, 121400U);
    EXPECT_EQ(simulator->role, SimulatorRole::Master);
    EXPECT_EQ(parseBeacon(changed(kBeacon, 15, 2))->role, SimulatorRole::ExternalVisual);
    EXPECT_EQ(parseBeacon(changed(kBeacon, 15, 3))->role, SimulatorRole::InstructorStation);
    EXPECT_EQ(parseBeacon(changed(kBeacon, 15, 4))->role, SimulatorRole::Unknown);
}

TEST(BeaconTest, OfAnotherMinorVersionMayBeShorterOrLonger) {
    EXPECT_EQ(parseBeacon(fromHex(kBegin + "73 69 6D 00"))->computer, "sim");
    EXPECT_EQ(parseBeacon(changed(fromHex(kBegin + "00 01 02 03 04"), 6, 9))->computer, "");
}

TEST(BeaconTest, ThatIsCutOffIsNone) {
    const std::size_t end = kBeacon.size() - 2;
    for (std::size_t size = 0; size < end; ++size) {
        EXPECT_FALSE(parseBeacon(std::span(kBeacon).first(size)).has_value()) << size;
    }
    EXPECT_TRUE(parseBeacon(std::span(kBeacon).first(end)).has_value());
}

TEST(BeaconTest, OfSomethingElseIsNone) {
    EXPECT_FALSE(parseBeacon(changed(kBeacon, 0, 'b')).has_value());
    EXPECT_FALSE(parseBeacon(changed(kBeacon, 4, 'X')).has_value());
    EXPECT_FALSE(parseBeacon(changed(kBeacon, 5, 2)).has_value()) << "another major version";
    EXPECT_FALSE(parseBeacon(changed(kBeacon, 7, 2)).has_value()) << "the plane maker";
    EXPECT_FALSE(parseBeacon(changed(kBeacon, 10, 1)).has_value());
}

TEST(BeaconTest, HasANameOfAtMost500Bytes) {
    const Bytes longest(500, 0xFF);
    EXPECT_EQ(parseBeacon(join({fromHex(kBegin), longest, {0}}))->computer.size(), 500U);
    EXPECT_FALSE(parseBeacon(join({fromHex(kBegin), longest, {'x', 0}})).has_value());
}

// The datagrams are sent when the library first asks whether it is cancelled: it listens by then.
class DiscoveryTest : public ScriptedClientTest {
protected:
    void SetUp() override {
        if (!isNetworkPrivate()) {
            GTEST_SKIP() << "this system permits no network namespace: nothing may be sent";
        }
    }

    void sendFrom(const std::string& address, const Bytes& datagram) {
        waiting.push_back({address, datagram});
    }

    Options optionsOn(std::uint16_t port) {
        Options options;
        options.host = kAnyHost;
        options.port = port;
        options.cancelled = [this] {
            for (const auto& [address, datagram] : std::exchange(waiting, {})) {
                BeaconSender(address).Send(datagram);
            }
            return false;
        };
        return options;
    }

    const Bytes visual = changed(kBeacon, 15, 2);

private:
    std::vector<std::pair<std::string, Bytes>> waiting;
};

// Long enough for what has arrived already, even on a busy machine.
constexpr milliseconds kShort(300);
constexpr milliseconds kLong(20'000);

TEST_F(DiscoveryTest, ListsEachSimulatorOnceAndWhetherAServerAnswers) {
    ScriptedServer server({ScriptedServer::Connection{}});
    sendFrom("127.0.0.2", visual);
    sendFrom("127.0.0.2", visual);
    sendFrom("127.0.0.3", fromHex("42 45 43 4E"));
    sendFrom("127.0.0.1", kBeacon);
    const auto heard = discover(optionsOn(server.Port()), kShort);
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0].address, "127.0.0.2");
    EXPECT_EQ(heard[0].role, SimulatorRole::ExternalVisual);
    EXPECT_FALSE(heard[0].hasServer);
    EXPECT_EQ(heard[1].address, "127.0.0.1");
    EXPECT_EQ(heard[1].computer, "simpc");
    EXPECT_TRUE(heard[1].hasServer);
}

TEST_F(DiscoveryTest, ConnectsToTheFirstMasterThatAnswersAsSoonAsItIsHeard) {
    ScriptedServer server({ScriptedServer::Connection{}});
    Options options = optionsOn(server.Port());
    sendFrom("127.0.0.3", visual);
    sendFrom("127.0.0.2", kBeacon);
    sendFrom("127.0.0.1", kBeacon);
    const auto begin = std::chrono::steady_clock::now();
    const auto connection = detail::connectToHeard(options, kLong);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kLong);
    EXPECT_EQ(options.host, "127.0.0.1");
}

TEST_F(DiscoveryTest, ConnectsToAnotherRoleIfNoMasterAnswers) {
    ScriptedServer server({ScriptedServer::Connection{}});
    Options options = optionsOn(server.Port());
    sendFrom("127.0.0.1", visual);
    sendFrom("127.0.0.2", kBeacon);
    const auto connection = detail::connectToHeard(options, kShort);
    EXPECT_EQ(options.host, "127.0.0.1");
}

TEST_F(DiscoveryTest, SaysThatNoSimulatorWasHeard) {
    Options options = optionsOn(48000);
    EXPECT_EQ(
        textOf<ConnectError>([&] { detail::connectToHeard(options, milliseconds(1)); }),
        "auto:48000: connecting: no simulator was heard within 1 ms (UDP multicast 239.255.1.1, "
        "port 49707); is one running on this network? Otherwise give its address");
}

TEST_F(DiscoveryTest, SaysWhereItTriedInVain) {
    Options options = optionsOn(1);
    sendFrom("127.0.0.2", kBeacon);
    sendFrom("127.0.0.1", visual);
    EXPECT_EQ(textOf<ConnectError>([&] { detail::connectToHeard(options, kShort); }),
              "auto:1: connecting: a simulator was heard, but its plugin does not answer: "
              "127.0.0.2:1: connecting: Connection refused and "
              "127.0.0.1:1: connecting: Connection refused");
    EXPECT_EQ(options.host, "auto");
}

TEST_F(DiscoveryTest, AClientKeepsTheAddressWhereItsCommandsMayBeHeld) {
    Options options = optionsOn(1);
    options.host = "127.0.0.7";
    EXPECT_THROW(detail::connectToHeard(options, milliseconds(1)), ConnectError);
    EXPECT_EQ(options.host, "127.0.0.7");
}

TEST_F(DiscoveryTest, CanBeCancelled) {
    Options options = optionsOn(1);
    options.cancelled = [] { return true; };
    EXPECT_EQ(textOf<CancelledError>([&] { velmar::Client client(options); }),
              "auto:1: listening for simulators: was cancelled");
}

TEST_F(DiscoveryTest, AReconnectionFirstTriesTheAddressThatItHad) {
    ScriptedServer server({ScriptedServer::Connection{}, ScriptedServer::Connection{}});
    Options options = optionsOn(server.Port());
    sendFrom("127.0.0.1", kBeacon);
    velmar::Client client(options);
    EXPECT_EQ(client.host(), "127.0.0.1");
    client.reconnect();
    EXPECT_TRUE(client.isConnected());
}

} // namespace
