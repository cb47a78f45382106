#include <sys/socket.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "e2e/OtherMachine.h"
#include "support/Deadline.h"

namespace {

enum Type { kFloatArray = 4 };

// Containers usually deny namespaces to their users, and many have no /dev/net/tun. Anything else
// that goes wrong is a failure of the test.
bool isForbidden(int error) {
    return error == EPERM || error == EACCES || error == ENOENT || error == ENODEV;
}

// A panel on another machine loses its network in the middle of an answer. The plugin learns of it
// some time later, from the result of a send.
class LostNetworkTest : public EndToEndTest {
protected:
    void SetUp() override {
        try {
            machine = std::make_unique<OtherMachine>();
        } catch (const std::system_error& error) {
            if (!isForbidden(error.code().value())) {
                throw;
            }
            GTEST_SKIP() << "needs network namespaces and TUN devices, which this system does not "
                            "permit: "
                         << error.what();
        }
        // The kernel gives up after a second instead of a quarter of an hour.
        ASSERT_TRUE(std::ofstream("/proc/sys/net/ipv4/tcp_retries2") << 1 << std::flush);
        startSimulator();
        bystander = std::make_unique<TestClient>();
        ASSERT_EQ(bystander->Exchange(*simulator, version), versionAnswer);
        filesBefore = simulator->AskNumber("fds");
    }

    void receiveTheFirstPartOfAnAnswer() {
        const int client = machine->Connect();
        const Bytes request = tarnelRequest(definitionsMessage(
            {}, {{.id = 1, .name = "test/floats", .type = kFloatArray, .count = 4'000'000}}));
        ASSERT_EQ(::send(client, request.data(), request.size(), 0),
                  static_cast<ssize_t>(request.size()));
        std::vector<unsigned char> part(10'000);
        ASSERT_TRUE(
            driveUntil([&] { simulator->Step(); },
                       [&] { return ::recv(client, part.data(), part.size(), MSG_DONTWAIT) > 0; }));
        ASSERT_GT(simulator->AskNumber("fds"), filesBefore);
    }

    void expectQuietEnd() {
        EXPECT_TRUE(driveUntil([&] { simulator->Step(); },
                               [&] { return simulator->AskNumber("fds") == filesBefore; }));
        EXPECT_EQ(bystander->Exchange(*simulator, version), versionAnswer);
        EXPECT_EQ(simulator->LogText(), "");
    }

    const Bytes version = tarnelRequest(versionMessage());
    const Bytes versionAnswer = fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    std::unique_ptr<OtherMachine> machine;
    std::unique_ptr<TestClient> bystander;
    long filesBefore = 0;
};

TEST_F(LostNetworkTest, ClosesTheConnectionWhenPacketsAreLost) {
    receiveTheFirstPartOfAnAnswer();
    machine->LoseLink();
    expectQuietEnd();
}

TEST_F(LostNetworkTest, ClosesTheConnectionWhenTheClientIsUnreachable) {
    receiveTheFirstPartOfAnAnswer();
    machine->TakeInterfaceDown();
    expectQuietEnd();
}

// Messages from a router on the way. The kernel keeps the last one and makes it the connection's
// error when it gives up.
class DiscardedPacketsTest : public LostNetworkTest,
                             public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(DiscardedPacketsTest, CloseTheConnectionWhateverTheIcmpMessage) {
    const auto [type, code] = GetParam();
    receiveTheFirstPartOfAnAnswer();
    machine->DiscardPackets(static_cast<unsigned char>(type), static_cast<unsigned char>(code));
    expectQuietEnd();
}

INSTANTIATE_TEST_SUITE_P(Icmp, DiscardedPacketsTest,
                         testing::Values(std::pair(3, 1),   // host unreachable
                                         std::pair(3, 2),   // protocol unreachable
                                         std::pair(12, 0)), // parameter problem
                         [](const auto& row) {
                             return "Type" + std::to_string(row.param.first) + "Code" +
                                    std::to_string(row.param.second);
                         });

} // namespace
