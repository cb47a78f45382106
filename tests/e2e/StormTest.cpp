#include <sys/wait.h>

#include <csignal>
#include <deque>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "e2e/EagerClient.h"
#include "e2e/EndToEndTest.h"
#include "e2e/KilledClient.h"
#include "e2e/ResettingClients.h"
#include "support/Deadline.h"

namespace {

// A flight with one well-behaved client, whose exchanges a storm of others must not disturb.
class StormTest : public EndToEndTest {
protected:
    StormTest() {
        startSimulator();
        bystander = std::make_unique<TestClient>();
        const Bytes defined = bystander->Exchange(
            *simulator, tarnelRequest(definitionsMessage(
                            {{.action = 1, .targetType = RecordType::Int, .target = "test/int"}},
                            {{.id = 1, .name = "test/int", .type = RecordType::Int}})));
        EXPECT_EQ(defined, answerWith(0));
        filesBefore = simulator->AskNumber("fds");
    }

    // Prints how long the plugin's longest frame took. No bound: it depends on the machine.
    void TearDown() override {
        const long worst = simulator->AskNumber("worst");
        RecordProperty("worst_frame_us", std::to_string(worst));
        std::cout << "worst frame: " << worst << " us in " << simulator->AskNumber("frames")
                  << " frames\n";
    }

    // Sends a value and expects the one of the exchange before.
    void expectBystanderUnharmed() {
        const Bytes answer =
            bystander->Exchange(*simulator, tarnelRequest(dataMessage({{1, value + 1}})));
        ASSERT_EQ(answer, answerWith(value));
        ++value;
        ASSERT_EQ(simulator->Get("test/int"), std::to_string(value));
    }

    void misbehave(TestClient& client) {
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
    }

    // Everything that the storm opened is closed, and new clients are served.
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

    const Bytes version = tarnelRequest(versionMessage());
    const Bytes versionAnswer = fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    // Its answer is larger than the kernel accepts at once.
    const Bytes hugeRequest = tarnelRequest(definitionsMessage(
        {},
        {{.id = 1, .name = "test/floats", .type = RecordType::FloatArray, .count = 1'000'000}}));
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

// Few of them fit in the queue of the listening socket. If they waited for the kernel's retries,
// after 1, 3, 7 and more seconds, some would wait for half a minute.
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
        misbehave(*present.emplace_back(std::make_unique<TestClient>(4096)));
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
    for (const unsigned char byte : tarnelRequest(definitionsMessage({}, {{.id = 1}}))) {
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

// The first bytes of a TLS record.
const Bytes kTlsHello =
    join({fromHex("16 03 01 00 C8 01 00 00 C4 03 03"), Bytes(32, 0x5A), fromHex("20"),
          Bytes(32, 0xA5), fromHex("00 08 13 02 13 03 13 01 00 FF 01 00 00 73"), Bytes(115, 0x0B)});

TEST_F(StormTest, DoesNotAnswerOtherProtocols) {
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

TEST_F(StormTest, SurvivesAClientThatIsKilledAThousandTimes) {
    const Bytes request = tarnelRequest(definitionsMessage(
        {{.action = 1, .targetType = RecordType::Int, .target = "test/float"}},
        {{.id = 1, .name = "test/floats", .type = RecordType::FloatArray, .count = 5000},
         {.id = 2, .name = "kyr/test_command", .type = RecordType::Command}}));
    int killedEarly = 0;
    long exchanges = 0;
    for (int i = 0; i < 1000; ++i) {
        KilledClient client(request);
        simulator->Step(static_cast<int>(random() % 20));
        expectBystanderUnharmed();
        simulator->Step(static_cast<int>(random() % 20));
        const int completed = client.Kill();
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
    // They keep their ends of the connections open meanwhile.
    startSimulator();
    for (TestClient* client : {bystander.get(), &idle, &waiting, &halfAnswered}) {
        EXPECT_TRUE(client->IsClosedByServer(*simulator));
    }
    bystander = std::make_unique<TestClient>();
    EXPECT_EQ(bystander->Exchange(*simulator, version), versionAnswer);
    expectNothingLoggedBut("");
}

} // namespace
