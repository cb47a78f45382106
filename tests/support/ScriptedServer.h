#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "support/LoopbackListener.h"
#include "support/TcpPeer.h"

// Plays the server, byte by byte: it accepts connections one after the other, and on each of them
// waits for a request and sends an answer, as often as written down. Another request than expected
// fails the test, as does a connection that is never made.
//
// It runs in a thread of its own until its script is over, which the destructor waits for. Nothing
// waits longer than a deadline.
class ScriptedServer final {
public:
    // In hex. An answer has its length in front; an empty one is none.
    struct Turn {
        std::string request;
        std::string answer;
    };
    enum class End {
        ByServer, // closes after the last turn
        ByClient, // waits for the client to close; anything that it sends before fails the test
        ByReset,
    };
    struct Connection {
        std::vector<Turn> turns;
        End end = End::ByClient;
    };

    explicit ScriptedServer(std::vector<Connection> connections);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    std::uint16_t Port() const { return listener.Port(); }
    // "127.0.0.1:port".
    std::string Place() const { return "127.0.0.1:" + std::to_string(Port()); }

private:
    void play();
    static void play(const Connection& connection, TcpPeer& client);

    const std::vector<Connection> script;
    LoopbackListener listener;
    std::thread thread;
};
