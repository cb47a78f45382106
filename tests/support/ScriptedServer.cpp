#include "support/ScriptedServer.h"

#include <system_error>
#include <utility>

#include <gtest/gtest.h>

ScriptedServer::ScriptedServer(std::vector<Connection> connections)
    : script(std::move(connections)), thread([this] { play(); }) {}

ScriptedServer::~ScriptedServer() {
    thread.join();
}

void ScriptedServer::play() {
    for (const Connection& connection : script) {
        const int accepted = listener.Accept();
        if (accepted == -1) {
            ADD_FAILURE() << "the client makes fewer connections than expected";
            return;
        }
        TcpPeer client(AcceptedSocket{accepted});
        try {
            play(connection, client);
        } catch (const std::system_error& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

void ScriptedServer::play(const Connection& connection, TcpPeer& client) {
    for (const Turn& turn : connection.turns) {
        const Bytes expected = fromHex(turn.request);
        EXPECT_EQ(toHex(client.Await(expected.size())), toHex(expected));
        client.Send(fromHex(turn.answer));
    }
    if (connection.end == End::ByClient) {
        EXPECT_EQ(toHex(client.Await(1)), "") << "sent where the connection should end";
    }
    if (connection.end == End::ByReset) {
        client.CloseWithReset();
    }
}
