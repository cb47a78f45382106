#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network/TcpConnection.h"
#include "support/Bytes.h"
#include "support/Deadline.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/LoopbackListener.h"
#include "support/RecordingLogger.h"
#include "support/SocketFaults.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

Bytes text(const std::string& characters) {
    return {characters.begin(), characters.end()};
}

const Bytes kTarnel = fromHex("11 22 33 44");
const Bytes kVelmar = fromHex("55 66 77 88");

// A connection over loopback whose protocols are fakes: by default they take whatever there is and
// answer nothing.
class TcpConnectionTest : public testing::Test {
protected:
    TcpConnectionTest() {
        factory.make = [this] { return makeProtocols(); };
        connection = std::make_unique<TcpConnection>(accepted, &logger, &utilities, &factory);
    }

    std::map<unsigned int, IProtocol*> makeProtocols() {
        tarnel = new FakeProtocol(0x44332211);
        velmar = new FakeProtocol(0x88776655);
        tarnel->feed = takeAllAndAnswer("");
        velmar->feed = takeAllAndAnswer("");
        return {{0x44332211, tarnel}, {0x88776655, velmar}};
    }

    // Takes all that is buffered and notes it.
    std::function<int(IRingBuffer&, IRingBuffer&)> takeAllAndAnswer(const std::string& answer) {
        return [this, answer](IRingBuffer& in, IRingBuffer& out) {
            fed.push_back(toHex(drain(in)));
            Bytes bytes = text(answer);
            out.WriteByteArray(bytes.data(), bytes.size());
            return 0;
        };
    }

    void tick() { connection->ProcessEvents(); }

    // One receiving tick with `bytes`, none of it before they have arrived.
    void receive(const Bytes& bytes) {
        peer.Send(bytes);
        ASSERT_TRUE(waitReadable(accepted));
        tick();
    }

    // Everything the peer gets until `size` bytes have come.
    Bytes answer(std::size_t size) {
        Bytes got;
        driveUntil(
            [&] {
                got = join({got, peer.Receive(size - got.size())});
            },
            [&] { return got.size() >= size; });
        return got;
    }

    bool peerSeesTheEnd() {
        return driveUntil([&] { peer.Receive(); }, [&] { return peer.SawEnd(); });
    }

    // Received and handled; the answer waits to be sent.
    void prepareAnswer(const std::string& payload) {
        tarnel->feed = takeAllAndAnswer(payload);
        receive(kTarnel);
        logger.messages.clear();
    }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    FakeProtocol* tarnel = nullptr;
    FakeProtocol* velmar = nullptr;
    std::vector<std::string> fed;
    LoopbackListener listener;
    TcpPeer peer{listener.Port()};
    int accepted = listener.Accept();
    std::unique_ptr<TcpConnection> connection;
    SocketFaults faults;
};

// --- Construction and destruction

TEST_F(TcpConnectionTest, MakesItsProtocolsOnce) {
    receive(kTarnel);
    tick();
    receive(kTarnel);
    EXPECT_EQ(factory.connectionsServed, 1);
}

TEST_F(TcpConnectionTest, SwitchesNagleOff) {
    int enabled = 0;
    socklen_t length = sizeof(enabled);
    ASSERT_EQ(::getsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &enabled, &length), 0);
    EXPECT_NE(enabled, 0);
}

TEST_F(TcpConnectionTest, IgnoresThatNagleCannotBeSwitchedOff) {
    faults.Fail(SocketCall::SetOption, EINVAL);
    FakeProtocolFactory none;
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const TcpConnection other(ends[0], &logger, &utilities, &none);
    EXPECT_FALSE(other.IsReadyForCleanup());
    EXPECT_THAT(logger.messages, IsEmpty());
    ::close(ends[1]);
}

TEST_F(TcpConnectionTest, DeletesItsProtocolsInTheOrderOfTheirIdentifications) {
    std::vector<std::string> deleted;
    tarnel->onDelete = [&] { deleted.emplace_back("tarnel"); };
    velmar->onDelete = [&] { deleted.emplace_back("velmar"); };
    connection.reset();
    EXPECT_THAT(deleted, ElementsAre("tarnel", "velmar"));
}

TEST_F(TcpConnectionTest, ClosesASocketThatIsStillOpenWhenItIsDeleted) {
    connection.reset();
    EXPECT_TRUE(peerSeesTheEnd());
    EXPECT_EQ(faults.Count(SocketCall::Close), 1U);
}

TEST_F(TcpConnectionTest, DoesNotCloseItsSocketTwice) {
    faults.Return(SocketCall::Receive, 0);
    tick();
    connection.reset();
    EXPECT_EQ(faults.Count(SocketCall::Close), 1U);
}

// --- Requests and answers

TEST_F(TcpConnectionTest, FramesTheAnswerWithItsLength) {
    tarnel->feed = takeAllAndAnswer("abc");
    receive(kTarnel);
    tick();
    EXPECT_EQ(toHex(answer(7)), "03 00 00 00 61 62 63");
}

TEST_F(TcpConnectionTest, FramesAnEmptyAnswerAsFourZeroBytes) {
    receive(kTarnel);
    tick();
    EXPECT_EQ(toHex(answer(4)), "00 00 00 00");
}

TEST_F(TcpConnectionTest, FramesALongAnswerWithTheLowByteOfItsLengthFirst) {
    tarnel->feed = takeAllAndAnswer(std::string(0x010203, 'x'));
    receive(kTarnel);
    Bytes got;
    ASSERT_TRUE(driveUntil(
        [&] {
            tick();
            got = join({got, peer.Receive()});
        },
        [&] { return got.size() >= 0x010203 + 4; }));
    EXPECT_EQ(toHex(Bytes(got.begin(), got.begin() + 4)), "03 02 01 00");
    EXPECT_EQ(std::count(got.begin() + 4, got.end(), 'x'), 0x010203);
}

TEST_F(TcpConnectionTest, SendsNothingInTheTickThatReceives) {
    prepareAnswer("abc");
    EXPECT_EQ(faults.Count(SocketCall::Send), 0U);
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Send), 1U);
}

TEST_F(TcpConnectionTest, TriesOneReceivePerTick) {
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Receive), 1U);
    receive(kTarnel);
    EXPECT_EQ(faults.Count(SocketCall::Receive), 2U);
}

TEST_F(TcpConnectionTest, HandsTheBytesBehindTheIdentificationToItsProtocol) {
    receive(join({kTarnel, fromHex("01 02 03")}));
    EXPECT_THAT(fed, ElementsAre("01 02 03"));
}

TEST_F(TcpConnectionTest, AnswersEachProtocolsRequestByThatProtocol) {
    tarnel->feed = takeAllAndAnswer("t");
    velmar->feed = takeAllAndAnswer("v");
    receive(join({kTarnel, fromHex("01")}));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 74");
    receive(join({kVelmar, fromHex("02")}));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 76");
    receive(join({kTarnel, fromHex("03")}));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 74");
    EXPECT_THAT(fed, ElementsAre("01", "02", "03"));
}

TEST_F(TcpConnectionTest, TakesAnyResultThatIsNotNegativeAsHandled) {
    for (const int result : {0, 1, 1000}) {
        tarnel->feed = [result](IRingBuffer& in, IRingBuffer& out) {
            drain(in);
            out.WriteUInt8(0x61);
            return result;
        };
        receive(kTarnel);
        tick();
        EXPECT_EQ(toHex(answer(5)), "01 00 00 00 61") << result;
    }
}

TEST_F(TcpConnectionTest, AnswersARequestSplitOverSeveralSegmentsOnceAfterTheLast) {
    int feeds = 0;
    tarnel->feed = [&](IRingBuffer& in, IRingBuffer& out) {
        ++feeds;
        if (in.GetNumReadBytesAvailable() < 3) {
            return -1;
        }
        fed.push_back(toHex(drain(in)));
        out.WriteUInt8(0x61);
        return 3;
    };
    for (const unsigned char byte : fromHex("11 22 33 44 01 02")) {
        receive({byte});
    }
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Send), 0U);
    receive(fromHex("03"));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 61");
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Send), 1U);
    EXPECT_THAT(fed, ElementsAre("01 02 03"));
    EXPECT_EQ(feeds, 4); // With the identification complete, and with each byte after it.
}

TEST_F(TcpConnectionTest, WaitsWhileFewerThanFourBytesAreBuffered) {
    receive(fromHex("11 22 33"));
    EXPECT_THAT(fed, IsEmpty());
    receive(fromHex("44 01"));
    EXPECT_THAT(fed, ElementsAre("01"));
}

TEST_F(TcpConnectionTest, KeepsTheProtocolSelectedWhileItsMessageIsNotComplete) {
    for (const int result : {-1, -1000}) {
        fed.clear();
        tarnel->feed = [result](IRingBuffer&, IRingBuffer&) { return result; };
        receive(join({kTarnel, fromHex("01")}));
        tarnel->feed = takeAllAndAnswer("");
        receive(kVelmar); // Four bytes of the message, though they look like an identification.
        EXPECT_THAT(fed, ElementsAre("01 55 66 77 88")) << result;
        tick();
    }
}

TEST_F(TcpConnectionTest, FeedsNothingInATickWithoutNewBytes) {
    int feeds = 0;
    tarnel->feed = [&](IRingBuffer&, IRingBuffer&) {
        ++feeds;
        return -1;
    };
    receive(kTarnel);
    tick();
    tick();
    EXPECT_EQ(feeds, 1);
}

TEST_F(TcpConnectionTest, DropsAnUnknownIdentificationWithoutAnswerOrWarning) {
    receive(fromHex("DE AD BE EF"));
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Send), 0U);
    EXPECT_FALSE(connection->IsReadyForCleanup());
    // Nothing but the line about the bytes themselves.
    EXPECT_THAT(logger.messages,
                ElementsAre(testing::Pair(LogLevelVerbose,
                                          StartsWith("Verbose@TcpConnection::ProcessEvents : "
                                                     "recv() received num bytes 4  readposptr "))));
    receive(join({kTarnel, fromHex("01")}));
    EXPECT_THAT(fed, ElementsAre("01"));
}

TEST_F(TcpConnectionTest, SkipsUnknownBytesFourPerReceiveUntilAKnownIdentification) {
    receive(join({fromHex("DE AD BE EF CA FE BA BE"), kTarnel}));
    EXPECT_THAT(fed, IsEmpty());
    receive(fromHex("01"));
    EXPECT_THAT(fed, IsEmpty());
    receive(fromHex("02"));
    EXPECT_THAT(fed, ElementsAre("01 02"));
}

TEST_F(TcpConnectionTest, HandlesTheSecondRequestOfASegmentOnlyWhenFurtherBytesArrive) {
    tarnel->feed = [this](IRingBuffer& in, IRingBuffer&) {
        fed.push_back(std::to_string(in.ReadUInt8()));
        return 1;
    };
    receive(join({kTarnel, fromHex("01"), kTarnel, fromHex("02")}));
    tick();
    EXPECT_EQ(toHex(answer(4)), "00 00 00 00");
    tick();
    tick();
    EXPECT_THAT(fed, ElementsAre("1"));
    receive(fromHex("11"));
    EXPECT_THAT(fed, ElementsAre("1", "2"));
    tick();
    EXPECT_EQ(toHex(answer(4)), "00 00 00 00");
    receive(fromHex("22 33 44 03"));
    EXPECT_THAT(fed, ElementsAre("1", "2", "3"));
}

TEST_F(TcpConnectionTest, AsksForAnIdentificationAgainAfterEveryAnswer) {
    receive(join({kTarnel, fromHex("01")}));
    tick();
    receive(fromHex("02 03 04 05"));
    EXPECT_THAT(fed, ElementsAre("01"));
    receive(join({kTarnel, fromHex("06")}));
    EXPECT_THAT(fed, ElementsAre("01", "06"));
}

TEST_F(TcpConnectionTest, ReceivesNothingUntilTheAnswerIsSent) {
    prepareAnswer("abc");
    const std::size_t receives = faults.Count(SocketCall::Receive);
    faults.Fail(SocketCall::Send, EAGAIN);
    faults.Fail(SocketCall::Send, EAGAIN);
    peer.Send(join({kTarnel, fromHex("02")}));
    ASSERT_TRUE(waitReadable(accepted));
    tick();
    tick();
    tick();
    EXPECT_EQ(faults.Count(SocketCall::Receive), receives);
    EXPECT_EQ(toHex(answer(7)), "03 00 00 00 61 62 63");
    tick();
    EXPECT_THAT(fed, ElementsAre("", "02"));
}

TEST_F(TcpConnectionTest, AnswersAClientThatHasClosedItsOwnDirection) {
    tarnel->feed = takeAllAndAnswer("abc");
    peer.Send(kTarnel);
    peer.HalfClose();
    ASSERT_TRUE(waitReadable(accepted));
    tick();
    tick();
    EXPECT_EQ(toHex(answer(7)), "03 00 00 00 61 62 63");
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_TRUE(peerSeesTheEnd());
}

// --- Trace lines

TEST_F(TcpConnectionTest, TracesTheNumberOfBytesAndTheReadPosition) {
    const unsigned char* position = nullptr;
    tarnel->feed = [&](IRingBuffer& in, IRingBuffer&) {
        position = in.GetReadPosAddress();
        drain(in);
        return 0;
    };
    receive(join({kTarnel, fromHex("01 02 03")}));
    const auto beforeTheIdentification = reinterpret_cast<std::uintptr_t>(position) - 4;
    EXPECT_THAT(logger.At(LogLevelVerbose),
                ElementsAre("Verbose@TcpConnection::ProcessEvents : recv() received num bytes 7  "
                            "readposptr " +
                            std::to_string(beforeTheIdentification)));
}

TEST_F(TcpConnectionTest, TracesAnIncompleteMessage) {
    const unsigned char* position = nullptr;
    tarnel->feed = [&](IRingBuffer& in, IRingBuffer&) {
        position = in.GetReadPosAddress();
        return -1;
    };
    receive(kTarnel);
    ASSERT_EQ(logger.messages.size(), 2U);
    EXPECT_EQ(logger.messages[1].second,
              "Verbose@TcpConnection::ProcessEvents : recv() incomplete packet readposptr " +
                  std::to_string(reinterpret_cast<std::uintptr_t>(position)));
    EXPECT_EQ(logger.messages[1].first, LogLevelVerbose);
}

TEST_F(TcpConnectionTest, TracesEverySend) {
    prepareAnswer("abc");
    tick();
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose,
                                      "Verbose@TcpConnection::ProcessEvents : send() sent data")));
}

TEST_F(TcpConnectionTest, IsSilentWhenThereIsNothingToReceive) {
    tick();
    EXPECT_THAT(logger.messages, IsEmpty());
    EXPECT_FALSE(connection->IsReadyForCleanup());
}

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

// Sent into a connection that the client has closed and reset, an answer raises SIGPIPE.
TEST_F(TcpConnectionTest, OutlivesAClientThatSendsTwoRequestsAndVanishes) {
    tarnel->feed = takeAllAndAnswer("abc");
    receive(join({kTarnel, fromHex("01")}));
    peer.Send(join({kTarnel, fromHex("02")}));
    peer.Close();
    tick(); // The first answer provokes the reset.
    ASSERT_TRUE(waitBroken(accepted));
    tick(); // The second request has arrived before it.
    ASSERT_THAT(fed, ElementsAre("01", "02"));
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.At(LogLevelWarning), IsEmpty());
    EXPECT_THAT(logger.At(LogLevelError), IsEmpty());
}

// The reset falls right before the send, after all that could be asked of the socket first.
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

TEST_F(TcpConnectionOnOddSocketTest, TracesThatTheDescriptorIsNoSocket) {
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

// --- Every error of the two lists

std::string errorName(const testing::TestParamInfo<int>& info) {
    return "Errno" + std::to_string(info.param);
}

class TcpConnectionTracedReceiveErrorTest : public TcpConnectionTest,
                                            public testing::WithParamInterface<int> {};

TEST_P(TcpConnectionTracedReceiveErrorTest, IsTracedAndCloses) {
    faults.Fail(SocketCall::Receive, GetParam());
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelVerbose,
                                      "Verbose@TcpConnection::ProcessEvents : recv() : text of "
                                      "error " +
                                          std::to_string(GetParam()))));
    EXPECT_TRUE(peerSeesTheEnd());
}

INSTANTIATE_TEST_SUITE_P(List, TcpConnectionTracedReceiveErrorTest,
                         testing::Values(EBADF, EINTR, ENOMEM, ENOTCONN, ECONNREFUSED, ENOTSOCK),
                         errorName);

class TcpConnectionReceiveErrorTest : public TcpConnectionTest,
                                      public testing::WithParamInterface<int> {};

TEST_P(TcpConnectionReceiveErrorTest, IsWarnedOfAndCloses) {
    faults.Fail(SocketCall::Receive, GetParam());
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelWarning,
                                      "Warning@TcpConnection::ProcessEvents : recv() : text of "
                                      "error " +
                                          std::to_string(GetParam()))));
    EXPECT_TRUE(peerSeesTheEnd());
}

INSTANTIATE_TEST_SUITE_P(Others, TcpConnectionReceiveErrorTest,
                         testing::Values(ECONNRESET, ETIMEDOUT, EFAULT, EINVAL, EPIPE), errorName);

class TcpConnectionQuietSendErrorTest : public TcpConnectionTest,
                                        public testing::WithParamInterface<int> {};

TEST_P(TcpConnectionQuietSendErrorTest, ClosesWithoutALine) {
    prepareAnswer("abc");
    faults.Fail(SocketCall::Send, GetParam());
    tick();
    EXPECT_TRUE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.messages, IsEmpty());
    EXPECT_TRUE(peerSeesTheEnd());
}

INSTANTIATE_TEST_SUITE_P(List, TcpConnectionQuietSendErrorTest,
                         testing::Values(EBADF, EINTR, ENOMEM, ENOTSOCK, ECONNRESET, ENOTCONN,
                                         ECONNREFUSED, EPIPE, ETIMEDOUT, EHOSTUNREACH, EHOSTDOWN,
                                         ENETUNREACH, ENETDOWN, ECONNABORTED),
                         errorName);

class TcpConnectionFatalSendErrorTest : public TcpConnectionTest,
                                        public testing::WithParamInterface<int> {};

TEST_P(TcpConnectionFatalSendErrorTest, IsFatalUnderTheNameOfTheReceiveCall) {
    prepareAnswer("abc");
    faults.Fail(SocketCall::Send, GetParam());
    EXPECT_THROW(tick(), FatalReport);
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(
                    LogLevelError, "Error@TcpConnection::ProcessEvents : recv() : text of error " +
                                       std::to_string(GetParam()))));
}

INSTANTIATE_TEST_SUITE_P(Others, TcpConnectionFatalSendErrorTest,
                         testing::Values(EFAULT, EINVAL, EMSGSIZE, ENOBUFS), errorName);

// --- Sending

TEST_F(TcpConnectionTest, TriesAgainWhenSendWouldBlock) {
    prepareAnswer("abc");
    faults.Fail(SocketCall::Send, EAGAIN);
    tick();
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelVerbose,
                              "Verbose@TcpConnection::ProcessEvents : send() would block.")));
    EXPECT_FALSE(connection->IsReadyForCleanup());
    tick();
    EXPECT_EQ(toHex(answer(7)), "03 00 00 00 61 62 63");
}

TEST_F(TcpConnectionTest, TriesAgainAfterASendOfNothing) {
    prepareAnswer("abc");
    faults.Return(SocketCall::Send, 0);
    tick();
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelWarning,
                              "Warning@TcpConnection::ProcessEvents : send() : socket == 0")));
    EXPECT_FALSE(connection->IsReadyForCleanup());
    tick();
    EXPECT_EQ(toHex(answer(7)), "03 00 00 00 61 62 63");
}

TEST_F(TcpConnectionTest, WarnsOfAnyOtherNegativeResultOfSendAndCloses) {
    prepareAnswer("abc");
    faults.Return(SocketCall::Send, -2);
    tick();
    EXPECT_THAT(
        logger.messages,
        ElementsAre(std::pair(LogLevelWarning,
                              "Warning@TcpConnection::ProcessEvents : send() : result < 0 (-2)")));
    EXPECT_TRUE(connection->IsReadyForCleanup());
}

TEST_F(TcpConnectionTest, ReportsThatMoreWasSentThanGiven) {
    prepareAnswer("abc");
    faults.Return(SocketCall::Send, 8);
    EXPECT_THROW(tick(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpConnection::ProcessEvents : send() : result > "
                            "numBytesToWrite : result:8 numBytesToWrite:7"));
}

TEST_F(TcpConnectionTest, SkipsFourBytesOfThePayloadAfterAPartialSend) {
    prepareAnswer("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    faults.ShortenSend(10); // The header and A to F.
    tick();
    EXPECT_EQ(answer(10), join({fromHex("1A 00 00 00"), text("ABCDEF")}));
    tick();
    EXPECT_EQ(answer(16), text("KLMNOPQRSTUVWXYZ"));
    EXPECT_THAT(faults.SendResults(), ElementsAre(10, 16));
    EXPECT_THAT(logger.At(LogLevelVerbose),
                ElementsAre("Verbose@TcpConnection::ProcessEvents : send() sent data",
                            "Verbose@TcpConnection::ProcessEvents : send() sent data"));
}

TEST_F(TcpConnectionTest, CountsEveryPartialSendFromTheStartOfThePayload) {
    prepareAnswer("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    faults.ShortenSend(10);
    tick();
    EXPECT_EQ(answer(10), join({fromHex("1A 00 00 00"), text("ABCDEF")}));
    faults.ShortenSend(3);
    tick();
    EXPECT_EQ(answer(3), text("KLM"));
    tick();
    EXPECT_EQ(answer(23), text("DEFGHIJKLMNOPQRSTUVWXYZ"));
    receive(join({kTarnel, fromHex("01")}));
    EXPECT_EQ(fed.back(), "01");
}

TEST_F(TcpConnectionTest, CannotFinishAnAnswerOfWhichExactlyFourBytesWereLeft) {
    prepareAnswer("ABC");
    faults.ShortenSend(3); // Three bytes into the payload: nothing of it is left.
    tick();
    EXPECT_EQ(toHex(answer(3)), "03 00 00");
    tick();
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@TcpConnection::ProcessEvents : send() : socket == 0"));
    EXPECT_FALSE(connection->IsReadyForCleanup());
}

TEST_F(TcpConnectionTest, IsFatalWhenAPartialSendLeavesFewerThanFourBytes) {
    prepareAnswer("ABC");
    faults.ShortenSend(4);
    EXPECT_THROW(tick(), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@RingBuffer::MoveReadPosForward : GetNumReadBytesAvailable() < "
                            "amount"));
}

// Real back-pressure: a payload in which every four bytes hold their own position.
TEST_F(TcpConnectionTest, SendsTheRestToASlowReaderByTheSameRule) {
    constexpr std::uint32_t kWords = 2'000'000;
    constexpr std::size_t kPayload = 4UL * kWords;
    const int small = 4096;
    ASSERT_EQ(::setsockopt(accepted, SOL_SOCKET, SO_SNDBUF, &small, sizeof(small)), 0);
    tarnel->feed = [](IRingBuffer& in, IRingBuffer& out) {
        drain(in);
        for (std::uint32_t i = 0; i < kWords; ++i) {
            out.WriteUInt32(i);
        }
        return 0;
    };
    receive(kTarnel);
    tick();
    ASSERT_EQ(faults.SendResults().size(), 1U);
    const auto first = static_cast<std::size_t>(faults.SendResults()[0]);
    ASSERT_GT(first, 8U);
    ASSERT_LT(first, kPayload);
    const Bytes head = answer(first);
    EXPECT_EQ(toHex(Bytes(head.begin(), head.begin() + 12)), "00 12 7A 00 00 00 00 00 01 00 00 00");
    tick();
    const auto second = static_cast<std::size_t>(faults.SendResults()[1]);
    ASSERT_GT(second, 8U);
    const Bytes rest = answer(second);
    const auto at = [](std::size_t position) {
        return u32(static_cast<std::uint32_t>(position / 4))[position % 4];
    };
    for (std::size_t i = 0; i < second; ++i) {
        ASSERT_EQ(rest[i], at(first + i)) << i;
    }
}

TEST_F(TcpConnectionTest, WouldBlockWhileAReaderTakesNothing) {
    const int small = 4096;
    ASSERT_EQ(::setsockopt(accepted, SOL_SOCKET, SO_SNDBUF, &small, sizeof(small)), 0);
    prepareAnswer(std::string(16'000'000, 'x'));
    EXPECT_TRUE(driveUntil([this] { tick(); },
                           [this] {
                               return logger.messages.size() > 1 &&
                                      logger.messages.back().second ==
                                          "Verbose@TcpConnection::ProcessEvents : send() would "
                                          "block.";
                           }));
    EXPECT_FALSE(connection->IsReadyForCleanup());
    EXPECT_THAT(logger.At(LogLevelWarning), IsEmpty());
}

// --- Memory

class SilentLogger final : public ILoggingService {
public:
    void SetLogLevel(LogLevel) override {}
    void Log(LogLevel level, std::string message) override {
        if (level != LogLevelVerbose) {
            throw FatalReport(message);
        }
    }
};

long residentKilobytes() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

class TcpConnectionMemoryTest : public testing::Test {
protected:
    static constexpr std::size_t kMessage = 8192;

    TcpConnectionMemoryTest() {
        factory.make = [this] {
            protocol = new FakeProtocol(0x44332211);
            protocol->feed = [this](IRingBuffer& in, IRingBuffer& out) { return echo(in, out); };
            return std::map<unsigned int, IProtocol*>{{0x44332211, protocol}};
        };
        connection = std::make_unique<TcpConnection>(accepted, &logger, &utilities, &factory);
        request = join({kTarnel, zeros(kMessage)});
    }

    int echo(IRingBuffer& in, IRingBuffer& out) {
        if (in.GetNumReadBytesAvailable() < kMessage) {
            return -1;
        }
        readPositions = {in.GetReadPosAddress(), out.GetReadPosAddress()};
        in.ReadByteArray(message.data(), kMessage);
        out.WriteByteArray(message.data(), kMessage);
        return 1;
    }

    void exchange() {
        peer.Send(request);
        std::size_t received = 0;
        ASSERT_TRUE(driveUntil(
            [&] {
                connection->ProcessEvents();
                received += peer.ReceiveInto(answer.data(), answer.size());
            },
            [&] { return received == 4 + kMessage; }));
    }

    SilentLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    FakeProtocol* protocol = nullptr;
    LoopbackListener listener;
    TcpPeer peer{listener.Port()};
    int accepted = listener.Accept();
    std::unique_ptr<TcpConnection> connection;
    Bytes request;
    std::array<unsigned char, kMessage> message{};
    std::array<unsigned char, 4 + kMessage> answer{};
    std::array<const unsigned char*, 2> readPositions{};
};

TEST_F(TcpConnectionMemoryTest, StartsOverInBothBuffersWithEveryExchange) {
    exchange();
    const auto first = readPositions;
    for (int i = 0; i < 10; ++i) {
        exchange();
        EXPECT_EQ(readPositions, first);
    }
}

TEST_F(TcpConnectionMemoryTest, StaysFlatOverManyExchanges) {
    for (int i = 0; i < 1000; ++i) {
        exchange();
    }
    const long before = residentKilobytes();
    for (int i = 0; i < 20'000; ++i) {
        exchange();
    }
    // Moving through either buffer would add 160,000 kB. A sanitizer keeps some freed memory.
    EXPECT_LT(residentKilobytes() - before, 60'000);
}

TEST_F(TcpConnectionMemoryTest, CostsLittleBeforeItsBuffersAreUsed) {
    const long before = residentKilobytes();
    const TcpConnection other(::socket(AF_INET, SOCK_STREAM, 0), &logger, &utilities, &factory);
    // The four buffers are a gigabyte of address space.
    EXPECT_LT(residentKilobytes() - before, 60'000);
}

} // namespace
