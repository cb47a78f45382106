#include "bench/tick/EchoServer.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "support/Sockets.h"

namespace {

constexpr int kBacklog = 2;
constexpr int kReceiveBufferSize = 4 * 1024 * 1024;

template <class Value>
void setOption(int socket, int option, const Value& value) {
    checked(::setsockopt(socket, SOL_SOCKET, option, &value, sizeof(value)), "setsockopt");
}

void setUp(int socket) {
    setOption(socket, SO_LINGER, linger{0, 0});
    const int flags = checked(::fcntl(socket, F_GETFL), "F_GETFL");
    checked(::fcntl(socket, F_SETFL, flags | O_NONBLOCK), "F_SETFL");
}

} // namespace

EchoServer::EchoServer()
    : serverSocket(checked(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP), "socket")) {
    setOption(serverSocket, SO_REUSEADDR, 1);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPluginPort);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    checked(::bind(serverSocket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
            "bind");
    setUp(serverSocket);
    setOption(serverSocket, SO_RCVBUF, kReceiveBufferSize);
    checked(::listen(serverSocket, kBacklog), "listen");
}

EchoServer::~EchoServer() {
    ::close(serverSocket);
}

void EchoServer::ProcessEvents() {
    acceptClient();
    std::erase_if(connections, [](const auto& connection) { return connection->IsClosed(); });
    for (const auto& connection : connections) {
        connection->ProcessEvents();
    }
}

void EchoServer::acceptClient() {
    const int accepted = ::accept(serverSocket, nullptr, nullptr);
    if (accepted != -1) {
        setUp(accepted);
        connections.push_back(std::make_unique<EchoConnection>(accepted, simState));
    }
}
