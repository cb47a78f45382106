#include <algorithm>
#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"

namespace {

class ConnectionTest : public EndToEndTest {
protected:
    ConnectionTest() {
        startSimulator();
        // The flight loop's first call comes two frames after the start.
        simulator->Step(2);
    }

    // Another client's exchange works, and nothing was logged.
    void expectServing() {
        TestClient client;
        EXPECT_EQ(toHex(client.Exchange(*simulator, version)),
                  "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    }

    void expectQuietLog() { EXPECT_EQ(simulator->LogText(), ""); }

    // An answer of 16 MB, more than the kernel takes at once.
    void requestHugeAnswer(TestClient& client) {
        client.Send(tarnelRequest(definitionsMessage({}, {{.id = 1,
                                                           .name = "test/floats",
                                                           .type = RecordType::FloatArray,
                                                           .count = 4'000'000}})));
    }

    int openFiles() { return static_cast<int>(simulator->AskNumber("fds")); }

    const Bytes version = tarnelRequest(versionMessage());
    const Bytes poll = tarnelRequest(dataMessage({}));
};

TEST_F(ConnectionTest, WaitsForTheRestOfASplitIdentification) {
    TestClient client;
    client.Send(fromHex("11 22"));
    simulator->Step(5);
    EXPECT_EQ(toHex(client.Received()), "");
    client.Send(fromHex("33"));
    simulator->Step(5);
    EXPECT_EQ(toHex(client.Received()), "");
    client.Send(fromHex("44 B1 6B 00 B5"));
    EXPECT_EQ(toHex(client.AnswerFrame(*simulator)),
              "0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    expectQuietLog();
}

TEST_F(ConnectionTest, SkipsAnUnknownIdentificationSilentlyFourBytesAReceive) {
    TestClient client;
    client.Send(fromHex("DE AD C0 DE 00 00 00 00"));
    simulator->Step(5);
    client.Send(kTarnel);
    simulator->Step(5);
    EXPECT_EQ(toHex(client.Received()), "");
    client.Send(fromHex("B1 6B 00 B5"));
    EXPECT_EQ(toHex(client.Answer(*simulator)), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    expectQuietLog();
}

TEST_F(ConnectionTest, AnswersATornMessageWithTheOutputsAndLosesItsPlaceInTheStream) {
    TestClient client;
    const Bytes definitions =
        definitionsMessage({}, {{.id = 1, .name = "test/int", .type = RecordType::Int}});
    client.Send(tarnelRequest({definitions.begin(), definitions.begin() + 100}));
    EXPECT_EQ(client.Answer(*simulator), trailer(kAircraftOne));
    EXPECT_EQ(simulator->LastLogMessage(),
              "Error@TarnelProtocol::tryParseConfig : numBytes (100) < packetSize(136)");
    // The start of the waiting message is taken as the next identification.
    client.Send({definitions.begin() + 100, definitions.end()});
    simulator->Step(5);
    EXPECT_EQ(toHex(client.Received()), "");
    expectServing();
}

TEST_F(ConnectionTest, HandlesALargeRequestWholeThatArrivedBetweenTwoFrames) {
    TestClient client;
    client.Exchange(*simulator, version);
    // 4 + 20 + 356 * 488 + 116 bytes, some 174 KB.
    const Bytes definitions = tarnelRequest(
        definitionsMessage(std::vector<InputRecord>(356), {{.id = 1, .type = RecordType::Int}}));
    ASSERT_EQ(definitions.size(), 173868U);
    client.Send(definitions);
    ASSERT_TRUE(client.IsDelivered());
    EXPECT_EQ(client.Answer(*simulator),
              join({fromHex("01 00 00 00 04 00 00 00 00 00 00 00"), trailer(kAircraftOne)}));
    expectQuietLog();
}

TEST_F(ConnectionTest, HandlesTheSecondOfTwoRequestsInOneSegmentWithTheNextBytes) {
    TestClient client;
    client.Send(join({version, version}));
    EXPECT_EQ(toHex(client.Answer(*simulator)), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    simulator->Step(10);
    EXPECT_EQ(toHex(client.Received()), "");
    client.Send(fromHex("11"));
    EXPECT_EQ(toHex(client.Answer(*simulator)), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
}

TEST_F(ConnectionTest, AcceptsOneClientAFrame) {
    TestClient first;
    TestClient second;
    first.Send(version);
    second.Send(version);
    const int before = openFiles();
    simulator->Step();
    EXPECT_EQ(openFiles(), before + 1);
    simulator->Step();
    EXPECT_EQ(openFiles(), before + 2);
    EXPECT_EQ(first.Answer(*simulator), second.Answer(*simulator));
}

TEST_F(ConnectionTest, AnswersAClientThatHasFinishedSendingBeforeItCloses) {
    TestClient client;
    client.Send(version);
    client.HalfClose();
    EXPECT_EQ(toHex(client.Answer(*simulator)), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    EXPECT_TRUE(client.IsClosedByServer(*simulator));
    expectQuietLog();
    expectServing();
}

TEST_F(ConnectionTest, ServesOthersWhileAClientReadsSlowly) {
    TestClient slow(4096);
    requestHugeAnswer(slow);
    TestClient other;
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(other.Exchange(*simulator, poll), trailer(kAircraftOne));
    }
    // What arrived is the beginning of the answer.
    const Bytes& received = slow.Received();
    ASSERT_GE(received.size(), 12U);
    EXPECT_EQ(toHex({received.begin(), received.begin() + 12}),
              "14 24 F4 00 01 00 00 00 00 24 F4 00");
    expectQuietLog();
}

TEST_F(ConnectionTest, DropsAConnectionOneFrameAfterItsEndWasSeen) {
    TestClient client;
    client.Exchange(*simulator, version);
    const int before = openFiles();
    client.Close();
    simulator->Step(2);
    EXPECT_EQ(openFiles(), before - 1);
    expectQuietLog();
}

TEST_F(ConnectionTest, SurvivesAClientThatSendsTwoRequestsAndVanishes) {
    TestClient client;
    client.Send(version);
    simulator->Step();
    client.Send(version);
    client.Close();
    // The client answers the first answer with a reset; the second must not be sent after that.
    simulator->Step(10);
    expectServing();
}

// How a client leaves.
enum class End { Close, Reset, HalfCloseThenReset };

class ClientEndTest : public ConnectionTest, public testing::WithParamInterface<End> {
protected:
    static void end(TestClient& client) {
        switch (GetParam()) {
        case End::Close:
            client.Close();
            break;
        case End::HalfCloseThenReset:
            client.HalfClose();
            client.CloseWithReset();
            break;
        case End::Reset:
            client.CloseWithReset();
            break;
        }
    }
};

TEST_P(ClientEndTest, DoesNotDisturbOthersInAnyStateOfTheClient) {
    TestClient bystander;
    ASSERT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
    const int before = openFiles();
    const Bytes requests[] = {{}, fromHex("11 22"), fromHex("11 22 33 44"), version};
    for (const Bytes& request : requests) {
        for (int framesBefore = 0; framesBefore < 5; ++framesBefore) {
            TestClient client;
            client.Send(request);
            if (framesBefore > 0) {
                simulator->Step(framesBefore);
            }
            end(client);
            simulator->Step(5);
            ASSERT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
        }
    }
    EXPECT_EQ(openFiles(), before);
}

TEST_P(ClientEndTest, DoesNotDisturbOthersInTheMiddleOfAnAnswer) {
    TestClient bystander;
    ASSERT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
    const int before = openFiles();
    {
        TestClient client(4096);
        requestHugeAnswer(client);
        simulator->Step(10);
        ASSERT_FALSE(client.Received().empty());
        end(client);
    }
    simulator->Step(20);
    EXPECT_EQ(bystander.Exchange(*simulator, poll), trailer(kAircraftOne));
    EXPECT_EQ(openFiles(), before);
}

INSTANTIATE_TEST_SUITE_P(Ends, ClientEndTest,
                         testing::Values(End::Close, End::Reset, End::HalfCloseThenReset),
                         [](const auto& end) {
                             switch (end.param) {
                             case End::Close:
                                 return "Close";
                             case End::Reset:
                                 return "Reset";
                             default:
                                 return "HalfCloseThenReset";
                             }
                         });

} // namespace
