#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "TcpConnectionTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
    receive(tarnelRequest(fromHex("01")));
    EXPECT_EQ(fed.back(), "01");
}

TEST_F(TcpConnectionTest, CannotFinishAnAnswerWithExactlyFourBytesLeft) {
    prepareAnswer("ABC");
    faults.ShortenSend(3); // The payload has three bytes: nothing is left.
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

// Real back-pressure. Every four bytes of the payload hold their own position.
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

} // namespace
