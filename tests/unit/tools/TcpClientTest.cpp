#include "tools/demo/TcpClient.h"

#include "support/Bytes.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <thread>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong(10'000);
constexpr milliseconds kShort(20);
constexpr milliseconds kRetries(200);

// A socket on a free port of the loopback device that plays the server.
class Listener final {
public:
    Listener() : socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* place = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(socket, place, size), 0);
        EXPECT_EQ(::getsockname(socket, place, &size), 0);
        port = ntohs(address.sin_port);
    }
    ~Listener() {
        ::close(accepted);
        ::close(socket);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void Listen() const { EXPECT_EQ(::listen(socket, 1), 0); }
    void Accept() { accepted = ::accept(socket, nullptr, nullptr); }

    void Send(const std::string& hex) const {
        const Bytes bytes = fromHex(hex);
        EXPECT_EQ(::send(accepted, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }

    Bytes Receive(std::size_t size) const {
        Bytes bytes(size);
        EXPECT_EQ(::recv(accepted, bytes.data(), size, MSG_WAITALL), static_cast<ssize_t>(size));
        return bytes;
    }

    void Hang() {
        ::close(accepted);
        accepted = -1;
    }

    // The peer sees a reset, not an end.
    void Reset() {
        const linger abrupt{1, 0};
        ::setsockopt(accepted, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
        Hang();
    }

    std::uint16_t Port() const { return port; }
    std::string Place() const { return "127.0.0.1:" + std::to_string(port); }

private:
    int socket;
    int accepted = -1;
    std::uint16_t port = 0;
};

class TcpClientTest : public testing::Test {
protected:
    template <typename Error, typename Action>
    static std::string complaint(Action action) {
        try {
            action();
        } catch (const Error& error) {
            return error.what();
        }
        return "nothing thrown";
    }

    Listener listener;
};

class ConnectedTcpClientTest : public TcpClientTest {
protected:
    ConnectedTcpClientTest() { listener.Accept(); }

    // Listens before the client is made.
    const bool listening = (listener.Listen(), true);
    demo::TcpClient client{"127.0.0.1", listener.Port(), kLong};
};

TEST_F(TcpClientTest, SaysWhereNobodyListens) {
    EXPECT_EQ(complaint<demo::ConnectError>(
                  [&] { demo::TcpClient("127.0.0.1", listener.Port(), kShort); }),
              "cannot connect to " + listener.Place() + ": Connection refused");
}

TEST_F(TcpClientTest, TriesAgainUntilTheServerListens) {
    std::thread late([&] {
        // Refused several times over, and so is the client below meanwhile.
        EXPECT_THROW(demo::TcpClient("127.0.0.1", listener.Port(), kRetries), demo::ConnectError);
        listener.Listen();
    });
    EXPECT_NO_THROW(demo::TcpClient("127.0.0.1", listener.Port(), kLong));
    late.join();
}

TEST_F(TcpClientTest, RefusesAtOnceAHostThatCannotBeOne) {
    EXPECT_THROW(demo::TcpClient(std::string(300, 'x'), listener.Port(), kLong),
                 demo::ConnectError);
}

TEST_F(ConnectedTcpClientTest, SendsTheBytesAsTheyAre) {
    client.Send(fromHex("11 22 33 44 B1 6B 00 B5"), kLong);
    EXPECT_EQ(toHex(listener.Receive(8)), "11 22 33 44 B1 6B 00 B5");
}

TEST_F(ConnectedTcpClientTest, SendsMoreThanTheSystemTakesAtOnce) {
    const Bytes much(32 << 20, 0x5A);
    Bytes arrived;
    std::thread reader([&] { arrived = listener.Receive(much.size()); });
    client.Send(much, kLong);
    reader.join();
    EXPECT_TRUE(arrived == much);
}

TEST_F(ConnectedTcpClientTest, ReceivesOneFrameAndLeavesTheNext) {
    listener.Send("02 00 00 00 AA BB 00 00 00 00 01 00 00 00 CC");
    EXPECT_EQ(toHex(client.ReceiveFrame(kLong)), "AA BB");
    EXPECT_EQ(toHex(client.ReceiveFrame(kLong)), "");
    EXPECT_EQ(toHex(client.ReceiveFrame(kLong)), "CC");
}

TEST_F(ConnectedTcpClientTest, PutsTogetherAFrameThatComesInPieces) {
    std::thread sender([&] {
        for (const char* piece : {"03 00", "00 00 AA", "BB", "CC"}) {
            listener.Send(piece);
        }
    });
    EXPECT_EQ(toHex(client.ReceiveFrame(kLong)), "AA BB CC");
    sender.join();
}

TEST_F(ConnectedTcpClientTest, SaysThatNoAnswerCameInTime) {
    EXPECT_EQ(complaint<demo::NetworkError>([&] { client.ReceiveFrame(kShort); }),
              listener.Place() + ": waiting for an answer: the time is over");
}

TEST_F(ConnectedTcpClientTest, SaysThatAnAnswerStaysIncomplete) {
    listener.Send("03 00 00 00 AA");
    EXPECT_EQ(complaint<demo::NetworkError>([&] { client.ReceiveFrame(kShort); }),
              listener.Place() + ": waiting for an answer: the time is over");
}

TEST_F(ConnectedTcpClientTest, SaysThatTheServerClosed) {
    listener.Send("03 00 00 00 AA");
    listener.Hang();
    EXPECT_EQ(complaint<demo::NetworkError>([&] { client.ReceiveFrame(kLong); }),
              listener.Place() + ": waiting for an answer: the server closed the connection");
}

TEST_F(ConnectedTcpClientTest, SaysThatTheServerResetTheConnection) {
    listener.Reset();
    EXPECT_EQ(complaint<demo::NetworkError>([&] { client.ReceiveFrame(kLong); }),
              listener.Place() + ": waiting for an answer: Connection reset by peer");
}

TEST_F(ConnectedTcpClientTest, GivesUpSendingToAServerThatDoesNotRead) {
    const Bytes much(64 << 20, 0x5A);
    EXPECT_EQ(complaint<demo::NetworkError>([&] { client.Send(much, kShort); }),
              listener.Place() + ": sending a request: the time is over");
}

TEST_F(ConnectedTcpClientTest, RefusesAFrameOfImpossibleLength) {
    listener.Send("FC FF FF 0F");
    EXPECT_THROW(client.ReceiveFrame(kLong), demo::WireError);
}

} // namespace
