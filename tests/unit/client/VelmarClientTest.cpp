#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/velmar/Client.h"
#include "unit/client/ScriptedClientTest.h"

namespace {

using namespace orvane;
using namespace orvane::velmar;
using Turn = ScriptedServer::Turn;
using Script = std::vector<ScriptedServer::Connection>;
using End = ScriptedServer::End;
using std::chrono::milliseconds;

// The dataref a/b as a float, and the command c/defghi, under the numbers 1 and 2.
const Turn kRegisterFloat{"55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 00 00 00 00 03 61 2F 62",
                          "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"};
const Turn kRegisterCommand{"55 66 77 88 03 00 00 00 02 00 00 00 08 63 2F 64 65 66 67 68 69",
                            "0C 00 00 00 03 00 00 00 02 00 00 00 01 00 00 00"};
const Turn kRead{"55 66 77 88 05 00 00 00 01 00 00 00",
                 "14 00 00 00 05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F"};
const Turn kWrite{"55 66 77 88 06 00 00 00 01 00 00 00 04 00 00 00 00 00 00 40",
                  "0C 00 00 00 06 00 00 00 01 00 00 00 01 00 00 00"};
const Turn kRun{"55 66 77 88 07 00 00 00 02 00 00 00 01", "00 00 00 00"};
constexpr const char* kTorn = "00 00 00 00";

class VelmarClientTest : public ScriptedClientTest {
protected:
    void registerAll(Client& client) const {
        client.registerDataref({"a/b", Type::Float});
        client.registerCommand("c/defghi");
    }
};

TEST_F(VelmarClientTest, SpeaksOfNamesAndSendsNumbers) {
    ScriptedServer server({{{kRegisterFloat,
                             kRegisterCommand,
                             kRead,
                             kWrite,
                             kRun,
                             {"55 66 77 88 08 00 00 00", "09 00 00 00 01 00 00 00 02 00 00 00 02"},
                             {"55 66 77 88 04 00 00 00 02 00 00 00",
                              "0C 00 00 00 04 00 00 00 02 00 00 00 01 00 00 00"},
                             {"55 66 77 88 02 00 00 00 01 00 00 00",
                              "0C 00 00 00 02 00 00 00 01 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    registerAll(client);
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
    client.write("a/b", 2.0F);
    client.run("c/defghi", Action::Once);
    const auto reports = client.poll();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].name, "c/defghi");
    EXPECT_EQ(reports[0].state, CommandState::Pressed);
    client.unregisterCommand("c/defghi");
    client.unregisterDataref("a/b");
    EXPECT_THROW(client.read("a/b"), std::out_of_range);
    EXPECT_THROW(client.write("a/b", 1.0F), std::out_of_range);
    EXPECT_THROW(client.run("c/defghi", Action::Once), std::out_of_range);
}

TEST_F(VelmarClientTest, SendsNothingThatTheServerWouldMisread) {
    ScriptedServer server({{{kRegisterFloat}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_THROW(client.registerDataref({"", Type::Float}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({std::string(256, 'x'), Type::Float}),
                 std::invalid_argument);
    EXPECT_THROW(client.registerDataref({std::string("a\0b", 3), Type::Float}),
                 std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", Type::IntArray, 0}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", Type::IntArray, 0x40000000}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", static_cast<Type>(0)}), std::invalid_argument);
    EXPECT_THROW(client.registerDataref({"c", static_cast<Type>(6)}), std::invalid_argument);
    EXPECT_THROW(client.registerCommand(""), std::invalid_argument);
    EXPECT_EQ(textOf<std::invalid_argument>([&] { client.write("a/b", 1); }),
              "a/b is registered as float and cannot take int");
}

TEST_F(VelmarClientTest, RefusesAnArrayOfAnotherSize) {
    const Turn registerArray{
        "55 66 77 88 01 00 00 00 01 00 00 00 05 00 00 00 02 00 00 00 03 61 2F 62",
        "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"};
    ScriptedServer server({{{registerArray}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::FloatArray, 2});
    EXPECT_EQ(textOf<std::invalid_argument>([&] {
                  client.write("a/b", std::vector<float>{1, 2, 3});
              }),
              "a/b is registered with 2 elements and cannot take 3");
}

TEST_F(VelmarClientTest, NamesAllThatIsRefusedAndRegistersTheOthers) {
    ScriptedServer server(
        {{{{"55 66 77 88 "
            "01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 01 61 "
            "01 00 00 00 02 00 00 00 01 00 00 00 00 00 00 00 01 62 "
            "01 00 00 00 03 00 00 00 01 00 00 00 00 00 00 00 01 63 "
            "01 00 00 00 04 00 00 00 01 00 00 00 00 00 00 00 01 64",
            "38 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 "
            "01 00 00 00 02 00 00 00 02 00 00 00 01 00 00 00 "
            "01 00 00 00 03 00 00 00 01 00 00 00 "
            "01 00 00 00 04 00 00 00 02 00 00 00 01 00 00 00"},
           {"55 66 77 88 05 00 00 00 03 00 00 00",
            "14 00 00 00 05 00 00 00 03 00 00 00 01 00 00 00 04 00 00 00 09 00 00 00"},
           // The numbers of the refused ones are not used again.
           {"55 66 77 88 01 00 00 00 05 00 00 00 01 00 00 00 00 00 00 00 01 65",
            "0C 00 00 00 01 00 00 00 05 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    const std::vector<Dataref> four{
        {"a", Type::Int}, {"b", Type::Int}, {"c", Type::Int}, {"d", Type::Int}};
    try {
        client.registerDatarefs(four);
        FAIL() << "nothing was refused";
    } catch (const Refused& error) {
        EXPECT_EQ(error.refusedNames(), (std::vector<std::string>{"b", "d"}));
        EXPECT_EQ(error.what(),
                  server.Place() + ": registering: the simulator does not have b and d");
    }
    EXPECT_THROW(client.read("b"), std::out_of_range);
    EXPECT_EQ(client.read("c"), Value(9));
    client.registerDataref({"e", Type::Int});
}

TEST_F(VelmarClientTest, RegistersANameAgainUnderItsOwnNumber) {
    ScriptedServer server(
        {{{kRegisterFloat,
           {"55 66 77 88 01 00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 03 61 2F 62",
            "0C 00 00 00 01 00 00 00 01 00 00 00 01 00 00 00"},
           kRegisterCommand,
           kRegisterCommand}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    client.registerDataref({"a/b", Type::Float}); // nothing new
    client.registerDataref({"a/b", Type::Int});
    client.registerCommand("c/defghi");
    const std::vector<std::string> twice{"c/defghi", "c/defghi"};
    client.registerCommands(twice);
}

TEST_F(VelmarClientTest, CutsALongListIntoRequestsOfOnePacket) {
    // 24 registrations of 57 bytes are 1372 with the identification; 25 would be 1429.
    std::vector<Dataref> datarefs;
    Turn first{"55 66 77 88", "20 01 00 00"};
    Turn second{"55 66 77 88", "0C 00 00 00"};
    for (int index = 0; index < 25; ++index) {
        const std::string name = std::string(39, 'x') + static_cast<char>('a' + index);
        datarefs.push_back({name, Type::Int});
        Turn& turn = index < 24 ? first : second;
        const std::string number = toHex(u32(static_cast<std::uint32_t>(index) + 1));
        turn.request += " 01 00 00 00 " + number + " 01 00 00 00 00 00 00 00 28 " +
                        toHex(Bytes(name.begin(), name.end()));
        turn.answer += " 01 00 00 00 " + number + " 01 00 00 00";
    }
    ScriptedServer server({{{first, second}}});
    Client client(optionsFor(server));
    client.registerDatarefs(datarefs);
}

TEST_F(VelmarClientTest, PollsAndBeginsAfreshInOneRequest) {
    ScriptedServer server(
        {{{kRegisterFloat,
           kRegisterCommand,
           {"55 66 77 88 08 00 00 00 03 00 00 00 02 00 00 00 08 63 2F 64 65 66 67 68 69",
            "15 00 00 00 01 00 00 00 02 00 00 00 01 03 00 00 00 02 00 00 00 01 00 00 00"}}}});
    Client client(optionsFor(server));
    registerAll(client);
    const auto reports = client.pollPresses();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].name, "c/defghi");
    EXPECT_EQ(reports[0].state, CommandState::Down);
}

TEST_F(VelmarClientTest, AsksAgainOnANewConnectionAfterATornRequest) {
    ScriptedServer server({{{kRegisterFloat, kRegisterCommand, answeredWith(kRead, kTorn)}},
                           {{kRegisterFloat, kRegisterCommand, kRead}}});
    Client client(optionsFor(server));
    std::vector<std::string> events;
    client.setCallbacks(
        {.connected = [&] { events.emplace_back("connected"); },
         .disconnected = [&](const Error& why) { events.emplace_back(why.what()); }});
    registerAll(client);
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
    EXPECT_EQ(events, (std::vector<std::string>{
                          server.Place() + ": reading a/b: expected an answer of at least 4 bytes, "
                                           "got 0",
                          "connected"}));
}

TEST_F(VelmarClientTest, AsksOnlyOnceAgain) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, kTorn)}},
                           {{kRegisterFloat, answeredWith(kRead, kTorn)}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<ProtocolError>([&] { client.read("a/b"); }),
              server.Place() + ": reading a/b: expected an answer of at least 4 bytes, got 0");
    EXPECT_FALSE(client.isConnected());
}

TEST_F(VelmarClientTest, WritesATornRequestAgain) {
    ScriptedServer server(
        {{{kRegisterFloat, answeredWith(kWrite, kTorn)}}, {{kRegisterFloat, kWrite}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    client.write("a/b", 2.0F);
}

TEST_F(VelmarClientTest, NeverRunsACommandTwice) {
    ScriptedServer server(
        {{{kRegisterFloat, kRegisterCommand, answeredWith(kRun, "04 00 00 00 01 00 00 00")}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    registerAll(client);
    EXPECT_EQ(textOf<ProtocolError>([&] { client.run("c/defghi", Action::Once); }),
              server.Place() +
                  ": running c/defghi: expected an answer of at most 0 bytes, "
                  "got 4 bytes");
}

TEST_F(VelmarClientTest, AllocatesNothingForAnAnswerThatIsTooLong) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, "FF FF FF FF")}},
                           {{kRegisterFloat, answeredWith(kRead, "FF FF FF FF")}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<ProtocolError>([&] { client.read("a/b"); }),
              server.Place() +
                  ": reading a/b: expected an answer of at most 20 bytes, "
                  "got 4294967295 bytes");
}

TEST_F(VelmarClientTest, TakesBytesThatNobodyAskedForAsATornConnection) {
    const std::string twice = kRegisterFloat.answer + " 00 00 00 00";
    ScriptedServer server(
        {{{answeredWith(kRegisterFloat, twice.c_str())}}, {{kRegisterFloat, kRead}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
}

TEST_F(VelmarClientTest, ThrowsWhenTheConnectionIsLost) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, "14 00 00 00 05")}, End::ByServer},
                           {{kRegisterFloat, kRead}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<ClosedError>([&] { client.read("a/b"); }),
              server.Place() +
                  ": reading a/b: expected an answer of 20 bytes, "
                  "got 1 byte and the end of the connection");
    EXPECT_EQ(
        textOf<ClosedError>([&] { client.read("a/b"); }),
        server.Place() + ": reading a/b: expected a connection, got none: it was closed before");
    client.reconnect();
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
}

TEST_F(VelmarClientTest, ReconnectsByItselfWhereThatIsWanted) {
    ScriptedServer server({{{kRegisterFloat}, End::ByReset}, {{kRegisterFloat, kRead}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
}

TEST_F(VelmarClientTest, DoesNotRepeatAWriteOrAnActionAfterALoss) {
    ScriptedServer server(
        {{{kRegisterFloat, kRegisterCommand, answeredWith(kWrite, "")}, End::ByServer},
         {{kRegisterFloat, kRegisterCommand, answeredWith(kRun, "")}, End::ByServer},
         {{kRegisterFloat, kRegisterCommand, kRun}}});
    Client client(optionsFor(server, OnLoss::Reconnect));
    registerAll(client);
    EXPECT_EQ(textOf<ClosedError>([&] { client.write("a/b", 2.0F); }),
              server.Place() +
                  ": writing a/b: expected it done, got a new connection; it was not "
                  "repeated there");
    EXPECT_TRUE(client.isConnected());
    EXPECT_THROW(client.run("c/defghi", Action::Once), ClosedError);
    client.run("c/defghi", Action::Once);
}

TEST_F(VelmarClientTest, ThrowsALateAnswerAndReconnectsForTheNextCall) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, "")}}, {{kRegisterFloat, kRead}}});
    Options options = optionsFor(server, OnLoss::Reconnect);
    options.timeout = milliseconds(500);
    Client client(options);
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<TimeoutError>([&] { client.read("a/b"); }),
              server.Place() +
                  ": reading a/b: no answer within 500 ms (is the simulator paused or loading?)");
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
}

TEST_F(VelmarClientTest, SaysHowMuchCameOfALateAnswer) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, "14 00 00 00 05 00")}}});
    Options options = optionsFor(server);
    options.timeout = milliseconds(500);
    Client client(options);
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<TimeoutError>([&] { client.read("a/b"); }),
              server.Place() +
                  ": reading a/b: expected an answer of 20 bytes within 500 ms, got 2 bytes");
}

TEST_F(VelmarClientTest, EndsAWaitThatIsCancelled) {
    ScriptedServer server({{{kRegisterFloat, answeredWith(kRead, "")}}});
    bool isCancelled = false;
    Options options = optionsFor(server);
    options.cancelled = [&] { return isCancelled; };
    Client client(options);
    client.registerDataref({"a/b", Type::Float});
    isCancelled = true;
    EXPECT_EQ(textOf<CancelledError>([&] { client.read("a/b"); }),
              server.Place() +
                  ": reading a/b: expected the length of an answer, was cancelled and "
                  "got 0 bytes");
    EXPECT_FALSE(client.isConnected());
}

TEST_F(VelmarClientTest, KeepsANameThatIsGoneForTheNextTry) {
    const Turn refusal =
        answeredWith(kRegisterFloat, "10 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00");
    ScriptedServer server(
        {{{kRegisterFloat}}, {{refusal}}, {{kRegisterFloat, kRead}}, {{refusal}}, {}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(textOf<Refused>([&] { client.reconnect(); }),
              server.Place() + ": registering again: the simulator does not have a/b");
    EXPECT_FALSE(client.isConnected());
    client.reconnect();
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
    EXPECT_THROW(client.reconnect(), Refused);
    client.unregisterDataref("a/b");
    client.reconnect();
    EXPECT_TRUE(client.isConnected());
}

TEST_F(VelmarClientTest, DoesNotBackOffForItsFirstConnection) {
    Options options;
    {
        ScriptedServer server(Script(1));
        options = optionsFor(server);
        Client(options).close();
    }
    options.backoff = {milliseconds(1), milliseconds(2), milliseconds(50)};
    const std::string place = "127.0.0.1:" + std::to_string(options.port);
    EXPECT_EQ(textOf<ConnectError>([&] { Client client(options); }),
              place + ": connecting: Connection refused");
}

TEST_F(VelmarClientTest, BacksOffForItsFirstConnectionWhereThatIsWanted) {
    Options options;
    {
        ScriptedServer server(Script(1));
        options = optionsFor(server);
        Client(options).close();
    }
    options.onStart = OnStart::Wait;
    options.backoff = {milliseconds(1), milliseconds(2), milliseconds(50)};
    const std::string text = textOf<ConnectError>([&] { Client client(options); });
    EXPECT_NE(text.find(": connecting: Connection refused; gave up at try "), std::string::npos)
        << text;
    options.cancelled = [] { return true; };
    EXPECT_THROW(Client client(options), CancelledError);
}

TEST_F(VelmarClientTest, BacksOffUntilItGivesUp) {
    auto server = std::make_unique<ScriptedServer>(Script(1));
    Options options = optionsFor(*server);
    options.backoff = {milliseconds(1), milliseconds(16), milliseconds(100)};
    Client client(options);
    client.close();
    server.reset();
    const std::string text = textOf<ConnectError>([&] { client.reconnect(); });
    // After 0, 1, 3, 7, 15, 31, 47, 63, 79 and 95 milliseconds, or later on a busy machine.
    EXPECT_NE(text.find(": connecting: Connection refused; gave up at try "), std::string::npos)
        << text;
    EXPECT_LE(std::stoi(text.substr(text.rfind(' '))), 10);
    EXPECT_GE(std::stoi(text.substr(text.rfind(' '))), 2);
}

TEST_F(VelmarClientTest, CanBeMoved) {
    ScriptedServer server({{{kRegisterFloat, kRead}}});
    Client first(optionsFor(server));
    first.registerDataref({"a/b", Type::Float});
    Client second(std::move(first));
    EXPECT_EQ(second.read("a/b"), Value(1.0F));
    first = std::move(second);
    EXPECT_TRUE(first.isConnected());
    static_assert(!std::is_copy_constructible_v<Client>);
}

TEST(ClientErrorTest, SaysAtOnceThatAHostIsUnknown) {
    Options options;
    options.onStart = OnStart::Wait;
    options.host = "no such host";
    try {
        Client client(options);
        FAIL() << "connected";
    } catch (const ConnectError& error) {
        EXPECT_EQ(std::string(error.what()).rfind("no such host:48000: connecting: ", 0), 0U)
            << error.what();
    }
}

} // namespace
