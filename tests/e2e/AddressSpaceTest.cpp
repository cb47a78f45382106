#include <sys/resource.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "support/AddressSpaceLimit.h"
#include "support/Text.h"

namespace {

enum Type { kFloatArray = 4 };

constexpr std::size_t kClients = 20;
constexpr long kKilobytesPerMebibyte = 1024;

// A connection spans a gigabyte of address space. That must not use memory, or disturb other users
// of the process.
class AddressSpaceTest : public EndToEndTest {
protected:
    AddressSpaceTest() {
        startSimulator();
        simulator->Step(2);
    }

    std::string processFile(const char* file) const {
        return contentOf("/proc/" + std::to_string(simulator->Pid()) + "/" + file);
    }

    rlim_t addressSpace() const {
        return std::stoul(processFile("statm")) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
    }

    // As `ulimit -v` before the start, but while the simulator flies.
    void limitAddressSpace(rlim_t bytes) {
        const rlimit limit{bytes, RLIM_INFINITY};
        ASSERT_EQ(::prlimit(simulator->Pid(), RLIMIT_AS, &limit, nullptr), 0);
    }

    void expectServed(TestClient& client) {
        EXPECT_EQ(toHex(client.Exchange(*simulator, tarnelRequest(versionMessage()))),
                  "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    }
};

TEST_F(AddressSpaceTest, RefusesAClientWhenAddressSpaceIsShortAndServesTheOthers) {
    TestClient earlier;
    expectServed(earlier);
    const long filesBefore = simulator->AskNumber("fds");
    limitAddressSpace(addressSpace() + 900 * kKilobytesPerMebibyte * 1024);
    for (std::size_t attempt = 1; attempt <= 3; ++attempt) {
        TestClient refused;
        EXPECT_TRUE(refused.IsClosedByServer(*simulator));
        EXPECT_EQ(toHex(refused.Received()), "");
        ASSERT_EQ(simulator->LogLines().size(), attempt);
        EXPECT_EQ(simulator->LastLogMessage(),
                  "Warning@TcpServer::ProcessEvents : TcpConnection() : std::bad_alloc");
        expectServed(earlier);
    }
    EXPECT_EQ(simulator->AskNumber("fds"), filesBefore);
    limitAddressSpace(RLIM_INFINITY);
    TestClient later;
    expectServed(later);
    EXPECT_EQ(simulator->LogLines().size(), 3U);
}

TEST_F(AddressSpaceTest, HoldsLessThanTwoMebibytesForEachOfTwentyConnections) {
    const Bytes poll = tarnelRequest(dataMessage({}));
    const std::size_t answerSize = 8 + 4000 + 12;
    const long alone = simulator->AskNumber("rss");
    std::vector<std::unique_ptr<TestClient>> clients;
    for (std::size_t i = 0; i < kClients; ++i) {
        clients.push_back(std::make_unique<TestClient>());
        clients.back()->Exchange(
            *simulator,
            tarnelRequest(definitionsMessage(
                {}, {{.id = 1, .name = "test/many_floats", .type = kFloatArray, .count = 1000}})));
    }
    const auto exchange = [&](int times) {
        for (int i = 0; i < times; ++i) {
            for (const auto& client : clients) {
                client->Send(poll);
            }
            simulator->Step(3);
            for (const auto& client : clients) {
                client->Received();
                ASSERT_EQ(client->Answer(*simulator).size(), answerSize);
            }
        }
    };
    // The first megabyte of each.
    exchange(250);
    const long early = simulator->AskNumber("rss");
    exchange(4750);
    const long late = simulator->AskNumber("rss");
    std::cout << "rss " << alone << " kB alone, " << early << " kB after 250 exchanges of each of "
              << kClients << " clients, " << late << " kB after 5000\n";
    EXPECT_LT(late - early, 1 * kKilobytesPerMebibyte);
    EXPECT_LT(late - alone, static_cast<long>(kClients) * 2 * kKilobytesPerMebibyte);
}

// The simulator starts with little.
class ScarceMemoryTest : public EndToEndTest {};

TEST_F(ScarceMemoryTest, IgnoresALineOfTheConfigurationFileThatAsksForMoreThanThereIs) {
    directory.Write("Resources/plugins/xplaneorvane_datarefs.cfg",
                    "kyr/x int_array 2147483647\nkyr/next int_array 3\n");
    {
        const AddressSpaceLimit limit(4096 * kKilobytesPerMebibyte * 1024);
        startSimulator();
    }
    EXPECT_TRUE(simulator->Ask("get kyr/x").starts_with("error: "));
    EXPECT_EQ(simulator->Get("kyr/next"), "0,0,0");
    EXPECT_EQ(simulator->Get("kyr/external_forcescalefactor_value"), "0,0,0,0");
    TestClient client;
    EXPECT_EQ(toHex(client.Exchange(*simulator, tarnelRequest(versionMessage()))),
              "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    EXPECT_EQ(simulator->LogText(), "");
}

// One mapping from smaps: its size and the kernel's flags.
struct Mapping {
    long kilobytes = 0;
    std::string flags;
};

std::vector<Mapping> mappingsIn(const std::string& smaps) {
    std::vector<Mapping> mappings;
    for (const std::string& line : linesOf(smaps)) {
        if (line.starts_with("Size:")) {
            mappings.push_back({std::stol(line.substr(5)), ""});
        } else if (line.starts_with("VmFlags:") && !mappings.empty()) {
            mappings.back().flags = line.substr(8) + " ";
        }
    }
    return mappings;
}

// The kernel treats adjacent reservations as one mapping. If it had promised memory for them, it
// would refuse to fork the process as soon as one mapping is larger than the machine's memory.
TEST_F(AddressSpaceTest, ReservesWithoutAPromiseOfMemoryAndWithoutHugePages) {
    TestClient first;
    TestClient second;
    expectServed(first);
    expectServed(second);
    long reserved = 0;
    for (const Mapping& mapping : mappingsIn(processFile("smaps"))) {
        if (mapping.kilobytes > 100 * kKilobytesPerMebibyte) {
            reserved += mapping.kilobytes;
            EXPECT_NE(mapping.flags.find(" nr "), std::string::npos) << mapping.flags;
            EXPECT_NE(mapping.flags.find(" nh "), std::string::npos) << mapping.flags;
        }
    }
    EXPECT_GT(reserved, 2000 * kKilobytesPerMebibyte);
}

} // namespace
