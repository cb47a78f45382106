#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "e2e/dissector/LiveCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of real exchanges that go well.

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

using LiveFlightTest = LiveCaptureTest;

TEST_F(LiveFlightTest, ShowsATarnelFlightMessageByMessage) {
    TestClient client;
    client.Exchange(*simulator, fromHex("11 22 33 44 B1 6B 00 B5"));
    client.Exchange(*simulator, smallDefinitions());
    client.Exchange(*simulator, tarnelRequest(dataMessage({{7, -5}, {8, 65535}})));
    simulator->Ask("command begin kyr/button");
    simulator->Ask("set test/floats 0,0.5,-2,0,0,0,0,0");
    client.Exchange(*simulator, kTarnel);
    simulator->Ask("aircraft unload");
    client.Exchange(*simulator, tarnelRequest(dataMessage({})));
    const auto file = capture.Finish();

    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.name", "orvane.tarnel.entry.int",
                        "orvane.tarnel.entry.float", "orvane.tarnel.entry.command",
                        "orvane.tarnel.aircraft.id"}),
        ElementsAre("Tarnel VERSION|||||", "Tarnel answer: version 1.0.7.10|||||",
                    "Tarnel DEFINITIONS 2 inputs, 4 outputs"
                    "|test/int,test/float,test/int,test/floats,kyr/button,test/once||||",
                    "Tarnel answer: test/int = 0, test/floats = 2 floats, kyr/button = up and 1 "
                    "more|test/int,test/floats,kyr/button,test/once|0|0,0|0|0xb9852eb1",
                    "Tarnel DATA: test/int = -5, test/float = 65535|test/int,test/float||||",
                    "Tarnel answer: test/int = 0, test/floats = 2 floats, kyr/button = up and 1 "
                    "more|test/int,test/floats,kyr/button,test/once|0|0,0|0|0xb9852eb1",
                    "Tarnel identification alone|||||",
                    "Tarnel answer: test/int = -5, test/floats = 2 floats, kyr/button = pressed "
                    "and 1 more|test/int,test/floats,kyr/button,test/once|-5|0.5,-2|1|0xb9852eb1",
                    "Tarnel DATA: 0 items|||||",
                    "Tarnel answer: test/int = 0, test/floats = 2 floats, kyr/button = up and 1 "
                    "more, no aircraft|test/int,test/floats,kyr/button,test/once"
                    "|0|0,0|0|0x00000000"));
}

TEST_F(LiveFlightTest, ShowsAVelmarFlightPacketByPacket) {
    TestClient client;
    client.Exchange(*simulator,
                    velmarRequest({registerDataref(7, VelmarValueType::Float, 0, "test/float"),
                                   registerCommand(9, "test/once_and_again"),
                                   registerDataref(8, 4, 3, "test/ints"),
                                   registerCommand(9, "test/once"), zeros(8)}));
    client.Exchange(*simulator, velmarRequest({writeDataref(7, f32(43200.0F)), readDataref(7)}));
    simulator->Ask("set test/ints 1,-2,3,4,5,6,7,8");
    client.Exchange(*simulator, velmarRequest({readDataref(8)}));
    client.Exchange(*simulator, velmarRequest({runCommand(9, 1)}));
    client.Exchange(*simulator, velmarRequest({pollCommandStates(), runCommand(9, 2)}));
    client.Exchange(*simulator, velmarRequest({unregisterDataref(7), unregisterCommand(9),
                                               unregisterCommand(9), readDataref(7)}));
    const auto file = capture.Finish();

    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.name", "orvane.velmar.status",
                        "orvane.velmar.float", "orvane.velmar.int", "orvane.velmar.state"}),
        ElementsAre(
            "Velmar: register test/float, register test/once_and_again, register test/ints and 3 "
            "more|test/float,test/once_and_again,test/ints,test/once||||",
            "Velmar answer: register test/float: ok, register test/once_and_again: failed, "
            "register test/ints: ok and 1 more"
            "|test/float,test/once_and_again,test/ints,test/once|1,2,1,1|||",
            "Velmar: write test/float = 43200, read test/float|test/float,test/float||43200||",
            "Velmar answer: write test/float = 43200: ok, read test/float = 43200"
            "|test/float,test/float|1,1|43200||",
            "Velmar: read test/ints|test/ints||||",
            "Velmar answer: read test/ints = 3 ints|test/ints|1||1,-2,3|",
            "Velmar: run test/once|test/once||||", "Velmar answer: empty|||||",
            "Velmar: poll, begin test/once|test/once||||",
            "Velmar answer: poll: 1 command|test/once||||2",
            "Velmar: unregister test/float, unregister test/once, unregister command 9 and 1 more"
            "|test/float,test/once||||",
            "Velmar answer: unregister test/float: ok, unregister test/once: ok, unregister "
            "command 9: failed and 1 more|test/float,test/once|1,1,2,2|||"));
}

TEST_F(LiveFlightTest, TreatsTwoZerosAfterAShortCommandNameAsPadding) {
    TestClient client;
    client.Exchange(*simulator, velmarRequest({registerCommand(9, "s/short"), zeros(8)}));
    client.Exchange(*simulator, velmarRequest({registerCommand(9, "s/s"), zeros(12)}));
    client.Exchange(*simulator, velmarRequest({registerCommand(9, "s/longer"), zeros(4)}));
    const auto file = capture.Finish();
    EXPECT_THAT(
        infosOf(file),
        ElementsAre("Velmar: register s/short", "Velmar answer: register s/short: failed",
                    "Velmar: register s/s, unknown type", "Velmar answer: register s/s: failed",
                    "Velmar: register s/longer, unknown type",
                    "Velmar answer: register s/longer: failed"));
    EXPECT_THAT(
        expertsOf(file, "orvane.expert.skipped"),
        ElementsAre(EndsWith(" Note: unknown type inside a request: its four bytes are skipped"),
                    EndsWith(" Note: unknown type inside a request: its four bytes are skipped")));
}

TEST_F(LiveFlightTest, LinksAnswersToTheirRequests) {
    TestClient first;
    TestClient second;
    first.Send(velmarRequest({pollCommandStates()}));
    second.Send(tarnelRequest(versionMessage()));
    first.Answer(*simulator);
    second.Answer(*simulator);
    first.Exchange(*simulator, tarnelRequest(dataMessage({})));
    const auto file = capture.Finish();

    const std::vector<std::string> requests = fieldsOf(file, {"frame.number", "orvane.response_in"},
                                                       "orvane and tcp.dstport == 48000", {"-2"});
    const std::vector<std::string> answers =
        fieldsOf(file, {"orvane.request_in", "frame.number"}, "orvane and tcp.srcport == 48000");
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_THAT(answers, testing::UnorderedElementsAreArray(requests));
    EXPECT_THAT(fieldsOf(file, {"orvane.response_time"}, "orvane.response_time > 0"),
                testing::SizeIs(3));
}

TEST_F(LiveFlightTest, ReassemblesALargeRequestAndItsAnswer) {
    // 400 input records of 488 bytes are more than three segments of the loopback device, 500000
    // floats many more.
    const std::vector<InputRecord> inputs(
        400, {.action = 1, .targetType = RecordType::Int, .target = "test/int"});
    TestClient client;
    client.Exchange(*simulator,
                    tarnelRequest(definitionsMessage(inputs, {{.id = 1,
                                                               .name = "test/many_floats",
                                                               .type = RecordType::FloatArray,
                                                               .count = 500000}})));
    client.Exchange(*simulator, tarnelRequest(dataMessage({{1, 1}})));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.length"}, "orvane and not orvane.expert.cut"),
        ElementsAre("Tarnel DEFINITIONS 400 inputs, 1 output|",
                    "Tarnel answer: test/many_floats = 500000 floats|2000020",
                    "Tarnel DATA: test/int = 1|",
                    "Tarnel answer: test/many_floats = 500000 floats|2000020"));
}

TEST_F(LiveFlightTest, FollowsAConnectionThatSwitchesBetweenTheProtocols) {
    TestClient client;
    client.Exchange(*simulator, smallDefinitions());
    client.Exchange(*simulator,
                    velmarRequest({registerDataref(1, VelmarValueType::Int, 0, "test/int")}));
    client.Exchange(*simulator, tarnelRequest(dataMessage({{7, 258}})));
    client.Exchange(*simulator, velmarRequest({readDataref(1)}));
    const auto file = capture.Finish();
    EXPECT_THAT(
        infosOf(file),
        ElementsAre(
            "Tarnel DEFINITIONS 2 inputs, 4 outputs",
            "Tarnel answer: test/int = 0, test/floats = 2 floats, kyr/button = up and 1 more",
            "Velmar: register test/int", "Velmar answer: register test/int: ok",
            "Tarnel DATA: test/int = 258",
            "Tarnel answer: test/int = 0, test/floats = 2 floats, kyr/button = up and 1 more",
            "Velmar: read test/int", "Velmar answer: read test/int = 258"));
    EXPECT_THAT(expertsOf(file, "orvane.expert.mismatch"), IsEmpty());
}

} // namespace
