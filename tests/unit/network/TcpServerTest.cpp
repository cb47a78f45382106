#include "network/TcpServer.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "common/Utilities.h"
#include "support/Bytes.h"
#include "support/Deadline.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"
#include "support/SocketFaults.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t kPort = 48000;

// Another program that is bound to the port, and listens if it is told to.
class Occupant final {
public:
    Occupant() : socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        const int enabled = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &enabled, sizeof(enabled));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(kPort);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            throw std::runtime_error("the port is not free");
        }
    }
    ~Occupant() { ::close(socket); }
    Occupant(const Occupant&) = delete;
    Occupant& operator=(const Occupant&) = delete;

    bool Listen() const { return ::listen(socket, 1) == 0; }

private:
    int socket;
};

int optionOf(int socket, int option) {
    int value = 0;
    socklen_t length = sizeof(value);
    ::getsockopt(socket, SOL_SOCKET, option, &value, &length);
    return value;
}

// Of the sockets of this process that are bound to the server's port: the listening one first, then
// the accepted ones.
std::vector<int> receiveBuffersOnThePort() {
    constexpr int kMoreThanAnyDescriptor = 256;
    std::vector<int> sizes;
    for (int file = 0; file < kMoreThanAnyDescriptor; ++file) {
        sockaddr_in address{};
        socklen_t length = sizeof(address);
        if (::getsockname(file, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
            address.sin_family == AF_INET && address.sin_port == htons(kPort)) {
            const bool listens = optionOf(file, SO_ACCEPTCONN) != 0;
            sizes.insert(listens ? sizes.begin() : sizes.end(), optionOf(file, SO_RCVBUF));
        }
    }
    return sizes;
}

class TcpServerTest : public testing::Test {
protected:
    TcpServerTest() {
        factory.make = [this] { return makeProtocol(); };
    }

    // Each protocol answers with the number of its connection, counted from 1.
    std::map<unsigned int, IProtocol*> makeProtocol() {
        auto* const protocol = new FakeProtocol(0x44332211);
        const int number = factory.connectionsServed;
        protocol->feed = [this, number](IRingBuffer& in, IRingBuffer& out) {
            drain(in);
            if (feedsThrow) {
                throw std::length_error("too long");
            }
            fed.push_back(number);
            out.WriteUInt8(static_cast<std::uint8_t>(number));
            return 1;
        };
        protocol->onDelete = [this, number] { deleted.push_back(number); };
        return {{0x44332211, protocol}};
    }

    void start() {
        ASSERT_TRUE(server->Init());
        logger.messages.clear();
    }

    void tick() { server->ProcessEvents(); }

    // A client that has been accepted.
    std::unique_ptr<TcpPeer> connect() {
        auto peer = std::make_unique<TcpPeer>(kPort);
        const int before = factory.connectionsServed;
        EXPECT_TRUE(
            driveUntil([this] { tick(); }, [&] { return factory.connectionsServed > before; }));
        return peer;
    }

    std::string exchange(TcpPeer& peer) {
        peer.Send(fromHex("11 22 33 44"));
        return toHex(receive(peer, 5));
    }

    Bytes receive(TcpPeer& peer, std::size_t size) {
        Bytes got;
        driveUntil(
            [&] {
                tick();
                got = join({got, peer.Receive(size - got.size())});
            },
            [&] { return got.size() >= size; });
        return got;
    }

    static bool seesTheEnd(TcpPeer& peer) {
        return driveUntil([&] { peer.Receive(); },
                          [&] { return peer.SawEnd() || peer.SawReset(); });
    }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    std::vector<int> fed;
    std::vector<int> deleted;
    bool feedsThrow = false;
    std::unique_ptr<TcpServer> server = std::make_unique<TcpServer>(&logger, &utilities, &factory);
    SocketFaults faults;
};

// --- Init

TEST_F(TcpServerTest, ListensOnItsPort) {
    EXPECT_TRUE(server->Init());
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose, "Verbose@TcpServer::Init")));
    const auto peer = connect();
    EXPECT_EQ(exchange(*peer), "01 00 00 00 01");
}

TEST_F(TcpServerTest, ListensOnEveryLocalAddress) {
    start();
    const int client = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(0x7F010203); // 127.1.2.3
    EXPECT_EQ(::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ::close(client);
}

TEST_F(TcpServerTest, SkipsASecondInit) {
    start();
    EXPECT_TRUE(server->Init());
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose, "Verbose@TcpServer::Init"),
                            std::pair(LogLevelWarning,
                                      "Warning@TcpServer::Init : isInit == true. Skipping init.")));
    const auto peer = connect();
    EXPECT_EQ(exchange(*peer), "01 00 00 00 01");
}

// Error 98 is not in the table of texts.
TEST_F(TcpServerTest, IsFatalWhenAnotherProgramListensOnThePort) {
    const Occupant occupant;
    ASSERT_TRUE(occupant.Listen());
    Utilities realUtilities;
    TcpServer second(&logger, &realUtilities, &factory);
    EXPECT_THROW(second.Init(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpServer::Init : bind() : Unknown Socket Error Code 98"));
}

TEST_F(TcpServerTest, IsFatalWhenAServerListensOnThePort) {
    start();
    TcpServer second(&logger, &utilities, &factory);
    EXPECT_THROW(second.Init(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpServer::Init : bind() : text of error 98"));
    const auto peer = connect();
    EXPECT_EQ(exchange(*peer), "01 00 00 00 01");
}

TEST_F(TcpServerTest, IsFatalWhenThereIsNoSocket) {
    faults.Fail(SocketCall::Socket, EMFILE);
    EXPECT_THROW(server->Init(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpServer::Init : socket() : serverSocket == INVALID_SOCKET"));
}

// Left by an Init that ended in a fatal report.
TEST_F(TcpServerTest, IsFatalWhenASocketIsThereAlready) {
    faults.Fail(SocketCall::Bind, EACCES);
    EXPECT_THROW(server->Init(), FatalReport);
    logger.messages.clear();
    EXPECT_THROW(server->Init(), FatalReport);
    EXPECT_THAT(
        logger.At(LogLevelError),
        ElementsAre("Error@TcpServer::Init : before socket() : serverSocket != INVALID_SOCKET"));
}

TEST_F(TcpServerTest, BindsAgainAtOnceWhenToldToTryAgain) {
    faults.Fail(SocketCall::Bind, EAGAIN);
    faults.Fail(SocketCall::Bind, EALREADY);
    faults.Fail(SocketCall::Bind, EAGAIN);
    EXPECT_TRUE(server->Init());
    EXPECT_EQ(faults.Count(SocketCall::Bind), 4U);
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
    const auto peer = connect();
    EXPECT_EQ(exchange(*peer), "01 00 00 00 01");
}

TEST_F(TcpServerTest, DoesNotBindAgainAfterAnyOtherError) {
    faults.Fail(SocketCall::Bind, EINTR);
    EXPECT_THROW(server->Init(), FatalReport);
    EXPECT_EQ(faults.Count(SocketCall::Bind), 1U);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpServer::Init : bind() : text of error 4"));
}

TEST_F(TcpServerTest, DoesNotBindWithoutASocket) {
    logger.throwsOnError = false;
    faults.Fail(SocketCall::Socket, EMFILE);
    EXPECT_FALSE(server->Init());
    EXPECT_EQ(faults.Count(SocketCall::Bind), 0U);
}

TEST_F(TcpServerTest, DoesNotListenWhenItCannotBind) {
    logger.throwsOnError = false;
    faults.Fail(SocketCall::Bind, EACCES);
    EXPECT_FALSE(server->Init());
    EXPECT_EQ(faults.Count(SocketCall::Listen), 0U);
}

TEST_F(TcpServerTest, DoesNotListenWhenLingerCannotBeSet) {
    logger.throwsOnError = false;
    faults.Pass(SocketCall::SetOption); // The reuse of the address.
    faults.Fail(SocketCall::SetOption, EINVAL);
    EXPECT_FALSE(server->Init());
    EXPECT_EQ(faults.Count(SocketCall::Listen), 0U);
    EXPECT_THAT(
        logger.At(LogLevelError),
        ElementsAre("Error@TcpServer::SetSocketDontLinger : setsockopt() : text of error 22"));
}

TEST_F(TcpServerTest, IsNotListeningWhenListenFails) {
    faults.Fail(SocketCall::Listen, EADDRINUSE);
    EXPECT_FALSE(server->Init());
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
}

TEST_F(TcpServerTest, SharesThePortWithAProgramThatDoesNotListen) {
    const Occupant occupant;
    EXPECT_TRUE(server->Init());
}

// --- Socket options

// How much the system grants is its own affair; it is what any socket gets that asks for as much.
TEST_F(TcpServerTest, AsksForRoomForALargeRequestBeforeItListens) {
    const int asking = ::socket(AF_INET, SOCK_STREAM, 0);
    const int fourMebibytes = 4194304;
    ASSERT_EQ(::setsockopt(asking, SOL_SOCKET, SO_RCVBUF, &fourMebibytes, sizeof(fourMebibytes)),
              0);
    const int granted = optionOf(asking, SO_RCVBUF);
    ::close(asking);
    start();
    const auto peer = connect();
    EXPECT_THAT(receiveBuffersOnThePort(), ElementsAre(granted, granted));
}

TEST_F(TcpServerTest, ListensWithoutThatRoomToo) {
    faults.Pass(SocketCall::SetOption); // The reuse of the address.
    faults.Pass(SocketCall::SetOption); // Lingering.
    faults.Fail(SocketCall::SetOption, ENOBUFS);
    EXPECT_TRUE(server->Init());
    EXPECT_EQ(faults.Count(SocketCall::SetOption), 3U);
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
    const auto peer = connect();
    EXPECT_EQ(exchange(*peer), "01 00 00 00 01");
}

TEST_F(TcpServerTest, SwitchesLingeringOff) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    linger option{1, 30};
    ASSERT_EQ(::setsockopt(socket, SOL_SOCKET, SO_LINGER, &option, sizeof(option)), 0);
    EXPECT_TRUE(server->SetSocketDontLinger(socket));
    socklen_t length = sizeof(option);
    ASSERT_EQ(::getsockopt(socket, SOL_SOCKET, SO_LINGER, &option, &length), 0);
    EXPECT_EQ(option.l_onoff, 0);
    ::close(socket);
}

TEST_F(TcpServerTest, IsFatalWhenLingeringCannotBeSwitchedOff) {
    EXPECT_THROW(server->SetSocketDontLinger(-1), FatalReport);
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelError,
                                      "Error@TcpServer::SetSocketDontLinger : setsockopt() "
                                      ": text of error 9")));
    logger.throwsOnError = false;
    EXPECT_FALSE(server->SetSocketDontLinger(-1));
}

TEST_F(TcpServerTest, MakesASocketNonBlockingAndKeepsItsOtherFlags) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(::fcntl(socket, F_SETFL, O_APPEND), 0);
    EXPECT_TRUE(server->SetSocketNonBlocking(socket));
    const int flags = ::fcntl(socket, F_GETFL);
    EXPECT_NE(flags & O_NONBLOCK, 0);
    EXPECT_NE(flags & O_APPEND, 0);
    ::close(socket);
}

TEST_F(TcpServerTest, IsFatalWhenASocketCannotBeMadeNonBlocking) {
    EXPECT_THROW(server->SetSocketNonBlocking(-1), FatalReport);
    EXPECT_THAT(logger.messages, ElementsAre(std::pair(LogLevelError,
                                                       "Error@TcpServer::SetSocketNonBlocking : "
                                                       "ioctlsocket() : text of error 9")));
    logger.throwsOnError = false;
    EXPECT_FALSE(server->SetSocketNonBlocking(-1));
}

// --- Ticks

TEST_F(TcpServerTest, CostsOneFailingAcceptPerTickWithoutClients) {
    start();
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Accept), 1U);
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Accept), 2U);
    EXPECT_EQ(faults.Count(SocketCall::Receive), 0U);
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(TcpServerTest, AcceptsOneClientPerTick) {
    start();
    const TcpPeer first(kPort);
    const TcpPeer second(kPort);
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return factory.connectionsServed >= 1; }));
    EXPECT_EQ(factory.connectionsServed, 1);
    tick();
    EXPECT_EQ(factory.connectionsServed, 2);
    tick();
    EXPECT_EQ(factory.connectionsServed, 2);
}

TEST_F(TcpServerTest, LetsANewClientTakeItsFirstStepInTheTickThatAcceptsIt) {
    start();
    TcpPeer peer(kPort);
    peer.Send(fromHex("11 22 33 44"));
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return factory.connectionsServed == 1; }));
    EXPECT_EQ(faults.Count(SocketCall::Receive), 1U);
    EXPECT_THAT(fed, ElementsAre(1));
}

TEST_F(TcpServerTest, DrivesItsClientsInTheOrderOfTheirAcceptance) {
    start();
    const auto first = connect();
    const auto second = connect();
    const auto third = connect();
    third->Send(fromHex("11 22 33"));
    first->Send(fromHex("11 22 33"));
    second->Send(fromHex("11 22 33"));
    const auto received = [this] { return logger.messages.size(); };
    ASSERT_TRUE(driveUntil([this] { tick(); }, [&] { return received() == 3; }));
    third->Send(fromHex("44"));
    second->Send(fromHex("44"));
    first->Send(fromHex("44"));
    tick();
    EXPECT_THAT(fed, ElementsAre(1, 2, 3));
}

TEST_F(TcpServerTest, KeepsClientsApart) {
    start();
    const auto first = connect();
    const auto second = connect();
    EXPECT_EQ(exchange(*second), "01 00 00 00 02");
    EXPECT_EQ(exchange(*first), "01 00 00 00 01");
}

TEST_F(TcpServerTest, RemovesAClientOneTickAfterItsDisconnectWasSeen) {
    start();
    const auto peer = connect();
    peer->Close();
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return !logger.messages.empty(); }));
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelVerbose,
                              "Verbose@TcpConnection::ProcessEvents : recv() : clean disconnect")));
    EXPECT_THAT(deleted, IsEmpty());
    tick();
    EXPECT_THAT(deleted, ElementsAre(1));
}

TEST_F(TcpServerTest, ServesTheOthersWhenAClientIsGone) {
    start();
    const auto first = connect();
    const auto second = connect();
    const auto third = connect();
    second->CloseWithReset();
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return !deleted.empty(); }));
    EXPECT_THAT(deleted, ElementsAre(2));
    EXPECT_EQ(exchange(*first), "01 00 00 00 01");
    EXPECT_EQ(exchange(*third), "01 00 00 00 03");
}

TEST_F(TcpServerTest, ServesTheOthersWhenAProtocolThrows) {
    start();
    const auto first = connect();
    const auto second = connect();
    feedsThrow = true;
    first->Send(fromHex("11 22 33 44"));
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return !deleted.empty(); }));
    feedsThrow = false;
    EXPECT_THAT(deleted, ElementsAre(1));
    EXPECT_TRUE(seesTheEnd(*first));
    EXPECT_EQ(exchange(*second), "01 00 00 00 02");
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpConnection::ProcessEvents : Feed() : too long"));
}

TEST_F(TcpServerTest, IgnoresAClientThatIsGoneBeforeItIsAccepted) {
    start();
    faults.Fail(SocketCall::Accept, ECONNRESET);
    tick();
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(TcpServerTest, IsFatalWhenAcceptFails) {
    start();
    faults.Fail(SocketCall::Accept, EMFILE);
    EXPECT_THROW(tick(), FatalReport);
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(
            LogLevelError, "Error@NetworkResources::ProcessEvents : accept() : text of error 24")));
}

TEST_F(TcpServerTest, TurnsAClientAwayWhoseSocketCannotBeSetUp) {
    start();
    logger.throwsOnError = false;
    TcpPeer peer(kPort);
    faults.Fail(SocketCall::SetOption, EINVAL);
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return !logger.messages.empty(); }));
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelError,
                                      "Error@TcpServer::SetSocketDontLinger : setsockopt() "
                                      ": text of error 22")));
    EXPECT_EQ(factory.connectionsServed, 0);
    EXPECT_TRUE(seesTheEnd(peer));
}

TEST_F(TcpServerTest, TurnsAClientAwayForWhichThereIsNoMemory) {
    start();
    const auto first = connect();
    factory.make = []() -> std::map<unsigned int, IProtocol*> { throw std::bad_alloc(); };
    const auto second = connect();
    EXPECT_TRUE(seesTheEnd(*second));
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpServer::ProcessEvents : TcpConnection() : std::bad_alloc"));
    factory.make = [this] { return makeProtocol(); };
    const auto third = connect();
    EXPECT_EQ(exchange(*first), "01 00 00 00 01");
    EXPECT_EQ(exchange(*third), "01 00 00 00 03");
}

// --- Cleanup

TEST_F(TcpServerTest, WarnsOfACleanupBeforeInit) {
    server->Cleanup();
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelWarning,
                              "Warning@Cleanup::Init : isInit == false. Skipping cleanup.")));
}

TEST_F(TcpServerTest, StopsListening) {
    start();
    server->Cleanup();
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose, "Verbose@TcpServer::Cleanup")));
    EXPECT_THROW(TcpPeer{kPort}, std::system_error);
}

TEST_F(TcpServerTest, WarnsOfASecondCleanup) {
    start();
    server->Cleanup();
    logger.messages.clear();
    server->Cleanup();
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelWarning,
                              "Warning@Cleanup::Init : isInit == false. Skipping cleanup.")));
}

TEST_F(TcpServerTest, DropsItsClientsInCleanup) {
    start();
    const auto first = connect();
    const auto second = connect();
    server->Cleanup();
    EXPECT_THAT(deleted, ElementsAre(1, 2));
    EXPECT_TRUE(seesTheEnd(*first));
    EXPECT_TRUE(seesTheEnd(*second));
}

TEST_F(TcpServerTest, IsFatalWhenTheListeningSocketCannotBeClosed) {
    start();
    faults.Fail(SocketCall::Close, EIO);
    EXPECT_THROW(server->Cleanup(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@NetworkResources::Cleanup : text of error 5"));
}

TEST_F(TcpServerTest, ListensAgainAfterCleanup) {
    start();
    const auto first = connect();
    server->Cleanup();
    EXPECT_TRUE(server->Init());
    const auto second = connect();
    EXPECT_EQ(exchange(*second), "01 00 00 00 02");
}

// The server closes first, so its port keeps waiting for stray segments of the old connections.
TEST_F(TcpServerTest, StartsAgainWhileOldConnectionsOfItsPortLinger) {
    start();
    const auto first = connect();
    auto second = connect();
    server->Cleanup();
    second->Close();
    TcpServer restarted(&logger, &utilities, &factory);
    EXPECT_TRUE(restarted.Init());
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
}

TEST_F(TcpServerTest, ReleasesEverythingWhenItIsDeleted) {
    start();
    const auto peer = connect();
    server.reset();
    EXPECT_THAT(deleted, ElementsAre(1));
    EXPECT_TRUE(seesTheEnd(*peer));
    EXPECT_THROW(TcpPeer{kPort}, std::system_error);
}

} // namespace
