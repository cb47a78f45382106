#include "TcpServerTest.h"

#include <cerrno>
#include <map>
#include <new>
#include <system_error>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    const TcpPeer first(kPluginPort);
    const TcpPeer second(kPluginPort);
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return factory.connectionsServed >= 1; }));
    EXPECT_EQ(factory.connectionsServed, 1);
    tick();
    EXPECT_EQ(factory.connectionsServed, 2);
    tick();
    EXPECT_EQ(factory.connectionsServed, 2);
}

TEST_F(TcpServerTest, LetsANewClientTakeItsFirstStepInTheTickThatAcceptsIt) {
    start();
    TcpPeer peer(kPluginPort);
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

TEST_F(TcpServerTest, ServesTheOthersAfterAClientLeft) {
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
    TcpPeer peer(kPluginPort);
    faults.Fail(SocketCall::SetOption, EINVAL);
    ASSERT_TRUE(driveUntil([this] { tick(); }, [this] { return !logger.messages.empty(); }));
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelError,
                                      "Error@TcpServer::SetSocketDontLinger : setsockopt() "
                                      ": text of error 22")));
    EXPECT_EQ(factory.connectionsServed, 0);
    EXPECT_TRUE(seesTheEnd(peer));
}

TEST_F(TcpServerTest, TurnsAClientAwayWhenMemoryIsShort) {
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
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
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
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
}

} // namespace
