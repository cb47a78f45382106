#include <string>

#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of incomplete captures.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using GapsTest = DrawnCaptureTest;

const std::string kGap = "[TCP ACKed unseen segment] [TCP Previous segment not captured] ";

TEST_F(GapsTest, ReportsNoFaultInWhatCameBeforeTheCapture) {
    capture.JoinConnection();
    capture.FromServer(fromHex("01 02 03"));
    capture.JoinConnection();
    capture.FromClient(fromHex("01 02 03 04 05 06 07 08"));
    capture.FromClient(data(5));
    capture.FromServer(outputs("01 00 00 00"));
    capture.FromClient(
        velmarRequest({writeDataref(7, fromHex("01 02 03 04")), readDataref(7), runCommand(3, 1)}));
    capture.FromServer(
        fromHex("20 00 00 00 06 00 00 00 07 00 00 00 01 00 00 00 "
                "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 01 02 03 04"));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.velmar.value", "orvane.tarnel.aircraft.id"},
                 "frame.number > 2"),
        ElementsAre("Tarnel DATA: action 7 = 5||", "Tarnel answer: outputs||0x04030201",
                    "Velmar: write dataref 7, read dataref 7, run command 3|01020304|",
                    "Velmar answer: write dataref 7: ok, read dataref 7 = 4 bytes|01020304|"));
    EXPECT_THAT(expertsOf(file),
                ElementsAre("1 Note: 1 byte is missing here",
                            "2 Note: no identification: the capture begins within a request",
                            "5 Note: registered before the capture begins"));
}

TEST_F(GapsTest, ReportsNoFaultInWhatTheCaptureMissed) {
    capture.Connect();
    capture.MissFromClient(definitions());
    capture.MissFromServer(outputs("00 00 00 00"));
    capture.FromClient(data(5));
    capture.FromServer(outputs("00 00 00 00"));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.request_in"}),
        ElementsAre(kGap + "Tarnel DATA: action 7 = 5|", kGap + "Tarnel answer: outputs|4"));
    EXPECT_THAT(expertsOf(file),
                ElementsAre("4 Note: bytes before this segment are not in the capture"));
}

TEST_F(GapsTest, ReportsRequestsWithoutAnAnswerWhenTheConnectionEnds) {
    const std::string line = "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4";
    capture.Connect();
    capture.FromClient(tarnelRequest(versionMessage()));
    capture.ResetFromServer();
    // The plugin had received only a part when it answered; the rest was not read.
    capture.Connect();
    capture.FromClientInPieces(velmarRequest({readDataref(1)}), 10);
    capture.ResetFromServer();
    // This one may still be answered.
    capture.Connect();
    capture.FromClient(tarnelRequest(versionMessage()));
    const auto file = capture.Finish();
    EXPECT_THAT(
        expertsOf(file, "orvane", {"-2"}),
        ElementsAre("4 Note: the connection ended before an answer",
                    "9 Error: has no answer: if the plugin looked before the rest arrived, the "
                    "simulator's process ended with " +
                        line,
                    "10 Note: the connection ended before an answer"));
}

TEST_F(GapsTest, ShowsThePartOfAnAnswerThatWasCaptured) {
    capture.Connect();
    capture.FromClient(query());
    capture.FromServer(Bytes(kEmptyOutputs.begin(), kEmptyOutputs.end() - 4));
    capture.Connect();
    capture.FromClient(query());
    capture.FromServerInPieces(kEmptyOutputs, 10);
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"frame.number", "_ws.col.Info"}, "tcp.srcport == 48000 and orvane"),
                ElementsAre("5|answer, cut [TCP segment of a reassembled PDU]",
                            "10|answer, cut [TCP segment of a reassembled PDU]",
                            "11|Tarnel answer: 0 outputs"));
    EXPECT_THAT(expertsOf(file),
                ElementsAre("5 Note: 4 bytes are missing here, as many as the plugin loses of an "
                            "answer that its system took in parts",
                            "10 Note: 6 bytes are missing here"));
}

TEST_F(GapsTest, DoesNotLinkAnAnswerToARequestBeforeAGap) {
    capture.Connect();
    capture.FromClient(query());
    capture.MissFromServer(kEmptyOutputs);
    capture.FromClient(query());
    capture.FromServer(kEmptyOutputs);
    capture.Connect();
    capture.FromClient(query());
    capture.MissFromServer(kEmptyOutputs);
    capture.MissFromClient(query());
    capture.FromClient(query());
    capture.FromServer(kEmptyOutputs);
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"frame.number", "orvane.request_in"}, "orvane.tarnel.aircraft"),
        ElementsAre("6|5", "12|11"));
}

TEST_F(GapsTest, GoesOnAfterPacketsThatWereCapturedInPart) {
    capture.Connect();
    capture.PartOfFromClient(definitions(), 60);
    capture.PartOfFromServer(outputs("01 00 00 00"), 12);
    capture.FromClient(data(5));
    capture.FromServer(outputs("02 00 00 00"));
    capture.PartOfFromClient(velmarRequest({registerDataref(7, 2, 0, "test/float")}), 10);
    capture.PartOfFromServer(registrationAnswer(), 2);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file), ElementsAre("Tarnel DEFINITIONS 1 input, 1 output",
                                           "Tarnel answer: outputs", "Tarnel DATA: action 7 = 5",
                                           "Tarnel answer: outputs", "Velmar", "not decoded"));
    EXPECT_THAT(expertsOf(file,
                          "orvane.expert.ends_process or orvane.expert.lost_place or "
                          "orvane.expert.mismatch"),
                IsEmpty());
}

} // namespace
