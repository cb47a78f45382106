#include "network/TcpServer.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <exception>
#include <string>

#include "common/ILoggingService.h"
#include "common/IUtilities.h"
#include "common/LogMessage.h"
#include "network/TcpConnection.h"

namespace {

constexpr int kInvalidSocket = -1;
constexpr std::uint16_t kPort = 48000;
constexpr int kBacklog = 2;
// Accepted sockets inherit it. The system may grant less.
constexpr int kReceiveBufferSize = 4 * 1024 * 1024;

sockaddr_in listeningAddress() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    return address;
}

} // namespace

TcpServer::TcpServer(ILoggingService* loggingService, IUtilities* utilities,
                     IProtocolFactory* protocolFactory)
    : utilities(utilities), loggingService(loggingService), protocolFactory(protocolFactory) {}

TcpServer::~TcpServer() {
    if (serverSocket != kInvalidSocket) {
        ::close(serverSocket);
    }
}

bool TcpServer::Init() {
    logIfEnabled(loggingService, LogLevelVerbose, "Verbose@TcpServer::Init");
    if (isInit) {
        loggingService->Log(LogLevelWarning,
                            "Warning@TcpServer::Init : isInit == true. Skipping init.");
        return true;
    }
    if (!openServerSocket()) {
        return false;
    }
    if (!bindServerSocket()) {
        ::close(serverSocket);
        serverSocket = kInvalidSocket;
        return false;
    }
    isInit = true;
    return startListening();
}

bool TcpServer::openServerSocket() {
    if (serverSocket != kInvalidSocket) {
        loggingService->Log(
            LogLevelError,
            "Error@TcpServer::Init : before socket() : serverSocket != INVALID_SOCKET");
        return false;
    }
    serverSocket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (serverSocket == kInvalidSocket) {
        loggingService->Log(LogLevelError,
                            "Error@TcpServer::Init : socket() : serverSocket == INVALID_SOCKET");
        return false;
    }
    // Connections of a simulator that has just ended would otherwise keep the port for a minute.
    const int enabled = 1;
    ::setsockopt(serverSocket, SOL_SOCKET, SO_REUSEADDR, &enabled, sizeof(enabled));
    return true;
}

bool TcpServer::bindServerSocket() {
    const sockaddr_in address = listeningAddress();
    while (::bind(serverSocket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) ==
           -1) {
        if (errno != EAGAIN && errno != EALREADY) {
            reportSocketError("Error@TcpServer::Init : bind() : ");
            return false;
        }
    }
    return true;
}

bool TcpServer::startListening() {
    if (!SetSocketDontLinger(serverSocket) || !SetSocketNonBlocking(serverSocket)) {
        return false;
    }
    // A request that does not fit would be read in parts and answered too early.
    ::setsockopt(serverSocket, SOL_SOCKET, SO_RCVBUF, &kReceiveBufferSize,
                 sizeof(kReceiveBufferSize));
    if (::listen(serverSocket, kBacklog) != 0) {
        // Two programs may share the bound address; only the first of them can listen.
        loggingService->Log(LogLevelWarning, "Warning@TcpServer::Init : listen() : " +
                                                 utilities->GetSocketErrorMsg(errno));
        return false;
    }
    return true;
}

void TcpServer::Cleanup() {
    if (!isInit) {
        // Users search for this line: do not correct the names in it.
        loggingService->Log(LogLevelWarning,
                            "Warning@Cleanup::Init : isInit == false. Skipping cleanup.");
        return;
    }
    logIfEnabled(loggingService, LogLevelVerbose, "Verbose@TcpServer::Cleanup");
    connections.clear();
    isInit = false;
    if (!closeServerSocket()) {
        reportSocketError("Error@NetworkResources::Cleanup : ");
    }
}

bool TcpServer::closeServerSocket() {
    const int result = ::close(serverSocket);
    serverSocket = kInvalidSocket;
    return result == 0;
}

void TcpServer::ProcessEvents() {
    acceptClient();
    connections.remove_if([](const auto& connection) { return connection->IsReadyForCleanup(); });
    for (const auto& connection : connections) {
        connection->ProcessEvents();
    }
}

void TcpServer::acceptClient() {
    const int newSocket = ::accept(serverSocket, nullptr, nullptr);
    if (newSocket == kInvalidSocket) {
        if (errno != EAGAIN && errno != ECONNRESET) {
            reportSocketError("Error@NetworkResources::ProcessEvents : accept() : ");
        }
        return;
    }
    if (!SetSocketDontLinger(newSocket)) {
        ::close(newSocket);
        return;
    }
    SetSocketNonBlocking(newSocket);
    addConnection(newSocket);
}

// If there is no memory for a client, it is turned away and the flight goes on.
void TcpServer::addConnection(int socket) {
    try {
        auto& connection = connections.emplace_back();
        connection =
            std::make_unique<TcpConnection>(socket, loggingService, utilities, protocolFactory);
    } catch (const std::exception& error) {
        connections.remove(nullptr);
        ::close(socket);
        loggingService->Log(
            LogLevelWarning,
            std::string("Warning@TcpServer::ProcessEvents : TcpConnection() : ") + error.what());
    }
}

bool TcpServer::SetSocketDontLinger(int socket) {
    const linger off{0, 0};
    if (::setsockopt(socket, SOL_SOCKET, SO_LINGER, &off, sizeof(off)) == -1) {
        reportSocketError("Error@TcpServer::SetSocketDontLinger : setsockopt() : ");
        return false;
    }
    return true;
}

bool TcpServer::SetSocketNonBlocking(int socket) {
    const int flags = ::fcntl(socket, F_GETFL);
    if (flags == -1 || ::fcntl(socket, F_SETFL, flags | O_NONBLOCK) == -1) {
        reportSocketError("Error@TcpServer::SetSocketNonBlocking : ioctlsocket() : ");
        return false;
    }
    return true;
}

void TcpServer::reportSocketError(const char* prefix) {
    const int error = errno;
    loggingService->Log(LogLevelError, prefix + utilities->GetSocketErrorMsg(error));
}
