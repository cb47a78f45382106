#include "TcpConnectionTest.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

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

TEST_F(TcpConnectionTest, HandsTheBytesAfterTheIdentificationToItsProtocol) {
    receive(tarnelRequest(fromHex("01 02 03")));
    EXPECT_THAT(fed, ElementsAre("01 02 03"));
}

TEST_F(TcpConnectionTest, AnswersEachProtocolsRequestByThatProtocol) {
    tarnel->feed = takeAllAndAnswer("t");
    velmar->feed = takeAllAndAnswer("v");
    receive(tarnelRequest(fromHex("01")));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 74");
    receive(velmarRequest({fromHex("02")}));
    tick();
    EXPECT_EQ(toHex(answer(5)), "01 00 00 00 76");
    receive(tarnelRequest(fromHex("03")));
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
        receive(tarnelRequest(fromHex("01")));
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
    receive(tarnelRequest(fromHex("01")));
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
    receive(tarnelRequest(fromHex("01")));
    tick();
    receive(fromHex("02 03 04 05"));
    EXPECT_THAT(fed, ElementsAre("01"));
    receive(tarnelRequest(fromHex("06")));
    EXPECT_THAT(fed, ElementsAre("01", "06"));
}

TEST_F(TcpConnectionTest, ReceivesNothingUntilTheAnswerIsSent) {
    prepareAnswer("abc");
    const std::size_t receives = faults.Count(SocketCall::Receive);
    faults.Fail(SocketCall::Send, EAGAIN);
    faults.Fail(SocketCall::Send, EAGAIN);
    peer.Send(tarnelRequest(fromHex("02")));
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
    receive(tarnelRequest(fromHex("01 02 03")));
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

} // namespace
