#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "VelmarClientTest.h"

namespace {

using namespace orvane;
using namespace orvane::velmar;
using Script = std::vector<ScriptedServer::Connection>;
using std::chrono::milliseconds;

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

TEST_F(VelmarClientTest, ReadsAllNamesAgainAfterATornAnswer) {
    const Turn both{"55 66 77 88 05 00 00 00 01 00 00 00 05 00 00 00 01 00 00 00",
                    "28 00 00 00 05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F "
                    "05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F"};
    ScriptedServer server(
        {{{kRegisterFloat, answeredWith(both, kRead.answer.c_str())}}, {{kRegisterFloat, both}}});
    Client client(optionsFor(server));
    client.registerDataref({"a/b", Type::Float});
    EXPECT_EQ(client.read(std::vector<std::string>{"a/b", "a/b"}),
              (std::vector<Value>{1.0F, 1.0F}));
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

TEST_F(VelmarClientTest, TreatsUnexpectedBytesAsATornConnection) {
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
    EXPECT_EQ(textOf<ClosedError>([&] { client.read("a/b"); }),
              server.Place() + ": reading a/b: not connected: the connection was closed before");
    client.reconnect();
    EXPECT_EQ(client.read("a/b"), Value(1.0F));
}

TEST_F(VelmarClientTest, ReconnectsByItselfIfAskedTo) {
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
                  ": writing a/b: the connection was lost; reconnected, but this was not "
                  "repeated");
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

TEST_F(VelmarClientTest, WaitsNoLongerBetweenTwoTriesThanTheLongestDelay) {
    Options options;
    {
        ScriptedServer server(Script(1));
        options = optionsFor(server);
        Client(options).close();
    }
    int asked = 0;
    options.onStart = OnStart::Wait;
    options.cancelled = [&] { return ++asked == 200; };
    // Delays that double without end would ask about a hundred times in it.
    options.backoff = {milliseconds(1), milliseconds(1), milliseconds(5'000)};
    EXPECT_THROW(Client client(options), CancelledError);
}

TEST_F(VelmarClientTest, WaitsWithoutAnEndIfAskedTo) {
    Options options;
    {
        ScriptedServer server({{{kRegisterFloat}}});
        options = optionsFor(server);
        options.timeout = milliseconds::max();
        options.backoff.within = milliseconds::max();
        Client client(options);
        client.registerDataref({"a/b", Type::Float});
    }
    int asked = 0;
    options.onStart = OnStart::Wait;
    options.cancelled = [&] { return ++asked == 10; };
    EXPECT_THROW(Client client(options), CancelledError);
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

TEST_F(VelmarClientTest, KeepsARefusedNameForTheNextTry) {
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

TEST_F(VelmarClientTest, BacksOffForItsFirstConnectionIfAskedTo) {
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
