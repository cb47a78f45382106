#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/tarnel/Client.h"
#include "support/LoopbackListener.h"
#include "support/TcpPeer.h"
#include "unit/client/ScriptedClientTest.h"

namespace {

using namespace orvane;
using namespace orvane::tarnel;
using Turn = ScriptedServer::Turn;
using End = ScriptedServer::End;
using std::chrono::milliseconds;

const Turn kVersion{"11 22 33 44 B1 6B 00 B5", "0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00"};
const Turn kAsk{"11 22 33 44 DE AD BE EF 08 00 00 00 00 00 00 00",
                "18 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00 "
                "FF FF 00 00 04 00 00 00 AA 00 00 00"};
const Turn kSend{"11 22 33 44 DE AD BE EF 08 00 00 00 01 00 00 00 07 00 00 00 09 00 00 00",
                 kAsk.answer};
// The answer to a message that arrived in pieces on a new connection.
constexpr const char* kTorn = "0C 00 00 00 FF FF 00 00 04 00 00 00 AA 00 00 00";

std::string zerosInHex(std::size_t count) {
    return " " + toHex(zeros(count)) + " ";
}

// Action 7 to the int dataref "a"; output 1, the int dataref "a".
Definitions definitions() {
    Definitions made;
    made.add(Input::toInt(7, "a")).add(Output::ofInt(1, "a"));
    return made;
}

Turn defining() {
    return {
        "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 01 00 00 00 "
        "07 00 00 00" +
            zerosInHex(28) + "01 00 00 00" + zerosInHex(244) + "61" + zerosInHex(207) +
            "01 00 00 00 61" + zerosInHex(99) + "01 00 00 00 00 00 00 00 01 00 00 00",
        "18 00 00 00 01 00 00 00 04 00 00 00 03 00 00 00 "
        "FF FF 00 00 04 00 00 00 AA 00 00 00"};
}

// One command output with a name of one letter after the prefix.
Definitions observing(OutputId id, char letter) {
    Definitions made;
    made.add(Output::ofCommand(id, std::string("kyr/") + letter));
    return made;
}

Turn definingCommand(OutputId id, char letter) {
    const std::string identifier = toHex(u32(id));
    return {"11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 01 00 00 00 " +
                identifier + " 6B 79 72 2F " + toHex(Bytes{static_cast<unsigned char>(letter)}) +
                zerosInHex(95) + "06 00 00 00 00 00 00 00 01 00 00 00",
            "15 00 00 00 " + identifier + " 01 00 00 00 00 FF FF 00 00 04 00 00 00 AA 00 00 00"};
}

class TarnelClientTest : public ScriptedClientTest {};

TEST_F(TarnelClientTest, AsksDefinesAndExchanges) {
    ScriptedServer server({{{kVersion, defining(), kSend, kAsk}}});
    Client client(optionsFor(server));
    EXPECT_EQ(client.version().revision, 6U);
    const Answer first = client.define(definitions());
    EXPECT_EQ(first.get<std::int32_t>(1), 3);
    EXPECT_EQ(first.aircraftId, 0xAAU);
    EXPECT_EQ(client.exchange({{7, 9}}).get<std::int32_t>(1), 5);
    Answer last = client.exchange();
    EXPECT_EQ(last.get<std::int32_t>(1), 5);
    last.outputs.clear();
    EXPECT_THROW(last.at(1), std::out_of_range);
}

TEST_F(TarnelClientTest, SendsALargeRequestWhole) {
    const std::vector<Item> items(500'000, {7, 9});
    const LoopbackListener listener;
    const std::jthread server([&] {
        TcpPeer peer(AcceptedSocket{listener.Accept()});
        peer.Await(24 + 488 + 116);
        peer.Send(fromHex(defining().answer));
        EXPECT_EQ(peer.Await(16 + 8 * items.size()).size(), 16 + 8 * items.size());
        peer.Send(fromHex(kSend.answer));
    });
    Options options;
    options.port = listener.Port();
    options.timeout = milliseconds(20'000);
    Client client(options);
    client.define(definitions());
    EXPECT_EQ(client.exchange(items).get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, RefusesAnUndeclaredAction) {
    ScriptedServer server({{{defining()}}});
    Client client(optionsFor(server));
    EXPECT_EQ(textOf<std::invalid_argument>([&] { client.exchange(); }),
              "values cannot be exchanged before anything is defined");
    client.define(definitions());
    EXPECT_EQ(textOf<std::invalid_argument>([&] {
                  client.exchange({{7, 1}, {8, 1}});
              }),
              "the action 8 is not declared");
}

TEST_F(TarnelClientTest, DefinesAgainAndAsksAgainAfterATornRequest) {
    ScriptedServer server({{{defining(), answeredWith(kSend, kTorn)}}, {{defining(), kSend}}});
    Client client(optionsFor(server));
    client.define(definitions());
    EXPECT_EQ(client.exchange({{7, 9}}).get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, DefinesOnlyOnceAgainOnANewConnection) {
    ScriptedServer server({{{answeredWith(defining(), kTorn)}}, {{defining(), kAsk}}});
    Client client(optionsFor(server));
    EXPECT_EQ(client.define(definitions()).get<std::int32_t>(1), 3);
    EXPECT_EQ(client.exchange().get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, AsksOnlyOnceAgain) {
    ScriptedServer server(
        {{{answeredWith(defining(), kTorn)}}, {{answeredWith(defining(), kTorn)}}});
    Client client(optionsFor(server));
    EXPECT_EQ(
        textOf<ProtocolError>([&] { client.define(definitions()); }),
        server.Place() + ": repeating the declarations: expected an answer of 24 bytes, got 12");
    EXPECT_FALSE(client.isConnected());
}

TEST_F(TarnelClientTest, AsksOnlyOnceAgainForAnExchange) {
    ScriptedServer server(
        {{{defining(), answeredWith(kAsk, kTorn)}}, {{defining(), answeredWith(kAsk, kTorn)}}});
    Client client(optionsFor(server));
    client.define(definitions());
    EXPECT_EQ(textOf<ProtocolError>([&] { client.exchange(); }),
              server.Place() + ": exchanging values: expected an answer of 24 bytes, got 12");
}

TEST_F(TarnelClientTest, DoesNotSendItemsAgainAfterALoss) {
    ScriptedServer server(
        {{{defining(), answeredWith(kSend, "")}, End::ByServer}, {{defining(), kSend}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    client.define(definitions());
    EXPECT_EQ(client.exchange({{7, 9}}).get<std::int32_t>(1), 3);
    EXPECT_EQ(client.exchange({{7, 9}}).get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, SendsTheItemsOfACallThatBeginsWithoutAConnection) {
    ScriptedServer server({{{defining()}}, {{defining(), kSend}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    client.define(definitions());
    client.close();
    EXPECT_EQ(client.exchange({{7, 9}}).get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, ThrowsALossIfAskedTo) {
    ScriptedServer server(
        {{{defining(), answeredWith(kAsk, "")}, End::ByServer}, {{defining(), kAsk}}});
    Client client(optionsFor(server));
    client.define(definitions());
    EXPECT_EQ(textOf<ClosedError>([&] { client.exchange(); }),
              server.Place() +
                  ": exchanging values: expected the length of an answer, "
                  "got 0 bytes and the end of the connection");
    EXPECT_THROW(client.exchange(), ClosedError);
    EXPECT_THROW(client.define(definitions()), ClosedError);
    client.reconnect();
    EXPECT_EQ(client.exchange().get<std::int32_t>(1), 5);
}

TEST_F(TarnelClientTest, KeepsTheConnectionWhileCommandsKeepTheirIdentifiers) {
    ScriptedServer server(
        {{{definingCommand(1, 'a'), definingCommand(2, 'b'), definingCommand(1, 'a')}}});
    Client client(optionsFor(server));
    client.define(observing(1, 'a'));
    client.define(observing(2, 'b'));
    client.define(observing(1, 'a'));
}

TEST_F(TarnelClientTest, ConnectsAnewBeforeACommandGetsAnotherIdentifier) {
    ScriptedServer server(
        {{{definingCommand(1, 'a'), definingCommand(2, 'b')}}, {{definingCommand(2, 'a')}}});
    Client client(optionsFor(server));
    client.define(observing(1, 'a'));
    client.define(observing(2, 'b'));
    EXPECT_FALSE(client.define(observing(2, 'a')).get<bool>(2));
}

TEST_F(TarnelClientTest, ConnectsAnewBeforeAnIdentifierGetsAnotherCommand) {
    ScriptedServer server({{{definingCommand(1, 'a')}}, {{definingCommand(1, 'b')}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    client.define(observing(1, 'a'));
    client.define(observing(1, 'b'));
}

TEST_F(TarnelClientTest, ReportsAnotherAircraft) {
    constexpr const char* kOther =
        "18 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00 "
        "FF FF 00 00 04 00 00 00 BB 00 00 00";
    constexpr const char* kNone =
        "18 00 00 00 01 00 00 00 04 00 00 00 00 00 00 00 "
        "FF FF 00 00 04 00 00 00 00 00 00 00";
    ScriptedServer server(
        {{{defining(), kAsk, answeredWith(kAsk, kOther), answeredWith(kAsk, kNone)}},
         {{defining()}}});
    Client client(optionsFor(server));
    std::vector<std::uint32_t> ids;
    int connections = 0;
    client.setCallbacks({.connected = [&] { ++connections; }});
    client.onAircraftChanged([&](std::uint32_t id) { ids.push_back(id); });
    client.define(definitions());
    client.exchange();
    client.exchange();
    client.exchange();
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{0xBB, 0}));
    client.reconnect();
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{0xBB, 0, 0xAA}));
    EXPECT_EQ(connections, 1);
}

} // namespace
