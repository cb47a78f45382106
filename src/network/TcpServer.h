#pragma once

#include <list>
#include <memory>

class ILoggingService;
class IProtocolFactory;
class IUtilities;
class TcpConnection;

// Listens for clients on port 48000 of every local IPv4 address, and drives their connections.
//
// Never waits: each tick tries every system call once. Flight-loop thread only. Failures to set up
// the listening socket are reported at LogLevelError, which ends the process. A port that another
// program listens on is such a failure.
class TcpServer final {
public:
    // The services are borrowed.
    TcpServer(ILoggingService* loggingService, IUtilities* utilities,
              IProtocolFactory* protocolFactory);
    // Closes and deletes what Cleanup would.
    ~TcpServer();
    TcpServer(const TcpServer&) = delete;
    TcpServer& operator=(const TcpServer&) = delete;

    // Starts listening; stops at the first step that fails and then returns false.
    bool Init();

    // Stops listening and drops all connections. Init may be called again.
    void Cleanup();

    // One tick: accepts at most one client, deletes closed connections, lets each of the others
    // take one step. Init must have succeeded.
    void ProcessEvents();

    bool SetSocketDontLinger(int socket);
    bool SetSocketNonBlocking(int socket);

private:
    bool openServerSocket();
    bool bindServerSocket();
    bool startListening();
    bool closeServerSocket();

    void acceptClient();
    void addConnection(int socket);
    void reportSocketError(const char* prefix);

    bool isInit = false;
    IUtilities* utilities;
    ILoggingService* loggingService;
    IProtocolFactory* protocolFactory;
    int serverSocket = -1;
    // In order of acceptance.
    std::list<std::unique_ptr<TcpConnection>> connections;
};
