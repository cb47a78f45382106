#include <chrono>
#include <string>
#include <vector>

#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"
#include "unit/client/ScriptedClientTest.h"

namespace {

using namespace orvane;
using std::chrono::milliseconds;
using Turn = ScriptedServer::Turn;
using Names = std::vector<std::string>;

std::string zerosInHex(std::size_t count) {
    return " " + toHex(zeros(count)) + " ";
}

// Any connection can register a command as 1, end it, and unregister it.
const Turn kEndByName{
    "55 66 77 88 03 00 00 00 01 00 00 00 08 63 2F 64 65 66 67 68 69 "
    "07 00 00 00 01 00 00 00 03 04 00 00 00 01 00 00 00",
    "18 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 01 00 00 00 01 00 00 00"};
// The simulator does not have it, so cannot hold it.
const Turn kNothingToEnd{kEndByName.request,
                         "20 00 00 00 03 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00 "
                         "04 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00"};

class TarnelReleaseTest : public ScriptedClientTest {
protected:
    // Action 7 holds the command c/defghi; there are no outputs.
    static tarnel::Definitions definitions() {
        tarnel::Definitions made;
        made.add(tarnel::Input::toCommand(7, "c/defghi").held());
        return made;
    }

    Turn defining() const {
        return {
            "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 00 00 00 00 "
            "07 00 00 00" +
                zerosInHex(28) + "06 00 00 00" + zerosInHex(32) + "01 00 00 00" + zerosInHex(208) +
                "63 2F 64 65 66 67 68 69" + zerosInHex(200),
            kPress.answer};
    }

    const Turn kPress{"11 22 33 44 DE AD BE EF 08 00 00 00 01 00 00 00 07 00 00 00 01 00 00 00",
                      "0C 00 00 00 FF FF 00 00 04 00 00 00 AA 00 00 00"};
    const Turn kRelease{"11 22 33 44 DE AD BE EF 08 00 00 00 01 00 00 00 07 00 00 00 00 00 00 00",
                        kPress.answer};
};

TEST_F(TarnelReleaseTest, SendsAReleaseBeforeItCloses) {
    ScriptedServer server({{{defining(), kPress, kRelease}}});
    tarnel::Client client(optionsFor(server));
    client.define(definitions());
    client.exchange({{7, 1}});
    client.close();
    EXPECT_FALSE(client.isConnected());
}

TEST_F(TarnelReleaseTest, SendsNothingMoreIfNothingIsHeld) {
    ScriptedServer server({{{defining(), kPress, kRelease}}});
    tarnel::Client client(optionsFor(server));
    client.define(definitions());
    client.exchange({{7, 1}});
    client.exchange({{7, 0}});
}

TEST_F(TarnelReleaseTest, SendsAReleaseBeforeNewDefinitions) {
    ScriptedServer server({{{defining(), kPress, kRelease, defining()}}});
    tarnel::Client client(optionsFor(server));
    client.define(definitions());
    client.exchange({{7, 1}});
    client.define(definitions());
}

TEST_F(TarnelReleaseTest, EndsByNameBeforeItDefinesOnANewConnection) {
    ScriptedServer server({{{defining(), kPress, answeredWith(kRelease, "")}, End::ByServer},
                           {{kEndByName, defining(), kPress, kRelease}}});
    tarnel::Client client(optionsFor(server, OnLoss::Reconnect));
    client.define(definitions());
    client.exchange({{7, 1}});
    client.exchange({{7, 0}});
    client.exchange({{7, 1}});
}

TEST_F(TarnelReleaseTest, HoldsNothingThatTheSimulatorDoesNotHave) {
    ScriptedServer server(
        {{{defining(), answeredWith(kPress, "")}, End::ByServer}, {{kNothingToEnd, defining()}}});
    tarnel::Client client(optionsFor(server, OnLoss::Reconnect));
    client.define(definitions());
    client.exchange({{7, 1}});
}

TEST_F(TarnelReleaseTest, EndsByNameIfTheConnectionIsOutOfStep) {
    ScriptedServer server(
        {{{defining(), kPress, answeredWith(kRelease, "00 00 00 00")}}, {{kEndByName}}});
    tarnel::Client client(optionsFor(server));
    client.define(definitions());
    client.exchange({{7, 1}});
}

TEST_F(TarnelReleaseTest, ThrowsBeforeNewDefinitionsIfLossesAreThrown) {
    ScriptedServer server(
        {{{defining(), kPress, answeredWith(kRelease, "")}, End::ByServer},
         {{kEndByName,
           {"11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 00 00 00 00",
            kPress.answer}}}});
    tarnel::Client client(optionsFor(server));
    client.define(definitions());
    client.exchange({{7, 1}});
    EXPECT_EQ(textOf<ClosedError>([&] { client.define({}); }),
              server.Place() +
                  ": releasing c/defghi: expected the length of an answer, "
                  "got 0 bytes and the end of the connection");
    client.reconnect(); // with the new definitions
}

class VelmarReleaseTest : public ScriptedClientTest {
protected:
    const Turn kRegister{"55 66 77 88 03 00 00 00 01 00 00 00 08 63 2F 64 65 66 67 68 69",
                         "0C 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00"};
    const Turn kBegin{"55 66 77 88 07 00 00 00 01 00 00 00 02", "00 00 00 00"};
    const Turn kEnd{"55 66 77 88 07 00 00 00 01 00 00 00 03", "00 00 00 00"};
    const Turn kEndTwice{"55 66 77 88 07 00 00 00 01 00 00 00 03 07 00 00 00 01 00 00 00 03",
                         "00 00 00 00"};

    static void begin(velmar::Client& client) {
        client.registerCommand("c/defghi");
        client.run("c/defghi", velmar::Action::Begin);
    }
};

TEST_F(VelmarReleaseTest, EndsAsOftenAsItBeganBeforeItCloses) {
    ScriptedServer server({{{kRegister, kBegin, kBegin, kBegin, kEnd, kEndTwice}}});
    velmar::Client client(optionsFor(server));
    begin(client);
    client.run("c/defghi", velmar::Action::Begin);
    client.run("c/defghi", velmar::Action::Begin);
    client.run("c/defghi", velmar::Action::End);
}

TEST_F(VelmarReleaseTest, EndsByNameBeforeItRegistersOnANewConnection) {
    ScriptedServer server({{{kRegister, kBegin}, End::ByServer}, {{kEndByName, kRegister}}});
    velmar::Client client(optionsFor(server, OnLoss::Reconnect));
    begin(client);
    EXPECT_THROW(client.run("c/defghi", velmar::Action::Once), ClosedError);
}

TEST_F(VelmarReleaseTest, CountsAnEndThatTheNewConnectionSent) {
    ScriptedServer server({{{kRegister, kBegin}, End::ByServer}, {{kEndByName, kRegister}}});
    velmar::Client client(optionsFor(server, OnLoss::Reconnect));
    begin(client);
    client.run("c/defghi", velmar::Action::End);
}

TEST_F(VelmarReleaseTest, ReportsWhatItCouldNotReleaseOnClose) {
    auto server = std::make_unique<ScriptedServer>(
        std::vector<ScriptedServer::Connection>{{{kRegister, kBegin}, End::ByServer}});
    Options options = optionsFor(*server);
    options.releaseWithin = milliseconds(50);
    velmar::Client client(options);
    Names commands;
    std::string reason;
    client.setCallbacks({.notReleased = [&](const Names& names, const Error& error) {
        commands = names;
        reason = error.what();
    }});
    begin(client);
    const std::string place = server->Place();
    server.reset();
    client.close();
    EXPECT_EQ(commands, Names{"c/defghi"});
    EXPECT_EQ(reason, place + ": releasing c/defghi: Connection refused");
}

TEST_F(VelmarReleaseTest, CallsNothingBackWhenItIsDestroyed) {
    auto server = std::make_unique<ScriptedServer>(
        std::vector<ScriptedServer::Connection>{{{kRegister, kBegin}, End::ByServer}});
    Options options = optionsFor(*server);
    options.releaseWithin = milliseconds(50);
    int calls = 0;
    {
        velmar::Client client(options);
        client.setCallbacks({.disconnected = [&](const Error&) { ++calls; },
                             .notReleased = [&](const Names&, const Error&) { ++calls; }});
        begin(client);
        server.reset();
    }
    EXPECT_EQ(calls, 0);
}

TEST_F(VelmarReleaseTest, NamesWhatItCouldNotReleaseWhenCancelled) {
    auto server = std::make_unique<ScriptedServer>(
        std::vector<ScriptedServer::Connection>{{{kRegister, kBegin}, End::ByServer}});
    bool isCancelled = false;
    Options options = optionsFor(*server, OnLoss::Reconnect);
    options.cancelled = [&] { return isCancelled; };
    options.releaseWithin = milliseconds(50);
    velmar::Client client(options);
    begin(client);
    const std::string place = server->Place();
    server.reset();
    isCancelled = true;
    const std::string text = textOf<CancelledError>([&] { client.poll(); });
    EXPECT_TRUE(text.ends_with("; " + place + ": releasing c/defghi: Connection refused")) << text;
}

TEST_F(VelmarReleaseTest, ReleasesNothingIfToldNotTo) {
    ScriptedServer server({{{kRegister, kBegin}}, {{kRegister}}});
    Options options = optionsFor(server);
    options.releaseHeld = false;
    velmar::Client client(options);
    begin(client);
    client.reconnect();
}

} // namespace
