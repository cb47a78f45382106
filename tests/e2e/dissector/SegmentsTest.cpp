#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of requests and answers in unusual segments.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SegmentsTest = DrawnCaptureTest;

TEST_F(SegmentsTest, ReassemblesRequestsAndAnswersThatComeByteByByte) {
    capture.Connect();
    capture.FromClientInPieces(query(), 1);
    capture.FromServerInPieces(kEmptyOutputs, 1);
    capture.FromClientInPieces(registration(), 1);
    capture.FromServerInPieces(registrationAnswer(), 3);
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"_ws.col.Info", "orvane.request_in"},
                 "orvane and not orvane.expert.cut"),
        ElementsAre("Tarnel identification alone|", "Tarnel DATA: 0 items|",
                    "Tarnel answer: 0 outputs|19", "Velmar identification alone|",
                    "Velmar: register test/float|", "Velmar answer: register test/float: ok|66"));
}

TEST_F(SegmentsTest, SeparatesRequestsAndAnswersInOneSegment) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(outputs("00 00 00 00"));
    capture.FromClient(join({data(5), data(6)}));
    capture.FromServer(join({outputs("00 00 00 00"), outputs("05 00 00 00")}));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.response_in", "orvane.request_in"}, "orvane",
                 {"-2"}),
        ElementsAre("Tarnel DEFINITIONS 1 input, 1 output|5|", "Tarnel answer: test/int = 0||4",
                    "Tarnel DATA: test/int = 5; Tarnel DATA: test/int = 6|7,7|",
                    "Tarnel answer: test/int = 0; Tarnel answer: test/int = 5||6,6"));
    EXPECT_THAT(
        expertsOf(file),
        ElementsAre("6 Note: in one segment with another request: waits in the plugin until "
                    "more bytes arrive"));
}

TEST_F(SegmentsTest, AddsPacketsOfALaterSegmentToTheSameVelmarRequest) {
    capture.Connect();
    capture.FromClient(registration());
    capture.FromClient(join({readDataref(7), pollCommandStates()}));
    capture.FromServer(join({fromHex("24 00 00 00 01 00 00 00 07 00 00 00 01 00 00 00 "
                                     "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00"),
                             f32(1.5F), zeros(4)}));
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"_ws.col.Info", "orvane.request_in"}),
                ElementsAre("Velmar: register test/float|", "Velmar: read test/float, poll|",
                            "Velmar answer: register test/float: ok, read test/float = 1.5, poll: "
                            "0 commands|5"));
    EXPECT_THAT(expertsOf(file), IsEmpty());
}

TEST_F(SegmentsTest, TreatsAnAnswerToTwoVelmarRequestsAsOne) {
    capture.Connect();
    capture.FromClient(velmarRequest({pollCommandStates()}));
    capture.FromClient(velmarRequest({readDataref(3)}));
    capture.FromServer(
        fromHex("14 00 00 00 00 00 00 00 05 00 00 00 03 00 00 00 02 00 00 00 01 00 00 00"));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre("5 Note: sent before the answer to the request before it",
                            "6 Note: an unknown number",
                            "6 Note: answers the request of frame 5 too, as one with this"));
}

TEST_F(SegmentsTest, JoinsAMessageToTheIdentificationBeforeIt) {
    capture.Connect();
    capture.FromClient(kTarnel);
    capture.FromClient(versionMessage());
    capture.FromServer(fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00"));
    EXPECT_THAT(infosOf(capture.Finish()),
                ElementsAre("Tarnel identification alone", "Tarnel VERSION",
                            "Tarnel answer: version 1.0.7.10"));
}

TEST_F(SegmentsTest, ReordersSegmentsIfWiresharkIsSetTo) {
    capture.Connect();
    capture.FromClientOvertaking(tarnelRequest(versionMessage()), 4);
    capture.FromServerOvertaking(fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00"), 4);
    capture.FromClientOvertaking(definitions(), 300);
    capture.FromServer(outputs("05 00 00 00"));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"frame.number", "orvane.name", "orvane.request_in"},
                 "orvane.request_in or orvane.name", {"-o", "tcp.reassemble_out_of_order:TRUE"}),
        ElementsAre("7||5", "9|test/int,test/int|", "10|test/int|9"));
    // By default it leaves gaps, and no fault is reported for them.
    EXPECT_THAT(expertsOf(file,
                          "orvane.expert.mismatch or orvane.expert.lost_place or "
                          "orvane.expert.ends_process"),
                IsEmpty());
}

TEST_F(SegmentsTest, KeepsConnectionsApart) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(outputs("05 00 00 00"));
    capture.ConnectAgain();
    capture.FromClient(query());
    capture.FromServer(kEmptyOutputs);
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"frame.number", "orvane.name", "orvane.request_in"},
                         "orvane and tcp.srcport == 48000"),
                ElementsAre("5|test/int|4", "10||9"));
    EXPECT_THAT(expertsOf(file), IsEmpty());
}

TEST_F(SegmentsTest, IsNotConfusedByRetransmissions) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.RepeatFromClient();
    capture.FromServer(outputs("00 00 00 00"));
    capture.RepeatFromServer();
    capture.FromClient(data(2));
    capture.FromServer(outputs("00 00 00 00"));
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"frame.number", "orvane.request_in"}, "orvane.request_in"),
                ElementsAre("6|4", "9|8"));
    EXPECT_THAT(expertsOf(file), IsEmpty());
}

TEST_F(SegmentsTest, SkipsAnIdentificationAfterARequestInTheSameSegment) {
    const Bytes request = registration();
    capture.Connect();
    capture.FromClient(Bytes(request.begin(), request.begin() + 20));
    capture.FromClient(
        join({Bytes(request.begin() + 20, request.end()), kVelmar, pollCommandStates()}));
    EXPECT_THAT(expertsOf(capture.Finish(), "frame.number == 5"),
                ElementsAre("5 Note: identification inside a request: its four bytes are "
                            "skipped"));
}

TEST_F(SegmentsTest, WorksWithoutReassembly) {
    capture.Connect();
    capture.FromClientInPieces(definitions(), 400);
    capture.FromServerInPieces(outputs("01 00 00 00"), 20);
    capture.FromClient(data(5));
    capture.FromServer(outputs("02 00 00 00"));
    EXPECT_THAT(infosOf(capture.Finish(), {"-o", "tcp.desegment_tcp_streams:FALSE"}),
                ElementsAre("Tarnel DEFINITIONS 1 input, 1 output", "continuation",
                            "Tarnel answer: outputs", "continuation", "Tarnel DATA: action 7 = 5",
                            "Tarnel answer: outputs"));
}

} // namespace
