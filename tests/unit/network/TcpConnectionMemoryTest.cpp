#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "TcpConnectionTest.h"

namespace {

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
        request = tarnelRequest(zeros(kMessage));
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
    // If positions moved through a buffer, this would be 160,000 kB. A sanitizer keeps some freed
    // memory.
    EXPECT_LT(residentKilobytes() - before, 60'000);
}

TEST_F(TcpConnectionMemoryTest, CostsLittleBeforeItsBuffersAreUsed) {
    const long before = residentKilobytes();
    const TcpConnection other(::socket(AF_INET, SOCK_STREAM, 0), &logger, &utilities, &factory);
    // The four buffers are a gigabyte of address space.
    EXPECT_LT(residentKilobytes() - before, 60'000);
}

} // namespace
