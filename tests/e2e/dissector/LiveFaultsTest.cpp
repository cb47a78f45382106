#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/LiveCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of requests that the plugin skips, that make it lose its place, or that end
// it.

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;

using LiveFaultsTest = LiveCaptureTest;

TEST_F(LiveFaultsTest, ShowsWhatThePluginSkips) {
    TestClient client;
    client.Send(fromHex("01 02 03 04"));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    client.Exchange(*simulator, velmarRequest({runCommand(1, 1), u32(99), kVelmar}));
    client.Exchange(*simulator, smallDefinitions());
    EXPECT_THAT(
        expertsOf(capture.Finish()),
        ElementsAre(EndsWith(" Note: an unknown identification: dropped without an answer"),
                    EndsWith(" Note: an unknown number: nothing is run"),
                    EndsWith(" Note: unknown type inside a request: its four bytes are skipped"),
                    EndsWith(" Note: identification inside a request: its four bytes are skipped"),
                    EndsWith(" Note: only commands under kyr/ can be observed: it has no value")));
}

TEST_F(LiveFaultsTest, SaysThatADefinitionsMessageWasTorn) {
    const Bytes request = tarnelRequest(
        definitionsMessage({{.action = 7, .targetType = RecordType::Int, .target = "test/int"}},
                           {{.id = 1, .name = "test/int", .type = RecordType::Int}}));
    TestClient client;
    client.Send(Bytes(request.begin(), request.begin() + 500));
    client.Answer(*simulator);
    client.Send(Bytes(request.begin() + 500, request.end()));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file), ElementsAre("Tarnel request, cut [TCP segment of a reassembled PDU]",
                                           "Tarnel answer: 0 outputs", "dropped: C0 FF EE DD"));
    EXPECT_THAT(
        expertsOf(file),
        ElementsAre(
            EndsWith(" Note: the plugin does not wait for the rest: it answers what has "
                     "arrived"),
            EndsWith(" Warning: answers a request of which a part had not arrived in frame "
                     "4: the connection has lost its place"),
            EndsWith(" Warning: torn, frame 6 answers the part that had arrived: C0 FF EE DD "
                     "is dropped as an unknown identification, 620 bytes wait")));
}

TEST_F(LiveFaultsTest, ShowsWhereADataMessageStops) {
    TestClient client;
    client.Exchange(*simulator, smallDefinitions());
    client.Exchange(*simulator, tarnelRequest(dataMessage({{7, 1}, {99, 1}, {8, 1}})));
    const std::string line = simulator->LastLogMessage();
    EXPECT_EQ(line, "WARNING@TarnelProtocol::tryParseData : unknown action id(99)");
    EXPECT_THAT(expertsOf(capture.Finish(), "orvane.tarnel.item"),
                ElementsAre(EndsWith(" Note: not executed"), EndsWith(" Note: not executed"),
                            EndsWith(" Warning: stops at an undeclared action: " + line +
                                     ": the connection has lost its place")));
}

TEST_F(LiveFaultsTest, WarnsThatANegativeCountMayCloseTheConnection) {
    const auto define = [](std::int32_t count) {
        return tarnelRequest(definitionsMessage(
            {}, {{.id = 1, .name = "kyr/negative", .type = RecordType::IntArray, .count = count}}));
    };
    TestClient client;
    client.Send(define(-1));
    EXPECT_TRUE(client.IsClosedByServer(*simulator));
    TestClient later;
    EXPECT_EQ(later.Exchange(*simulator, define(2)).size(), 28U);
    EXPECT_EQ(later.Exchange(*simulator, define(-1)).size(), 20U);
    const auto file = capture.Finish();
    const std::string expert =
        " Warning: a negative number of elements of kyr/negative closes the connection, unless the "
        "dataref exists already: Warning@TcpConnection::ProcessEvents : Feed() : ";
    EXPECT_THAT(expertsOf(file), ElementsAre(EndsWith(expert), EndsWith(expert)));
}

TEST_F(LiveFaultsTest, ShowsTheLogLineThatEndsTheProcess) {
    const std::vector<Bytes> requests{
        // Records and items that are announced but missing.
        fromHex("11 22 33 44 C0 FF EE DD 00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"),
        join({fromHex("11 22 33 44 C0 FF EE DD 34 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"),
              zeros(52)}),
        // 488 times 2^29 is a multiple of 2^32.
        fromHex("11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 20 74 00 00 00 00 00 00 00"),
        fromHex("11 22 33 44 DE AD BE EF 00 00 00 00 01 00 00 00"),
        // A command's descriptor that is whole, but short.
        velmarRequest({registerCommand(1, "sim/a")}),
        // Incomplete packets.
        fromHex("55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 41 73 69 6D"),
        join({fromHex("55 66 77 88 03 00 00 00 01 00 00 00 42"), zeros(8)}),
        fromHex("55 66 77 88 05 00 00 00 01 00 00"), fromHex("55 66 77 88 06 00 00 00"),
        join({velmarRequest({registerDataref(1, 1, 0, "test/int")}),
              fromHex("06 00 00 00 01 00 00 00 04 00 00 00 00")}),
        join({velmarRequest({registerDataref(1, 2, 0, "test/float")}),
              fromHex("06 00 00 00 01 00 00 00 04 00 00 00 00")}),
        join({velmarRequest({registerDataref(1, 3, 0, "test/int")}),
              fromHex("06 00 00 00 01 00 00 00 01 00 00 00")}),
        fromHex("55 66 77 88 07 00 00 00 01"), fromHex("55 66 77 88 07 00 00 00 01 00 00 00")};
    std::vector<testing::Matcher<std::string>> expected;
    for (const Bytes& request : requests) {
        startSimulator();
        TestClient client;
        client.Send(request);
        simulator->Send("step 10");
        simulator->WaitForEnd();
        expected.emplace_back(
            AllOf(HasSubstr(" Error: "),
                  EndsWith("the simulator's process ends with " + simulator->LastLogMessage())));
    }
    std::vector<std::string> experts =
        expertsOf(capture.Finish(), "orvane.expert.ends_process", {"-2"});
    std::erase_if(experts, [](const std::string& expert) {
        return expert.find(" ends with ") == std::string::npos;
    });
    EXPECT_THAT(experts, ElementsAreArray(expected));
}

TEST_F(LiveFaultsTest, FollowsThePluginUntilItFindsItsPlaceAgain) {
    TestClient client;
    client.Send(fromHex("55 66 77 88 02 00 00 00 07 00"));
    EXPECT_EQ(toHex(client.Answer(*simulator)), "");
    client.Send(fromHex("00 00"));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    client.Send(velmarRequest({pollCommandStates()}));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    EXPECT_EQ(client.Exchange(*simulator, velmarRequest({pollCommandStates()})), zeros(8));
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"frame.number", "_ws.col.Info", "orvane.request_in"},
                         "orvane and frame.number > 4"),
                ElementsAre("6|Velmar answer: empty|4", "8|dropped: 02 00 00 00|",
                            "10|dropped: 07 00 00 00|", "12|Velmar: poll, identification, poll|",
                            "14|Velmar answer: poll: 0 commands, poll: 0 commands|12"));
    EXPECT_THAT(
        expertsOf(file, "frame.number > 6"),
        ElementsAre("8 Warning: torn, frame 6 answers the part that had arrived: 02 00 00 00 is "
                    "dropped as an unknown identification, 4 bytes wait",
                    "10 Warning: lost its place in frame 6: 07 00 00 00 is dropped as an unknown "
                    "identification, 8 bytes wait",
                    "12 Note: identification inside a request: its four bytes are skipped"));
}

TEST_F(LiveFaultsTest, FindsARequestInWhatThePluginHadNotRead) {
    TestClient client;
    client.Exchange(*simulator, tarnelRequest(dataMessage({{99, 1}})));
    // The message of 20 bytes is dropped word by word; then a request is found, the first of six.
    for (int i = 0; i < 6; ++i) {
        client.Send(tarnelRequest(versionMessage()));
        ASSERT_TRUE(client.IsDelivered());
        simulator->Step(2);
    }
    EXPECT_EQ(toHex(client.Answer(*simulator)), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
    const auto file = capture.Finish();
    EXPECT_THAT(
        infosOf(file),
        ElementsAre(HasSubstr("Tarnel DATA"), "Tarnel answer: 0 outputs", "dropped: DE AD BE EF",
                    "dropped: 08 00 00 00", "dropped: 01 00 00 00", "dropped: 63 00 00 00",
                    "dropped: 01 00 00 00", "Tarnel VERSION", "Tarnel answer: version 1.0.7.10"));
    EXPECT_THAT(expertsOf(file, "orvane.tarnel.message == 0xb5006bb1"),
                ElementsAre(EndsWith("found in what the plugin had not read: 40 bytes wait")));
}

TEST_F(LiveFaultsTest, ShowsBothStreamsOfDefinitionsThatSeemToHaveNoSize) {
    // 0xFFFFFFEC, the size, and 20 of the header add up to 0.
    TestClient client;
    const Bytes answer = client.Exchange(
        *simulator,
        tarnelRequest(join({fromHex("C0 FF EE DD 00 00 00 00 00 00 00 00 EC FF FF FF 01 00 00 "
                                    "00"),
                            toBytes(OutputRecord{.id = 1, .name = "test/int", .type = 1})})));
    ASSERT_EQ(answer.size(), 48U);
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"orvane.tarnel.entry.int", "orvane.tarnel.aircraft.id"},
                         "orvane and tcp.srcport == 48000"),
                ElementsAre("0,0|0xb9852eb1,0xb9852eb1"));
    EXPECT_THAT(expertsOf(file, "orvane and tcp.srcport == 48000"),
                ElementsAre(EndsWith(" Warning: the outputs come twice")));
}

TEST_F(LiveFaultsTest, SaysThatTheLastValueWasCut) {
    TestClient client;
    client.Exchange(*simulator, smallDefinitions());
    client.Exchange(*simulator, tarnelRequest(fromHex("DE AD BE EF 00 00 00 00 02 00 00 00 "
                                                      "07 00 00 00 01 01 01 01 07 00 00 00 05")));
    EXPECT_EQ(simulator->Get("test/int"), "5");
    EXPECT_THAT(
        expertsOf(capture.Finish(), "orvane.tarnel.item"),
        ElementsAre(EndsWith(" Warning: items are read at 8 bytes each, not 0"),
                    EndsWith(" Warning: the last value is cut: its missing bytes count as zeros")));
}

} // namespace
