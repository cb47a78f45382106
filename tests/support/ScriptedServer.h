#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "support/LoopbackListener.h"
#include "support/TcpPeer.h"

// Plays a server byte by byte: accepts connections one after the other and plays the turns of each:
// a request and its answer. An unexpected request or a missing connection fails the test.
//
// Runs in its own thread until the script ends; the destructor waits for that. Every wait has a
// deadline.
class ScriptedServer final {
public:
    // In hex. An answer begins with its length; an empty one is not sent.
    struct Turn {
        std::string request;
        std::string answer;
    };
    enum class End {
        ByServer, // closes after the last turn
        ByClient, // waits for the client to close; any further bytes fail the test
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
