#pragma once

#include <memory>
#include <vector>

#include "bench/tick/EchoConnection.h"
#include "common/SimStateInformation.h"

// The floor's listening socket and its connections: the system calls of the
// plugin's server, and nothing else. Set-up failures throw std::system_error.
class EchoServer final {
public:
    EchoServer();
    ~EchoServer();
    EchoServer(const EchoServer&) = delete;
    EchoServer& operator=(const EchoServer&) = delete;

    // The aircraft whose id closes every answer.
    void ReadAircraft() { simState.ReadPlaneId(); }

    // One tick: accepts at most one client and lets each connection take one step.
    void ProcessEvents();

private:
    void acceptClient();

    int serverSocket;
    SimStateInformation simState;
    std::vector<std::unique_ptr<EchoConnection>> connections;
};
