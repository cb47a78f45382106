#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <deque>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "support/Deadline.h"

namespace {

enum Type { kInt = 1, kFloatArray = 4 };

// A flight with one well-behaved client, whose exchanges a storm of others must not touch.
class StormTest : public EndToEndTest {
protected:
    StormTest() {
        startSimulator();
        bystander = std::make_unique<TestClient>();
        const Bytes defined = bystander->Exchange(
            *simulator,
            tarnel(definitionsMessage({{.action = 1, .targetType = kInt, .target = "test/int"}},
                                      {{.id = 1, .name = "test/int", .type = kInt}})));
        EXPECT_EQ(defined, answerWith(0));
        filesBefore = simulator->AskNumber("fds");
    }

    // What the plugin's longest frame took; a figure to read, since it is the machine's as well.
    void TearDown() override {
        const long worst = simulator->AskNumber("worst");
        RecordProperty("worst_frame_us", std::to_string(worst));
        std::cout << "worst frame: " << worst << " us in " << simulator->AskNumber("frames")
                  << " frames\n";
    }

    // A value goes in, and the one of the exchange before comes out.
    void expectBystanderUnharmed() {
        const Bytes answer = bystander->Exchange(*simulator, tarnel(dataMessage({{1, value + 1}})));
        ASSERT_EQ(answer, answerWith(value));
        ++value;
        ASSERT_EQ(simulator->Get("test/int"), std::to_string(value));
    }

    // All that the storm opened is closed, and newcomers are served.
    void expectCalm() {
        EXPECT_TRUE(driveUntil([&] { simulator->Step(); },
                               [&] { return simulator->AskNumber("fds") == filesBefore; }))
            << simulator->AskNumber("fds") << " files, " << filesBefore << " before";
        expectBystanderUnharmed();
        TestClient newcomer;
        EXPECT_EQ(newcomer.Exchange(*simulator, version), versionAnswer);
    }

    void expectNothingLoggedBut(const std::string& message) {
        for (const std::string& line : simulator->LogLines()) {
            ASSERT_EQ(messageOf(line), message);
        }
    }

    static Bytes answerWith(std::int32_t reported) {
        return join({fromHex("01 00 00 00 04 00 00 00"), i32(reported), trailer(kAircraftOne)});
    }

    const Bytes version = tarnel(versionMessage());
    const Bytes versionAnswer = fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    // Its answer is more than the kernel takes at once.
    const Bytes hugeRequest = tarnel(definitionsMessage(
        {}, {{.id = 1, .name = "test/floats", .type = kFloatArray, .count = 1'000'000}}));
    static constexpr const char* kReset =
        "Warning@TcpConnection::ProcessEvents : recv() : Unknown Socket Error Code 104";

    std::unique_ptr<TestClient> bystander;
    std::int32_t value = 0;
    long filesBefore = 0;
    std::mt19937 random{20'240'305};
};

TEST_F(StormTest, ServesOnWhile500ClientsComeAndGo) {
    for (int i = 0; i < 500; ++i) {
        TestClient client;
        if (i % 2 == 0) {
            ASSERT_EQ(client.Exchange(*simulator, version), versionAnswer);
        } else {
            simulator->Step();
        }
        expectBystanderUnharmed();
    }
    expectCalm();
    expectNothingLoggedBut("");
}

// A client that does not wait for its connection but tries again.
class EagerClient final {
public:
    EagerClient() { connect(); }
    ~EagerClient() { ::close(socket); }
    EagerClient(const EagerClient&) = delete;
    EagerClient& operator=(const EagerClient&) = delete;

    // Sends the request once it can, and takes in what comes back.
    void Advance(const Bytes& request) {
        pollfd writable{socket, POLLOUT, 0};
        if (!isSent && ::poll(&writable, 1, 0) != 1) {
            ::close(socket);
            connect();
            return;
        }
        if (!isSent) {
            isSent = ::send(socket, request.data(), request.size(), MSG_NOSIGNAL) ==
                     static_cast<ssize_t>(request.size());
        }
        unsigned char buffer[64];
        const ssize_t count = ::recv(socket, buffer, sizeof(buffer), 0);
        if (count > 0) {
            received.insert(received.end(), buffer, buffer + count);
        }
    }

    const Bytes& Received() const { return received; }

private:
    void connect() {
        socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(48000);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    }

    int socket = -1;
    bool isSent = false;
    Bytes received;
};

// Few of them fit into the queue of the listening socket. Left to their kernels' own retries, after
// 1, 3, 7 and more seconds, some would wait for half a minute.
TEST_F(StormTest, ServesFiftyClientsThatConnectAtOnce) {
    std::deque<EagerClient> clients(50);
    const Bytes whole = join({fromHex("0C 00 00 00"), versionAnswer});
    std::size_t served = 0;
    EXPECT_TRUE(driveUntil(
        [&] {
            expectBystanderUnharmed();
            served = 0;
            for (EagerClient& client : clients) {
                client.Advance(version);
                served += client.Received() == whole ? 1U : 0U;
            }
        },
        [&] { return served == clients.size(); }))
        << served << " clients were served";
    clients.clear();
    expectCalm();
    expectNothingLoggedBut("");
}

TEST_F(StormTest, SurvivesClientsThatResetHalfCloseStopReadingOrVanish) {
    std::deque<std::unique_ptr<TestClient>> present;
    for (int i = 0; i < 300; ++i) {
        // With a small receive buffer an answer stays half sent.
        TestClient& client = *present.emplace_back(std::make_unique<TestClient>(4096));
        switch (random() % 5) {
        case 0:
            client.Send(version);
            client.CloseWithReset();
            break;
        case 1:
            client.Send(version);
            client.HalfClose();
            break;
        case 2:
            client.Send(hugeRequest);
            break;
        case 3:
            client.Send(version);
            simulator->Step();
            client.Send(version);
            client.Close();
            break;
        default:
            client.Send(join({version, version}));
            client.Close();
            break;
        }
        simulator->Step(static_cast<int>(random() % 4));
        expectBystanderUnharmed();
        if (present.size() > 10) {
            if (random() % 2 == 0) {
                present.front()->CloseWithReset();
            }
            present.pop_front();
        }
    }
    present.clear();
    expectCalm();
    expectNothingLoggedBut(kReset);
}

TEST_F(StormTest, SurvivesClientsThatSendAByteAtATime) {
    std::vector<std::unique_ptr<TestClient>> clients;
    for (int i = 0; i < 20; ++i) {
        clients.push_back(std::make_unique<TestClient>());
        simulator->Step();
    }
    for (const unsigned char byte : tarnel(definitionsMessage({}, {{.id = 1}}))) {
        for (const auto& client : clients) {
            client->Send({byte});
        }
        expectBystanderUnharmed();
    }
    // The identification alone is a request, for the outputs.
    for (const auto& client : clients) {
        const Bytes answer = client->Answer(*simulator);
        EXPECT_EQ(answer, trailer(kAircraftOne));
    }
    clients.clear();
    expectCalm();
    expectNothingLoggedBut("");
}

// Threads that connect, ask, close their direction and reset, until so many connections were made.
// Such a reset turns a send of the plugin's into a signal instead of an error.
class ResettingClients final {
public:
    ResettingClients(Bytes request, int connections)
        : request(std::move(request)), connectionsLeft(connections) {
        for (unsigned int seed = 0; seed < kThreads; ++seed) {
            threads.emplace_back([this, seed] {
                run(seed);
                --threadsRunning;
            });
        }
    }
    ~ResettingClients() {
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    ResettingClients(const ResettingClients&) = delete;
    ResettingClients& operator=(const ResettingClients&) = delete;

    bool AreDone() const { return threadsRunning == 0; }

private:
    // More would not fit into the queue of the listening socket, and wait for their kernel's retry.
    static constexpr unsigned int kThreads = 3;

    void run(unsigned int seed) {
        std::mt19937 random(seed);
        try {
            while (connectionsLeft-- > 0) {
                TestClient client;
                client.Send(request);
                client.HalfClose();
                // Anywhere in the frames that the plugin takes to answer.
                std::this_thread::sleep_for(std::chrono::microseconds(random() % 800));
                client.CloseWithReset();
            }
        } catch (const std::system_error&) {
            // The simulator has gone, as the test sees for itself.
            connectionsLeft = 0;
        }
    }

    const Bytes request;
    std::atomic<int> connectionsLeft;
    std::atomic<unsigned int> threadsRunning = kThreads;
    std::vector<std::thread> threads;
};

TEST_F(StormTest, SurvivesTenThousandClientsThatResetWhileTheyAreAnswered) {
    {
        const ResettingClients clients(version, 10'000);
        while (!clients.AreDone()) {
            simulator->Step(10);
            expectBystanderUnharmed();
        }
    }
    expectCalm();
    expectNothingLoggedBut(kReset);
}

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// A first record of TLS, and as many of its first bytes as matter here.
const Bytes kTlsHello =
    join({fromHex("16 03 01 00 C8 01 00 00 C4 03 03"), Bytes(32, 0x5A), fromHex("20"),
          Bytes(32, 0xA5), fromHex("00 08 13 02 13 03 13 01 00 FF 01 00 00 73"), Bytes(115, 0x0B)});

TEST_F(StormTest, AnswersNothingToOtherProtocols) {
    std::vector<Bytes> strangers{
        bytesOf("GET / HTTP/1.1\r\nHost: localhost:48000\r\nUser-Agent: test\r\n\r\n"), kTlsHello,
        bytesOf("SSH-2.0-OpenSSH_9.2\r\n")};
    for (int i = 0; i < 200; ++i) {
        Bytes bytes(1 + random() % 4096);
        for (unsigned char& byte : bytes) {
            byte = static_cast<unsigned char>(random());
        }
        strangers.push_back(bytes);
    }
    for (const Bytes& bytes : strangers) {
        TestClient client;
        client.Send(bytes);
        simulator->Step(3);
        client.Send(bytes);
        expectBystanderUnharmed();
        EXPECT_EQ(toHex(client.Received()), "");
    }
    expectCalm();
    expectNothingLoggedBut("");
}

#ifndef ORVANE_E2E_SANITIZED

// Forked processes that exchange as fast as they can until they are killed.
class KilledClients final {
public:
    KilledClients()
        : exchanges(new (::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
    ~KilledClients() { ::munmap(exchanges, sizeof(*exchanges)); }
    KilledClients(const KilledClients&) = delete;
    KilledClients& operator=(const KilledClients&) = delete;

    pid_t Start(const Bytes& request) {
        *exchanges = 0;
        const pid_t pid = ::fork();
        if (pid == 0) {
            exchangeForever(request);
        }
        return pid;
    }

    // How many exchanges it had completed.
    int Kill(pid_t pid) {
        ::kill(pid, SIGKILL);
        EXPECT_EQ(::waitpid(pid, nullptr, 0), pid);
        return *exchanges;
    }

private:
    [[noreturn]] void exchangeForever(const Bytes& request) {
        const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(48000);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        unsigned char answer[65536];
        while (::send(socket, request.data(), request.size(), MSG_NOSIGNAL) > 0 &&
               ::recv(socket, answer, sizeof(answer), 0) > 0) {
            ++*exchanges;
        }
        ::_exit(0);
    }

    std::atomic<int>* exchanges;
};

TEST_F(StormTest, SurvivesAClientThatIsKilledAThousandTimes) {
    KilledClients clients;
    const Bytes request = tarnel(
        definitionsMessage({{.action = 1, .targetType = kInt, .target = "test/float"}},
                           {{.id = 1, .name = "test/floats", .type = kFloatArray, .count = 5000},
                            {.id = 2, .name = "kyr/test_command", .type = 6}}));
    int killedEarly = 0;
    long exchanges = 0;
    for (int i = 0; i < 1000; ++i) {
        const pid_t pid = clients.Start(request);
        simulator->Step(static_cast<int>(random() % 20));
        expectBystanderUnharmed();
        simulator->Step(static_cast<int>(random() % 20));
        const int completed = clients.Kill(pid);
        exchanges += completed;
        killedEarly += completed == 0 ? 1 : 0;
        simulator->Step();
    }
    std::cout << "killed before an answer: " << killedEarly << ", answers: " << exchanges << '\n';
    EXPECT_GT(exchanges, 100);
    expectCalm();
    expectNothingLoggedBut(kReset);
}

#endif

TEST_F(StormTest, LetsClientsComeBackAfterTheSimulatorWasKilledUnderThem) {
    TestClient idle;
    TestClient waiting;
    TestClient halfAnswered(4096);
    ASSERT_EQ(idle.Exchange(*simulator, version), versionAnswer);
    halfAnswered.Send(hugeRequest);
    simulator->Step(10);
    waiting.Send(version);
    ASSERT_EQ(::kill(simulator->Pid(), SIGKILL), 0);
    const int status = simulator->WaitForEnd();
    ASSERT_TRUE(WIFSIGNALED(status));
    // They hold on to their ends of the connections meanwhile.
    startSimulator();
    for (TestClient* client : {bystander.get(), &idle, &waiting, &halfAnswered}) {
        EXPECT_TRUE(client->IsClosedByServer(*simulator));
    }
    bystander = std::make_unique<TestClient>();
    EXPECT_EQ(bystander->Exchange(*simulator, version), versionAnswer);
    expectNothingLoggedBut("");
}

} // namespace
