#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <utility>

#include "TcpConnectionTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// --- The end of a connection

TEST_F(TcpConnectionTest, ClosesAfterItsPeerHasClosed) {
    peer.Close();
    ASSERT_TRUE(waitReadable(accepted));
    EXPECT_FALSE(connection->IsReadyForCleanup());
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelVerbose,
                              "Verbose@TcpConnection::ProcessEvents : recv() : clean disconnect")));
}

TEST_F(TcpConnectionTest, WarnsOfAResetSeenWhileReceiving) {
    peer.CloseWithReset();
    ASSERT_TRUE(waitBroken(accepted));
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(
            LogLevelWarning, "Warning@TcpConnection::ProcessEvents : recv() : text of error 104")));
}

TEST_F(TcpConnectionTest, ClosesQuietlyAfterAResetSeenWhileSending) {
    prepareAnswer("abc");
    peer.CloseWithReset();
    ASSERT_TRUE(waitBroken(accepted));
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.messages, IsEmpty());
}

// An answer sent after the client closed and reset the connection raises SIGPIPE.
TEST_F(TcpConnectionTest, OutlivesAClientThatSendsTwoRequestsAndVanishes) {
    tarnel->feed = takeAllAndAnswer("abc");
    receive(tarnelRequest(fromHex("01")));
    peer.Send(tarnelRequest(fromHex("02")));
    peer.Close();
    tick(); // The first answer causes the reset.
    ASSERT_TRUE(waitBroken(accepted));
    tick(); // The second request has arrived before it.
    ASSERT_THAT(fed, ElementsAre("01", "02"));
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.At(LogLevelWarning), IsEmpty());
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
}

// The reset arrives right before the send, after all checks of the socket.
TEST_F(TcpConnectionTest, OutlivesAClientThatResetsBetweenTwoSystemCalls) {
    prepareAnswer("abc");
    faults.PassAfter(SocketCall::Send, [this] {
        peer.HalfClose();
        ASSERT_TRUE(waitReadable(accepted));
        peer.CloseWithReset();
        ASSERT_TRUE(waitBroken(accepted));
    });
    tick();
    EXPECT_THAT(faults.SendResults(), ElementsAre(-1));
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(TcpConnectionTest, WarnsWhenItsSocketCannotBeClosed) {
    faults.Return(SocketCall::Receive, 0);
    faults.Fail(SocketCall::Close, EIO);
    tick();
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpConnection::closeSocket : socketError5 text of error 5"));
    EXPECT_TRUE(connection->IsReadyForCleanup());
}

TEST_F(TcpConnectionTest, ClosesWhenAProtocolThrows) {
    tarnel->feed = [](IRingBuffer&, IRingBuffer&) -> int {
        throw std::length_error("vector::_M_default_append");
    };
    receive(kTarnel);
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpConnection::ProcessEvents : Feed() : "
                            "vector::_M_default_append"));
    EXPECT_TRUE(peerSeesTheEnd());
}

TEST_F(TcpConnectionTest, ClosesWhenAProtocolFindsNoMemory) {
    tarnel->feed = [](IRingBuffer&, IRingBuffer&) -> int { throw std::bad_alloc(); };
    receive(kTarnel);
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpConnection::ProcessEvents : Feed() : std::bad_alloc"));
}

// --- Errors of real sockets

class TcpConnectionOnOddSocketTest : public testing::Test {
protected:
    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
};

TEST_F(TcpConnectionOnOddSocketTest, TracesThatTheSocketIsNotConnected) {
    TcpConnection connection(::socket(AF_INET, SOCK_STREAM, 0), &logger, &utilities, &factory);
    connection.ProcessEvents();
    EXPECT_TRUE(connection.IsReadyForCleanup());
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(
            LogLevelVerbose, "Verbose@TcpConnection::ProcessEvents : recv() : text of error 107")));
}

TEST_F(TcpConnectionOnOddSocketTest, TracesThatTheDescriptorIsNotASocket) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    TcpConnection connection(ends[0], &logger, &utilities, &factory);
    connection.ProcessEvents();
    EXPECT_TRUE(connection.IsReadyForCleanup());
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelVerbose,
                              "Verbose@TcpConnection::ProcessEvents : recv() : text of error 88")));
    ::close(ends[1]);
}

TEST_F(TcpConnectionOnOddSocketTest, TracesThatTheSocketIsClosedAndWarnsOfTheClose) {
    const int closed = ::socket(AF_INET, SOCK_STREAM, 0);
    ::close(closed);
    TcpConnection connection(closed, &logger, &utilities, &factory);
    connection.ProcessEvents();
    EXPECT_TRUE(connection.IsReadyForCleanup());
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelVerbose,
                              "Verbose@TcpConnection::ProcessEvents : recv() : text of error 9"),
                    std::pair(LogLevelWarning,
                              "Warning@TcpConnection::closeSocket : socketError9 text of error "
                              "9")));
}

// --- Every error of recv and send

class TcpConnectionErrorTest : public TcpConnectionTest, public testing::WithParamInterface<int> {
protected:
    void expectClosedWith(const std::vector<std::pair<LogLevel, std::string>>& messages) {
        EXPECT_TRUE(connection->IsReadyForCleanup());
        EXPECT_EQ(logger.messages, messages);
        EXPECT_TRUE(peerSeesTheEnd());
    }
};

std::string errorName(const testing::TestParamInfo<int>& info) {
    return "Errno" + std::to_string(info.param);
}

using TcpConnectionTracedReceiveErrorTest = TcpConnectionErrorTest;
using TcpConnectionReceiveErrorTest = TcpConnectionErrorTest;
using TcpConnectionQuietSendErrorTest = TcpConnectionErrorTest;
using TcpConnectionFatalSendErrorTest = TcpConnectionErrorTest;

TEST_P(TcpConnectionTracedReceiveErrorTest, IsTracedAndCloses) {
    faults.Fail(SocketCall::Receive, GetParam());
    tick();
    expectClosedWith(
        {{LogLevelVerbose, "Verbose@TcpConnection::ProcessEvents : recv() : text of error " +
                               std::to_string(GetParam())}});
}

INSTANTIATE_TEST_SUITE_P(List, TcpConnectionTracedReceiveErrorTest,
                         testing::Values(EBADF, EINTR, ENOMEM, ENOTCONN, ECONNREFUSED, ENOTSOCK),
                         errorName);

TEST_P(TcpConnectionReceiveErrorTest, IsWarnedOfAndCloses) {
    faults.Fail(SocketCall::Receive, GetParam());
    tick();
    expectClosedWith(
        {{LogLevelWarning, "Warning@TcpConnection::ProcessEvents : recv() : text of error " +
                               std::to_string(GetParam())}});
}

INSTANTIATE_TEST_SUITE_P(Others, TcpConnectionReceiveErrorTest,
                         testing::Values(ECONNRESET, ETIMEDOUT, EFAULT, EINVAL, EPIPE), errorName);

TEST_P(TcpConnectionQuietSendErrorTest, ClosesWithoutALine) {
    prepareAnswer("abc");
    faults.Fail(SocketCall::Send, GetParam());
    tick();
    expectClosedWith({});
}

INSTANTIATE_TEST_SUITE_P(List, TcpConnectionQuietSendErrorTest,
                         testing::Values(EBADF, EINTR, ENOMEM, ENOTSOCK, ECONNRESET, ENOTCONN,
                                         ECONNREFUSED, EPIPE, ETIMEDOUT, EHOSTUNREACH, EHOSTDOWN,
                                         ENETUNREACH, ENETDOWN, ECONNABORTED),
                         errorName);

TEST_P(TcpConnectionFatalSendErrorTest, IsFatalUnderTheNameOfTheReceiveCall) {
    prepareAnswer("abc");
    faults.Fail(SocketCall::Send, GetParam());
    EXPECT_THROW(tick(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpConnection::ProcessEvents : recv() : text of error " +
                            std::to_string(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Others, TcpConnectionFatalSendErrorTest,
                         testing::Values(EFAULT, EINVAL, EMSGSIZE, ENOBUFS), errorName);

} // namespace
