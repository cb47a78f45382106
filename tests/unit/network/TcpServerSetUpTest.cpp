#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TcpServerTest.h"
#include "common/Utilities.h"
#include "support/LoopbackListener.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int optionOf(int socket, int option) {
    int value = 0;
    socklen_t length = sizeof(value);
    ::getsockopt(socket, SOL_SOCKET, option, &value, &length);
    return value;
}

// The sockets of this process that are bound to the server's port: the listening one first, then
// the accepted ones.
std::vector<int> receiveBuffersOnThePort() {
    constexpr int kMoreThanAnyDescriptor = 256;
    std::vector<int> sizes;
    for (int file = 0; file < kMoreThanAnyDescriptor; ++file) {
        if (portOf(file, ::getsockname) == kPluginPort) {
            const bool listens = optionOf(file, SO_ACCEPTCONN) != 0;
            sizes.insert(listens ? sizes.begin() : sizes.end(), optionOf(file, SO_RCVBUF));
        }
    }
    return sizes;
}

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
    sockaddr_in address = loopbackAddress(kPluginPort);
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
    const LoopbackListener otherProgram(kPluginPort);
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
    const LoopbackListener otherProgram(kPluginPort, std::nullopt);
    EXPECT_TRUE(server->Init());
}

// --- Socket options

// The system decides how much it grants: the same as to any socket that asks for as much.
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

} // namespace
