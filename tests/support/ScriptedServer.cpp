#include "support/ScriptedServer.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "support/TcpPeer.h"

namespace {

int checked(int result, const char* what) {
    if (result == -1) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return result;
}

} // namespace

ScriptedServer::ScriptedServer(std::vector<Connection> connections)
    : script(std::move(connections)),
      listener(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    checked(::bind(listener, reinterpret_cast<const sockaddr*>(&address), length), "bind");
    checked(::listen(listener, 4), "listen");
    checked(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length), "getsockname");
    port = ntohs(address.sin_port);
    thread = std::thread([this] { play(); });
}

ScriptedServer::~ScriptedServer() {
    thread.join();
    ::close(listener);
}

void ScriptedServer::play() {
    for (const Connection& connection : script) {
        if (!waitReadable(listener)) {
            ADD_FAILURE() << "the client makes fewer connections than expected";
            return;
        }
        const int socket = ::accept(listener, nullptr, nullptr);
        play(connection, socket);
        ::close(socket);
    }
}

void ScriptedServer::play(const Connection& connection, int socket) const {
    for (const Turn& turn : connection.turns) {
        const Bytes expected = fromHex(turn.request);
        EXPECT_EQ(toHex(receive(socket, expected.size())), toHex(expected));
        const Bytes answer = fromHex(turn.answer);
        EXPECT_EQ(::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(answer.size()));
    }
    if (connection.end == End::ByClient) {
        EXPECT_EQ(toHex(receive(socket, 1)), "") << "sent where the connection should end";
    }
    if (connection.end == End::ByReset) {
        const linger atOnce{1, 0};
        ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    }
}

// Fewer bytes when the client closes first, or sends no more in time.
Bytes ScriptedServer::receive(int socket, std::size_t most) {
    Bytes bytes(most);
    std::size_t received = 0;
    while (received < most && waitReadable(socket)) {
        const ssize_t result = ::recv(socket, bytes.data() + received, most - received, 0);
        if (result <= 0) {
            break;
        }
        received += static_cast<std::size_t>(result);
    }
    bytes.resize(received);
    return bytes;
}
