#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "e2e/dissector/LiveCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark tells of requests that the plugin skips, loses its place at, or ends with.

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;

using LiveFaultsTest = LiveCaptureTest;

TEST_F(LiveFaultsTest, TellsWhatThePluginSkips) {
    TestClient client;
    client.Send(fromHex("01 02 03 04"));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    client.Exchange(*simulator, velmar({runCommand(1, 1), u32(99), fromHex("55 66 77 88")}));
    client.Exchange(*simulator, smallDefinitions());
    EXPECT_THAT(
        expertsOf(capture.Finish()),
        ElementsAre(EndsWith(" Note: an unknown identification: dropped without an answer"),
                    EndsWith(" Note: an unknown number: nothing is run"),
                    EndsWith(" Note: unknown type inside a request: its four bytes are skipped"),
                    EndsWith(" Note: identification inside a request: its four bytes are skipped"),
                    EndsWith(" Note: only commands under kyr/ can be observed: it has no value")));
}

TEST_F(LiveFaultsTest, TellsThatADefinitionsMessageWasTorn) {
    const Bytes request =
        tarnel(definitionsMessage({{.action = 7, .targetType = kInt, .target = "test/int"}},
                                  {{.id = 1, .name = "test/int", .type = kInt}}));
    TestClient client;
    client.Send(Bytes(request.begin(), request.begin() + 500));
    client.Answer(*simulator);
    client.Send(Bytes(request.begin() + 500, request.end()));
    ASSERT_TRUE(client.IsDelivered());
    simulator->Step(2);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file),
                ElementsAre("Tarnel request, cut [TCP segment of a reassembled PDU]",
                            "Tarnel answer: 0 outputs", "Tarnel DEFINITIONS 1 input, 1 output"));
    EXPECT_THAT(
        expertsOf(file),
        ElementsAre(EndsWith(" Note: the plugin does not wait for the rest: it answers what has "
                             "arrived"),
                    EndsWith(" Warning: answers a request of which a part had not arrived in frame "
                             "4: the connection has lost its place"),
                    EndsWith(" Warning: torn: frame 6 answers the part that had arrived, and the "
                             "plugin looks for an identification in the rest")));
}

TEST_F(LiveFaultsTest, TellsWhereADataMessageStops) {
    TestClient client;
    client.Exchange(*simulator, smallDefinitions());
    client.Exchange(*simulator, tarnel(dataMessage({{7, 1}, {99, 1}, {8, 1}})));
    const std::string line = simulator->LastLogMessage();
    EXPECT_EQ(line, "WARNING@TarnelProtocol::tryParseData : unknown action id(99)");
    EXPECT_THAT(expertsOf(capture.Finish(), "orvane.tarnel.item"),
                ElementsAre(EndsWith(" Note: not executed"), EndsWith(" Note: not executed"),
                            EndsWith(" Warning: stops at an undeclared action: " + line +
                                     ": the connection has lost its place")));
}

TEST_F(LiveFaultsTest, TellsThatANegativeCountClosesTheConnection) {
    TestClient client;
    client.Send(tarnel(definitionsMessage(
        {}, {{.id = 1, .name = "kyr/negative", .type = kIntArray, .count = -1}})));
    EXPECT_TRUE(client.IsClosedByServer(*simulator));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre(EndsWith(" Warning: a negative number of elements of kyr/negative "
                                     "closes the connection: "
                                     "Warning@TcpConnection::ProcessEvents : Feed() : ")));
}

TEST_F(LiveFaultsTest, TellsWhatEndsTheSimulatorsProcessWithItsLine) {
    const std::vector<Bytes> requests{
        // Records and items that are announced and not there.
        fromHex("11 22 33 44 C0 FF EE DD 00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"),
        join({fromHex("11 22 33 44 C0 FF EE DD 34 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"),
              zeros(52)}),
        // 488 times 2^29 is a multiple of 2^32.
        fromHex("11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 20 74 00 00 00 00 00 00 00"),
        fromHex("11 22 33 44 DE AD BE EF 00 00 00 00 01 00 00 00"),
        // A command's descriptor that is whole, but short.
        velmar({registerCommand(1, "sim/a")}),
        // Packets that are not whole.
        fromHex("55 66 77 88 01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 41 73 69 6D"),
        join({fromHex("55 66 77 88 03 00 00 00 01 00 00 00 42"), zeros(8)}),
        fromHex("55 66 77 88 05 00 00 00 01 00 00"), fromHex("55 66 77 88 06 00 00 00"),
        join({velmar({registerDataref(1, 1, 0, "test/int")}),
              fromHex("06 00 00 00 01 00 00 00 04 00 00 00 00")}),
        join({velmar({registerDataref(1, 2, 0, "test/float")}),
              fromHex("06 00 00 00 01 00 00 00 04 00 00 00 00")}),
        join({velmar({registerDataref(1, 3, 0, "test/int")}),
              fromHex("06 00 00 00 01 00 00 00 01 00 00 00")}),
        fromHex("55 66 77 88 07 00 00 00 01"), fromHex("55 66 77 88 07 00 00 00 01 00 00 00")};
    std::vector<testing::Matcher<std::string>> expected;
    for (const Bytes& request : requests) {
        startSimulator();
        TestClient client;
        client.Send(request);
        simulator->Tell("step 10");
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

} // namespace
