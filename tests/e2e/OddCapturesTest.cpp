#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

#include "e2e/DrawnCapture.h"
#include "e2e/Tshark.h"
#include "support/TarnelMessages.h"
#include "support/TemporaryDirectory.h"
#include "support/VelmarMessages.h"

// What Wireshark shows of captures as networks, slow clients and short memories make them.

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const Bytes kTarnel = fromHex("11 22 33 44");
const Bytes kVelmar = fromHex("55 66 77 88");

// One int output, 1, "test/int", and an input, 7, for it; 752 - 148 bytes.
Bytes definitions() {
    return join({kTarnel, definitionsMessage({{.action = 7, .targetType = 1, .target = "test/int"}},
                                             {{.id = 1, .name = "test/int", .type = 1}})});
}

Bytes data(std::int32_t value) {
    return join({kTarnel, dataMessage({{7, value}})});
}

// The answer to both.
Bytes outputs(const char* value) {
    return join({fromHex("18 00 00 00 01 00 00 00 04 00 00 00"), fromHex(value),
                 fromHex("FF FF 00 00 04 00 00 00 01 02 03 04")});
}

Bytes registration() {
    return join({kVelmar, registerDataref(7, 2, 0, "test/float")});
}

Bytes registrationAnswer() {
    return fromHex("0C 00 00 00 01 00 00 00 07 00 00 00 01 00 00 00");
}

const Bytes kEmptyOutputs = fromHex("0C 00 00 00 FF FF 00 00 04 00 00 00 01 02 03 04");
const std::string kGap = "[TCP ACKed unseen segment] [TCP Previous segment not captured] ";

// The dissector's trees, without those of segments that wait for the next.
std::vector<std::string> treesOf(const std::filesystem::path& file,
                                 std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-V", "-O", "orvane"});
    std::vector<std::string> trees;
    bool isOurs = false;
    for (const std::string& line : runTshark(file, arguments)) {
        if (!line.starts_with("    ")) {
            isOurs = line.starts_with("XPlaneOrvane") && !line.ends_with(", cut");
        }
        if (isOurs) {
            trees.push_back(line);
        }
    }
    return trees;
}

class OddCapturesTest : public testing::Test {
protected:
    TemporaryDirectory directory;
    DrawnCapture capture{"drawn.pcap"};
};

TEST_F(OddCapturesTest, PutsRequestsAndAnswersTogetherThatComeByteByByte) {
    capture.Connect();
    capture.FromClientInPieces(data(5), 1);
    capture.FromServerInPieces(kEmptyOutputs, 1);
    capture.FromClientInPieces(registration(), 1);
    capture.FromServerInPieces(registrationAnswer(), 3);
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"_ws.col.Info", "orvane.request_in"},
                 "orvane and not orvane.expert.cut"),
        ElementsAre("Tarnel identification alone|", "Tarnel DATA 1 item|",
                    "Tarnel answer: 0 outputs|27", "Velmar identification alone|",
                    "Velmar: register test/float|", "Velmar answer: register test/float: ok|74"));
}

TEST_F(OddCapturesTest, TellsRequestsAndAnswersInOneSegmentApart) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(outputs("00 00 00 00"));
    capture.FromClient(join({data(5), data(6)}));
    capture.FromServer(join({outputs("00 00 00 00"), outputs("05 00 00 00")}));
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"_ws.col.Info", "orvane.response_in", "orvane.request_in"},
                         "orvane", {"-2"}),
                ElementsAre("Tarnel DEFINITIONS 1 input, 1 output|5|", "Tarnel answer: 1 output||4",
                            "Tarnel DATA 1 item; Tarnel DATA 1 item|7,7|",
                            "Tarnel answer: 1 output; Tarnel answer: 1 output||6,6"));
    EXPECT_THAT(
        expertsOf(file),
        ElementsAre("6 Note: in one segment with another request: waits in the plugin until "
                    "more bytes arrive"));
}

TEST_F(OddCapturesTest, TakesPacketsOfALaterSegmentForTheSameVelmarRequest) {
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

TEST_F(OddCapturesTest, TakesAnAnswerToTwoVelmarRequestsForOne) {
    capture.Connect();
    capture.FromClient(join({kVelmar, pollCommandStates()}));
    capture.FromClient(join({kVelmar, readDataref(3)}));
    capture.FromServer(
        fromHex("14 00 00 00 00 00 00 00 05 00 00 00 03 00 00 00 02 00 00 00 01 00 00 00"));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre("5 Note: sent before the answer to the request before it",
                            "6 Note: an unknown number",
                            "6 Note: answers the request of frame 5 too, as one with this"));
}

TEST_F(OddCapturesTest, TakesAMessageThatFollowsItsIdentificationForOneRequest) {
    capture.Connect();
    capture.FromClient(kTarnel);
    capture.FromClient(versionMessage());
    capture.FromServer(fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00"));
    EXPECT_THAT(infosOf(capture.Finish()),
                ElementsAre("Tarnel identification alone", "Tarnel VERSION",
                            "Tarnel answer: version 1.0.7.10"));
}

TEST_F(OddCapturesTest, DropsFourBytesOfWhatIsNoIdentification) {
    capture.Connect();
    capture.FromClient(fromHex("01 02 03 04"));
    capture.FromClient(fromHex("05 06 07 08 09"));
    capture.FromClient(fromHex("0A 0B 0C 0D"));
    EXPECT_THAT(expertsOf(capture.Finish()),
                ElementsAre("4 Note: an unknown identification: dropped without an answer",
                            "5 Note: an unknown identification: dropped without an answer",
                            "5 Warning: waits for more bytes; the next identification is looked "
                            "for here: the connection has lost its place",
                            "6 Warning: lost its place in frame 5"));
}

TEST_F(OddCapturesTest, LosesItsPlaceAsThePluginDoes) {
    const auto expectLost = [this](const Bytes& request) {
        capture.Connect();
        capture.FromClient(request);
    };
    expectLost(join({kTarnel, fromHex("01 02 03 04 05 06 07 08")}));
    expectLost(join({kTarnel, fromHex("C0 FF EE DD E8 01 00 00 01 00 00 00 "
                                      "74 00 00 00 00 00 00 02")}));
    expectLost(
        join({kTarnel, fromHex("C0 FF EE DD 04 00 00 00 00 00 00 00 78 00 00 00 01 00 00 00"),
              zeros(120)}));
    expectLost(join({registration(), writeDataref(7, zeros(8)), pollCommandStates()}));
    expectLost(join({kVelmar, registerDataref(1, 9, 0, "test/int"), writeDataref(1, zeros(4))}));
    expectLost(join({kVelmar, writeDataref(2, fromHex("04 00 00 00"))}));
    EXPECT_THAT(
        expertsOf(capture.Finish(), "orvane.expert.lost_place"),
        ElementsAre(
            "4 Warning: an unknown message: the connection has lost its place",
            "8 Warning: announces 3892314620 bytes, more than the plugin's buffer holds: the "
            "connection has lost its place",
            "12 Note: an output of this type has no value",
            "12 Warning: output records are read at 116 bytes each, not 120",
            "12 Warning: announces 140 bytes and has 136: the connection has lost its place",
            "16 Warning: waits, for a value of 8 bytes where 4 are wanted: the connection has lost "
            "its place",
            "20 Warning: waits, for data type 0 has no value: the connection has lost its place",
            "24 Warning: an unknown number: the value is taken for the next packets"));
}

TEST_F(OddCapturesTest, NoticesAnswersThatAreNotWhatWasDeclared) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(outputs("00 00 00 00"));
    capture.FromClient(data(1));
    capture.FromServer(kEmptyOutputs);
    capture.FromServer(kEmptyOutputs);
    capture.FromClient(join({kTarnel, versionMessage()}));
    capture.FromServer(outputs("01 00 00 00"));
    capture.FromClient(join({kVelmar, readDataref(1), pollCommandStates()}));
    capture.FromServer(fromHex("0C 00 00 00 05 00 00 00 02 00 00 00 01 00 00 00"));
    capture.FromClient(join({kVelmar, pollCommandStates()}));
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

TEST_F(OddCapturesTest, GoesBackToTheFormerDefinitionsWhenTheirOutputsAnswerNewOnes) {
    capture.Connect();
    capture.FromClient(definitions());
    capture.FromServer(kEmptyOutputs);
    capture.FromClient(data(1));
    capture.FromServer(kEmptyOutputs);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file),
                ElementsAre("Tarnel DEFINITIONS 1 input, 1 output", "Tarnel answer: 0 outputs",
                            "Tarnel DATA 1 item", "Tarnel answer: 0 outputs"));
    EXPECT_THAT(expertsOf(file, "frame.number == 5"),
                ElementsAre("5 Warning: the former outputs: the plugin had only a part of the "
                            "DEFINITIONS: the connection has lost its place"));
}

TEST_F(OddCapturesTest, KeepsTheFormerDatarefWhenARegistrationFails) {
    capture.Connect();
    capture.FromClient(registration());
    capture.FromServer(registrationAnswer());
    capture.FromClient(join({kVelmar, registerDataref(7, 1, 0, "no/such"), readDataref(7)}));
    capture.FromServer(join({fromHex("24 00 00 00 01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00 "
                                     "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00"),
                             f32(0.25F)}));
    capture.FromClient(join({kVelmar, readDataref(7)}));
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"_ws.col.Info", "orvane.velmar.float"}, "frame.number > 6"),
        ElementsAre("Velmar answer: register no/such: failed, read no/such = 0.25|0.25",
                    "Velmar: read test/float|"));
}

TEST_F(OddCapturesTest, ShowsTornVelmarRequestsAsThePageDoes) {
    capture.Connect();
    capture.FromClient(fromHex("55 66 77 88 02 00 00 00 07 00"));
    capture.FromServer(fromHex("00 00 00 00"));
    capture.FromClient(fromHex("00 00"));
    capture.FromClient(fromHex("55 66 77 88 08 00 00 00"));
    capture.FromClient(fromHex("55 66 77 88 08 00 00 00"));
    capture.FromServer(fromHex("08 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_THAT(infosOf(capture.Finish()),
                ElementsAre("Velmar; Velmar packet, cut", "Velmar answer: empty",
                            "Velmar: unregister dataref 7", "Velmar: poll", "Velmar: poll",
                            "Velmar answer: poll: 0 commands, poll: 0 commands"));
}

TEST_F(OddCapturesTest, IsNotConfusedByRetransmissions) {
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

TEST_F(OddCapturesTest, ClaimsNothingOfWhatWasBeforeTheCapture) {
    capture.JoinConnection();
    capture.FromServer(fromHex("01 02 03"));
    capture.JoinConnection();
    capture.FromClient(fromHex("01 02 03 04 05 06 07 08"));
    capture.FromClient(data(5));
    capture.FromServer(outputs("01 00 00 00"));
    capture.FromClient(
        join({kVelmar, writeDataref(7, fromHex("01 02 03 04")), readDataref(7), runCommand(3, 1)}));
    capture.FromServer(
        fromHex("20 00 00 00 06 00 00 00 07 00 00 00 01 00 00 00 "
                "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 01 02 03 04"));
    const auto file = capture.Finish();
    EXPECT_THAT(
        fieldsOf(file, {"_ws.col.Info", "orvane.velmar.value", "orvane.tarnel.aircraft.id"},
                 "frame.number > 2"),
        ElementsAre("Tarnel DATA 1 item||", "Tarnel answer: outputs||0x04030201",
                    "Velmar: write dataref 7, read dataref 7, run command 3|01020304|",
                    "Velmar answer: write dataref 7: ok, read dataref 7 = 4 bytes|01020304|"));
    EXPECT_THAT(expertsOf(file),
                ElementsAre("2 Note: no identification: the capture begins within a request",
                            "5 Note: registered before the capture begins"));
}

TEST_F(OddCapturesTest, ClaimsNothingOfWhatTheCaptureMissed) {
    capture.Connect();
    capture.MissFromClient(definitions());
    capture.MissFromServer(outputs("00 00 00 00"));
    capture.FromClient(data(5));
    capture.FromServer(outputs("00 00 00 00"));
    const auto file = capture.Finish();
    EXPECT_THAT(fieldsOf(file, {"_ws.col.Info", "orvane.request_in"}),
                ElementsAre(kGap + "Tarnel DATA 1 item|", kGap + "Tarnel answer: outputs|4"));
    EXPECT_THAT(expertsOf(file),
                ElementsAre("4 Note: bytes before this segment are not in the capture"));
}

TEST_F(OddCapturesTest, LinksNoAnswerToARequestFromBeforeAGap) {
    capture.Connect();
    capture.FromClient(data(5));
    capture.MissFromServer(kEmptyOutputs);
    capture.FromClient(data(6));
    capture.FromServer(kEmptyOutputs);
    capture.Connect();
    capture.FromClient(data(5));
    capture.MissFromServer(kEmptyOutputs);
    capture.MissFromClient(data(6));
    capture.FromClient(data(7));
    capture.FromServer(kEmptyOutputs);
    EXPECT_THAT(
        fieldsOf(capture.Finish(), {"frame.number", "orvane.request_in"}, "orvane.tarnel.aircraft"),
        ElementsAre("6|5", "12|11"));
}

TEST_F(OddCapturesTest, SkipsAnIdentificationBehindARequestInTheSameSegment) {
    const Bytes request = registration();
    capture.Connect();
    capture.FromClient(Bytes(request.begin(), request.begin() + 20));
    capture.FromClient(
        join({Bytes(request.begin() + 20, request.end()), kVelmar, pollCommandStates()}));
    EXPECT_THAT(expertsOf(capture.Finish(), "frame.number == 5"),
                ElementsAre("5 Note: identification inside a request: its four bytes are "
                            "skipped"));
}

TEST_F(OddCapturesTest, GoesOnBehindPacketsThatWereCapturedInPart) {
    capture.Connect();
    capture.PartOfFromClient(definitions(), 60);
    capture.PartOfFromServer(outputs("01 00 00 00"), 12);
    capture.FromClient(data(5));
    capture.FromServer(outputs("02 00 00 00"));
    capture.PartOfFromClient(join({kVelmar, registerDataref(7, 2, 0, "test/float")}), 10);
    capture.PartOfFromServer(registrationAnswer(), 2);
    const auto file = capture.Finish();
    EXPECT_THAT(infosOf(file), ElementsAre("Tarnel DEFINITIONS 1 input, 1 output",
                                           "Tarnel answer: outputs", "Tarnel DATA 1 item",
                                           "Tarnel answer: outputs", "Velmar", "not decoded"));
    EXPECT_THAT(expertsOf(file,
                          "orvane.expert.ends_process or orvane.expert.lost_place or "
                          "orvane.expert.mismatch"),
                IsEmpty());
}

TEST_F(OddCapturesTest, GoesOnWhereSegmentsAreNotPutTogether) {
    capture.Connect();
    capture.FromClientInPieces(definitions(), 400);
    capture.FromServerInPieces(outputs("01 00 00 00"), 20);
    capture.FromClient(data(5));
    capture.FromServer(outputs("02 00 00 00"));
    EXPECT_THAT(infosOf(capture.Finish(), {"-o", "tcp.desegment_tcp_streams:FALSE"}),
                ElementsAre("Tarnel DEFINITIONS 1 input, 1 output", "continuation",
                            "Tarnel answer: outputs", "continuation", "Tarnel DATA 1 item",
                            "Tarnel answer: outputs"));
}

TEST_F(OddCapturesTest, ShowsTheSameInEveryPass) {
    capture.Connect();
    capture.FromClientInPieces(definitions(), 100);
    capture.FromServerInPieces(outputs("01 00 00 00"), 7);
    capture.FromClient(join({data(5), data(6)}));
    capture.FromServer(join({outputs("00 00 00 00"), outputs("05 00 00 00")}));
    capture.RepeatFromServer();
    capture.FromClient(registration());
    capture.FromServer(registrationAnswer());
    const auto file = capture.Finish();
    const std::vector<std::string> once = treesOf(file, {"-Y", "tcp"});
    EXPECT_THAT(once, Contains("XPlaneOrvane, Tarnel DEFINITIONS 1 input, 1 output"));
    // Without a filter tshark's first pass knows no fields, and no answers in the second.
    EXPECT_EQ(treesOf(file, {"-2"}), once);
    std::vector<std::string> linked = treesOf(file, {"-2", "-Y", "tcp"});
    EXPECT_EQ(
        std::erase_if(
            linked, [](const std::string& line) { return line.starts_with("    [Response in: "); }),
        4U);
    EXPECT_EQ(linked, once);
}

TEST_F(OddCapturesTest, ListensOnThePortOfThePreference) {
    DrawnCapture elsewhere("elsewhere.pcap", 48001);
    elsewhere.Connect();
    elsewhere.FromClient(data(5));
    elsewhere.FromServer(kEmptyOutputs);
    const auto file = elsewhere.Finish();
    EXPECT_THAT(infosOf(file), IsEmpty());
    EXPECT_THAT(infosOf(file, {"-o", "orvane.port:48001"}),
                ElementsAre("Tarnel DATA 1 item", "Tarnel answer: 0 outputs"));
    capture.Connect();
    capture.FromClient(data(5));
    EXPECT_THAT(infosOf(capture.Finish(), {"-o", "orvane.port:48001"}), IsEmpty());
}

TEST_F(OddCapturesTest, ShowsNoMoreThanWiresharkBears) {
    // 400000 packets of an unknown type would be more than a million items.
    Bytes request = kVelmar;
    request.resize(1'600'004);
    capture.Connect();
    capture.FromClientInPieces(request, 60'000);
    capture.FromServer(fromHex("00 00 00 00"));
    const std::vector<std::string> lines = runTshark(capture.Finish(), {"-Y", "orvane", "-V"});
    EXPECT_THAT(lines, Contains("    Packet: unknown type"));
    EXPECT_THAT(lines, Contains(StartsWith("    Not decoded: 0000")));
    EXPECT_THAT(lines, Each(Not(HasSubstr("Dissector bug"))));
    EXPECT_THAT(lines, Each(Not(HasSubstr("Lua Error"))));
}

TEST_F(OddCapturesTest, NeverFailsOnNonsense) {
    std::mt19937 random(2026);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const std::vector<Bytes> seeds{
        kTarnel,
        kVelmar,
        definitions(),
        data(3),
        registration(),
        registrationAnswer(),
        outputs("00 00 00 00"),
        kEmptyOutputs,
        join({kVelmar, registerCommand(1, "test/once"), writeDataref(7, f32(1.0F)), readDataref(7),
              runCommand(1, 1), pollCommandStates(), unregisterDataref(7)})};
    for (int connection = 0; connection < 100; ++connection) {
        if (below(4) > 0) {
            capture.Connect();
        } else {
            capture.JoinConnection();
        }
        for (std::size_t segment = below(12) + 1; segment > 0; --segment) {
            Bytes bytes = seeds[below(seeds.size())];
            for (std::size_t changes = below(4); changes > 0; --changes) {
                bytes[below(bytes.size())] = static_cast<unsigned char>(random());
            }
            bytes.resize(below(3) > 0 ? bytes.size() : below(700) + 1);
            if (below(2) > 0) {
                capture.FromClient(bytes);
            } else {
                capture.FromServer(bytes);
            }
        }
    }
    const auto file = capture.Finish();
    for (const char* pass : {"-1", "-2"}) {
        std::vector<std::string> arguments{"-V"};
        if (pass == std::string("-2")) {
            arguments.emplace_back(pass);
        }
        const std::vector<std::string> lines = runTshark(file, arguments);
        EXPECT_THAT(lines, Contains(HasSubstr("XPlaneOrvane")));
        EXPECT_THAT(lines, Not(Contains(HasSubstr("Lua Error"))));
        EXPECT_THAT(lines, Not(Contains(HasSubstr("Dissector bug"))));
    }
}

} // namespace
