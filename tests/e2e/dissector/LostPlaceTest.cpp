#include <gmock/gmock.h>

#include "e2e/dissector/DrawnCaptureTest.h"
#include "e2e/dissector/Tshark.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of requests that the plugin cannot follow, and of answers that do not fit.

namespace {

using testing::ElementsAre;

using LostPlaceTest = DrawnCaptureTest;

TEST_F(LostPlaceTest, DropsFourBytesThatAreNotAnIdentification) {
    capture.Connect();
    capture.FromClient(fromHex("01 02 03 04"));
    capture.FromClient(fromHex("05 06 07 08 09"));
    capture.FromClient(fromHex("0A 0B 0C 0D"));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre("4 Note: an unknown identification: dropped without an answer",
                            "5 Note: an unknown identification: dropped without an answer",
                            "5 Warning: waits for more bytes; the next identification is looked "
                            "for here: the connection has lost its place",
                            "6 Warning: lost its place in frame 5: 09 0A 0B 0C is dropped as an "
                            "unknown identification, 1 byte waits"));
}

TEST_F(LostPlaceTest, LosesItsPlaceAsThePluginDoes) {
    const auto expectLost = [this](const Bytes& request) {
        capture.Connect();
        capture.FromClient(request);
    };
    expectLost(tarnelRequest(fromHex("01 02 03 04 05 06 07 08")));
    expectLost(join({kTarnel, fromHex("C0 FF EE DD E8 01 00 00 01 00 00 00 "
                                      "74 00 00 00 00 00 00 02")}));
    expectLost(
        join({kTarnel, fromHex("C0 FF EE DD 04 00 00 00 00 00 00 00 78 00 00 00 01 00 00 00"),
              zeros(120)}));
    expectLost(join({registration(), writeDataref(7, zeros(8)), pollCommandStates()}));
    expectLost(velmarRequest({registerDataref(1, 9, 0, "test/int"), writeDataref(1, zeros(4))}));
    expectLost(velmarRequest({writeDataref(2, fromHex("04 00 00 00"))}));
    EXPECT_THAT(
        expertsOf(capture.Finish(), "orvane.expert.lost_place"),
        ElementsAre(
            "4 Warning: an unknown message: the connection has lost its place",
            "8 Warning: announces 3892314620 bytes, more than the plugin's buffer holds: the "
            "connection has lost its place",
            "12 Note: an output of this type has no value",
            "12 Warning: output records are read at 116 bytes each, not 120",
            "12 Warning: announces 140 bytes and has 136: the connection has lost its place",
            "16 Warning: waits, for a value of 8 bytes where 4 are needed: the connection has lost "
            "its place",
            "20 Warning: waits, for data type 0 has no value: the connection has lost its place",
            "24 Warning: an unknown number: the value is taken for the next packets"));
}

TEST_F(LostPlaceTest, NoticesAnswersThatAreNotWhatWasDeclared) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(outputs("00 00 00 00"));
    capture.FromClient(data(1));
    capture.FromServer(kEmptyOutputs);
    capture.FromServer(kEmptyOutputs);
    capture.FromClient(tarnelRequest(versionMessage()));
    capture.FromServer(outputs("01 00 00 00"));
    capture.FromClient(velmarRequest({readDataref(1), pollCommandStates()}));
    capture.FromServer(fromHex("0C 00 00 00 05 00 00 00 02 00 00 00 01 00 00 00"));
    capture.FromClient(velmarRequest({pollCommandStates()}));
    capture.FromServer(fromHex("05 00 00 00 00 00 00 00 99"));
    capture.FromServer(fromHex("FF FF FF FF 00"));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre("7 Warning: 12 bytes instead of the 24 that are declared",
                            "8 Warning: no request waits for an answer",
                            "8 Warning: 12 bytes instead of the 24 that are declared",
                            "10 Warning: not the answer to VERSION",
                            "12 Warning: no reply to: read dataref 1",
                            "14 Warning: 1 byte more than replies to the request",
                            "15 Warning: no length of an answer: one before it was perhaps sent in "
                            "parts, and damaged"));
}

TEST_F(LostPlaceTest, GoesBackToTheFormerDefinitionsWhenTheirOutputsAnswerNewOnes) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(kEmptyOutputs);
    capture.FromClient(data(1));
    capture.FromServer(kEmptyOutputs);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file),
                ElementsAre("Tarnel DEFINITIONS 1 input, 1 output", "Tarnel answer: 0 outputs",
                            "Tarnel DATA: action 7 = 1", "Tarnel answer: 0 outputs"));
    EXPECT_THAT(expertsOf(file, "frame.number == 5"),
                ElementsAre("5 Warning: the former outputs: the plugin had only a part of the "
                            "DEFINITIONS: the connection has lost its place"));
}

TEST_F(LostPlaceTest, KeepsTheFormerDatarefWhenARegistrationFails) {
    capture.Connect();
    capture.FromClient(registration());
    capture.FromServer(registrationAnswer());
    capture.FromClient(velmarRequest({registerDataref(7, 1, 0, "no/such"), readDataref(7)}));
    capture.FromServer(join({fromHex("24 00 00 00 01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00 "
                                     "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00"),
                             f32(0.25F)}));
    capture.FromClient(velmarRequest({readDataref(7)}));
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"_ws.col.Info", "orvane.velmar.float"}, "frame.number > 6"),
        ElementsAre("Velmar answer: register no/such: failed, read no/such = 0.25|0.25",
                    "Velmar: read test/float|"));
}

TEST_F(LostPlaceTest, LooksForAnIdentificationInARestThatSharesItsSegment) {
    capture.Connect();
    capture.FromClient(fromHex("55 66 77 88 02 00 00 00 07 00"));
    capture.FromServer(fromHex("00 00 00 00"));
    capture.FromClient(join({fromHex("00 00"), kVelmar, pollCommandStates()}));
    capture.FromClient(tarnelRequest(versionMessage()));
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file),
                ElementsAre("Velmar; Velmar packet, cut", "Velmar answer: empty",
                            "dropped: 02 00 00 00; 12 bytes wait", "dropped: 07 00 00 00"));
}

TEST_F(LostPlaceTest, SaysThatTheRestOfSeveralSegmentsCannotBeFollowed) {
    const Bytes request = definitions();
    capture.Connect();
    capture.FromClient(Bytes(request.begin(), request.begin() + 400));
    capture.FromServer(kEmptyOutputs);
    capture.FromClientInPieces(Bytes(request.begin() + 400, request.end()), 100);
    capture.FromClient(query());
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file), ElementsAre("Tarnel request, cut [TCP segment of a reassembled PDU]",
                                           "Tarnel answer: 0 outputs", "rest of a torn request",
                                           "Tarnel DATA: 0 items"));
    EXPECT_THAT(
        expertsOf(file, "frame.number > 5"),
        ElementsAre("8 Warning: torn, frame 5 answers the part that had arrived: the plugin looks "
                    "for an identification in the rest",
                    "9 Warning: lost its place in frame 5: what becomes of this is not certain"));
}

} // namespace
