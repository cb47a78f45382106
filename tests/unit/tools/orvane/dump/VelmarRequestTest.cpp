#include "tools/orvane/dump/VelmarRequest.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/VelmarMessages.h"

using orvane::tool::dump::ByteView;
using orvane::tool::dump::Mark;
using orvane::tool::dump::MarkKind;
using orvane::tool::dump::Message;
using orvane::tool::dump::readVelmarExchange;
using orvane::tool::dump::VelmarExchange;
using orvane::tool::dump::VelmarNames;
using orvane::tool::dump::VelmarType;
using Marks = std::vector<Mark>;

namespace {

// A connection with a dataref of each type, 1 to 5, one of type none, 6, and the command 9.
class VelmarRequestTest : public testing::Test {
protected:
    VelmarRequestTest() {
        names.datarefs = {
            {1, {"s/int", VelmarType::Int, 0}},           {2, {"s/float", VelmarType::Float, 0}},
            {3, {"s/byte", VelmarType::Byte, 0}},         {4, {"s/ints", VelmarType::IntArray, 2}},
            {5, {"s/floats", VelmarType::FloatArray, 2}}, {6, {"s/none", VelmarType::None, 0}}};
        names.commands = {{9, "s/press"}};
    }

    VelmarExchange read(const Bytes& request, const Bytes& answer,
                        const std::set<std::size_t>& sends = {}) {
        return readVelmarExchange(request, sends, ByteView(answer), names);
    }

    VelmarExchange readUnanswered(const Bytes& request) {
        return readVelmarExchange(request, {}, std::nullopt, names);
    }

    // The line that the simulator's log ends with.
    void expectEnd(const Bytes& request, const std::string& line) {
        const VelmarExchange exchange = readUnanswered(request);
        EXPECT_TRUE(exchange.endsSimulator) << toHex(request);
        ASSERT_EQ(exchange.packets.size(), 1U) << toHex(request);
        EXPECT_EQ(exchange.packets[0].marks, (Marks{{MarkKind::EndsSimulator, line}}));
    }

    // Left unread, so that nothing is consumed.
    void expectWait(const Bytes& request, const std::string& kind) {
        const VelmarExchange exchange = readUnanswered(request);
        EXPECT_FALSE(exchange.endsSimulator);
        EXPECT_EQ(exchange.consumed, 0U);
        ASSERT_EQ(exchange.packets.size(), 1U) << toHex(request);
        EXPECT_EQ(exchange.packets[0].kind, kind);
        ASSERT_EQ(exchange.packets[0].marks.size(), 1U);
        EXPECT_EQ(exchange.packets[0].marks[0].kind, MarkKind::Torn);
    }

    VelmarNames names;
};

Bytes beginningOf(const Bytes& bytes, std::size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::string summary(const std::vector<Message>& messages) {
    std::string text;
    for (const Message& message : messages) {
        text += message.kind + "|" + message.text + "\n";
    }
    return text;
}

} // namespace

TEST_F(VelmarRequestTest, ReadsRegistrations) {
    const VelmarExchange exchange =
        read(fromHex("01 00 00 00 07 00 00 00 05 00 00 00 03 00 00 00 03 73 2F 78 "
                     "03 00 00 00 08 00 00 00 04 73 2F 75 70 00 00 00 00"),
             fromHex("01 00 00 00 07 00 00 00 01 00 00 00 "
                     "03 00 00 00 08 00 00 00 01 00 00 00"));
    EXPECT_EQ(summary(exchange.packets),
              "register dataref|7 s/x float[3]\n"
              "register command|8 s/up\n"
              "unknown|0x00000000\n");
    EXPECT_EQ(exchange.packets[0].values.dump(),
              R"({"id":7,"name":"s/x","type":5,"array_size":3})");
    EXPECT_EQ(exchange.packets[1].values.dump(), R"({"id":8,"name":"s/up"})");
    EXPECT_EQ(summary(exchange.replies),
              "register dataref|7 s/x: success\n"
              "register command|8 s/up: success\n");
    EXPECT_EQ(exchange.replies[0].values.dump(), R"({"id":7,"success":true})");
    EXPECT_EQ(exchange.consumed, 37U);
    EXPECT_EQ(names.DatarefText(7), "7 s/x");
    EXPECT_EQ(names.CommandText(8), "8 s/up");
}

TEST_F(VelmarRequestTest, KeepsTheFormerWhenARegistrationFails) {
    const VelmarExchange exchange =
        read(join({registerDataref(1, 2, 0, "s/none"), registerCommand(9, "s/nothing")}),
             fromHex("01 00 00 00 01 00 00 00 02 00 00 00 01 00 00 00 "
                     "03 00 00 00 09 00 00 00 02 00 00 00 02 00 00 00"));
    EXPECT_EQ(summary(exchange.replies),
              "register dataref|1 s/none: no such dataref\n"
              "register command|9 s/nothing: no such command\n");
    EXPECT_EQ(exchange.replies[1].values.dump(), R"({"id":9,"success":false})");
    EXPECT_EQ(names.DatarefText(1), "1 s/int");
    EXPECT_EQ(names.CommandText(9), "9 s/press");
}

TEST_F(VelmarRequestTest, ForgetsWhatIsUnregistered) {
    const VelmarExchange exchange =
        read(join({unregisterDataref(1), unregisterCommand(9), unregisterCommand(9)}),
             fromHex("02 00 00 00 01 00 00 00 01 00 00 00 "
                     "04 00 00 00 09 00 00 00 01 00 00 00 "
                     "04 00 00 00 09 00 00 00 02 00 00 00 02 00 00 00"));
    EXPECT_EQ(summary(exchange.packets),
              "unregister dataref|1 s/int\n"
              "unregister command|9 s/press\n"
              "unregister command|9\n");
    EXPECT_EQ(summary(exchange.replies),
              "unregister dataref|1 s/int: success\n"
              "unregister command|9 s/press: success\n"
              "unregister command|9: no such command\n");
    EXPECT_EQ(names.DatarefText(1), "1");
}

TEST_F(VelmarRequestTest, ReadsValuesOfEveryType) {
    const VelmarExchange exchange =
        read(join({readDataref(1), readDataref(2), readDataref(3), readDataref(4), readDataref(5),
                   readDataref(6), readDataref(8)}),
             fromHex("05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 FB FF FF FF "
                     "05 00 00 00 02 00 00 00 01 00 00 00 04 00 00 00 00 C0 28 47 "
                     "05 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 C8 "
                     "05 00 00 00 04 00 00 00 01 00 00 00 08 00 00 00 01 00 00 00 02 00 00 00 "
                     "05 00 00 00 05 00 00 00 01 00 00 00 08 00 00 00 00 00 80 3F 00 00 00 40 "
                     "05 00 00 00 06 00 00 00 01 00 00 00 "
                     "05 00 00 00 08 00 00 00 02 00 00 00 01 00 00 00"));
    EXPECT_EQ(summary(exchange.replies),
              "read dataref|1 s/int = -5\n"
              "read dataref|2 s/float = 43200.0\n"
              "read dataref|3 s/byte = 200\n"
              "read dataref|4 s/ints = [1, 2]\n"
              "read dataref|5 s/floats = [1.0, 2.0]\n"
              "read dataref|6 s/none: success\n"
              "read dataref|8: no such dataref\n");
    EXPECT_EQ(exchange.replies[3].values.dump(), R"({"id":4,"success":true,"value":[1,2]})");
    EXPECT_EQ(exchange.packets[6].marks, (Marks{{MarkKind::Unknown, "not registered"}}));
}

TEST_F(VelmarRequestTest, ReadsWrites) {
    const VelmarExchange exchange =
        read(join({writeDataref(1, i32(-5)), writeDataref(2, f32(0.5F)), writeDataref(3, {200}),
                   writeDataref(4, fromHex("01 00 00 00 02 00 00 00"))}),
             fromHex("06 00 00 00 01 00 00 00 01 00 00 00 06 00 00 00 02 00 00 00 01 00 00 00 "
                     "06 00 00 00 03 00 00 00 01 00 00 00 06 00 00 00 04 00 00 00 01 00 00 00"));
    EXPECT_EQ(summary(exchange.packets),
              "write dataref|1 s/int = -5\n"
              "write dataref|2 s/float = 0.5\n"
              "write dataref|3 s/byte = 200\n"
              "write dataref|4 s/ints = [1, 2]\n");
    EXPECT_EQ(exchange.packets[0].values.dump(), R"({"id":1,"value":-5})");
    EXPECT_EQ(exchange.replies.size(), 4U);
    EXPECT_EQ(exchange.replies[3].text, "4 s/ints: success");
}

TEST_F(VelmarRequestTest, TakesTheValueOfAnUnknownNumberForPackets) {
    const VelmarExchange exchange =
        read(writeDataref(8, i32(9)), fromHex("04 00 00 00 09 00 00 00 01 00 00 00"));
    EXPECT_EQ(summary(exchange.packets), "write dataref|8\nunregister command|9 s/press\n");
    EXPECT_EQ(
        exchange.packets[0].marks,
        (Marks{{MarkKind::Unknown, "not registered: the value is taken for the next packets"}}));
}

TEST_F(VelmarRequestTest, LeavesAWriteOfAnotherLengthUnread) {
    const VelmarExchange exchange = read(join({readDataref(3), writeDataref(1, zeros(8))}),
                                         fromHex("05 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 "
                                                 "C8"));
    EXPECT_EQ(exchange.consumed, 8U);
    ASSERT_EQ(exchange.packets.size(), 2U);
    EXPECT_EQ(exchange.packets[1].marks,
              (Marks{{MarkKind::Odd, "no value of type int: left unread, with all that follows"}}));
    EXPECT_EQ(readUnanswered(writeDataref(6, i32(1))).packets[0].marks[0].text,
              "no value of type none: left unread, with all that follows");
}

TEST_F(VelmarRequestTest, ReadsCommandsAndTheirStates) {
    names.commands[10] = "s/hold";
    const VelmarExchange exchange =
        read(join({runCommand(9, 1), runCommand(9, 2), runCommand(9, 3), runCommand(8, 1),
                   pollCommandStates(), pollCommandStates()}),
             fromHex("02 00 00 00 09 00 00 00 02 0A 00 00 00 01 00 00 00 00"));
    EXPECT_EQ(summary(exchange.packets),
              "run command|9 s/press: once\n"
              "run command|9 s/press: begin\n"
              "run command|9 s/press: end\n"
              "run command|8: once\n"
              "poll command states|\npoll command states|\n");
    EXPECT_EQ(exchange.packets[3].marks, (Marks{{MarkKind::Unknown, "not registered: skipped"}}));
    EXPECT_EQ(summary(exchange.replies),
              "poll command states|9 s/press: pressed and released, 10 s/hold: down\n"
              "poll command states|none has changed\n");
    EXPECT_EQ(exchange.replies[0].values.dump(),
              R"({"states":[{"id":9,"state":2},{"id":10,"state":1}]})");
}

TEST_F(VelmarRequestTest, TellsAnEmptyAnswer) {
    EXPECT_EQ(summary(read(runCommand(9, 1), {}).replies), "answer|empty\n");
    EXPECT_EQ(summary(read({}, {}).replies), "answer|empty\n");
}

TEST_F(VelmarRequestTest, SkipsUnknownPackets) {
    const VelmarExchange exchange = read(fromHex("0C 00 00 00 55 66 77 88 08 00 00 00"), zeros(4));
    EXPECT_EQ(summary(exchange.packets),
              "unknown|0x0000000C\nunknown|0x88776655\n"
              "poll command states|\n");
    EXPECT_EQ(exchange.packets[0].marks,
              (Marks{{MarkKind::Unknown, "no such packet: its 4 bytes are skipped"}}));
    EXPECT_EQ(exchange.packets[1].marks,
              (Marks{{MarkKind::Unknown, "a second identification: skipped"}}));
}

TEST_F(VelmarRequestTest, LeavesWhatWasNotAnsweredToTheNextRequest) {
    const Bytes request = join({readDataref(3), fromHex("55 66 77 88"), pollCommandStates()});
    const Bytes first = fromHex("05 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 C8");
    EXPECT_EQ(read(request, first, {8}).consumed, 8U);
    // In one send, or with an answer to both, it is one request.
    EXPECT_EQ(read(request, first, {}).consumed, 12U);
    EXPECT_EQ(read(request, join({first, zeros(4)}), {8}).consumed, 16U);
}

TEST_F(VelmarRequestTest, TellsPacketsThatArrivedTooLateFromTorn) {
    // A simulator that answers has not ended, so the torn read was not there yet.
    const VelmarExchange exchange =
        read(join({readDataref(3), beginningOf(readDataref(1), 6)}),
             fromHex("05 00 00 00 03 00 00 00 01 00 00 00 01 00 00 00 C8"));
    EXPECT_EQ(exchange.packets.size(), 1U);
    EXPECT_EQ(exchange.consumed, 8U);
    EXPECT_FALSE(exchange.endsSimulator);
}

TEST_F(VelmarRequestTest, LeavesTornPacketsUnread) {
    expectWait(fromHex("01 00"), "packet");
    for (std::size_t size = 4; size <= 16; ++size) {
        expectWait(beginningOf(registerDataref(1, 1, 0, "some/name"), size), "register dataref");
    }
    for (std::size_t size = 4; size <= 7; ++size) {
        expectWait(beginningOf(unregisterDataref(1), size), "unregister dataref");
        expectWait(beginningOf(unregisterCommand(9), size), "unregister command");
    }
    for (std::size_t size = 12; size <= 19; ++size) {
        expectWait(beginningOf(writeDataref(4, zeros(8)), size), "write dataref");
    }
    expectWait(beginningOf(runCommand(9, 1), 4), "run command");
    EXPECT_EQ(readUnanswered(fromHex("01 00")).packets[0].marks,
              (Marks{{MarkKind::Torn, "2 bytes of its type: left unread"}}));
    EXPECT_EQ(readUnanswered(fromHex("07 00 00 00")).packets[0].marks,
              (Marks{{MarkKind::Torn, "4 bytes have arrived: left unread"}}));
}

TEST_F(VelmarRequestTest, KnowsWhichTornPacketsEndTheSimulator) {
    const std::string shortWord = "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4";
    const std::string shortByte = "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1";
    for (std::size_t size = 4; size <= 7; ++size) {
        expectEnd(beginningOf(readDataref(1), size), shortWord);
        expectEnd(beginningOf(writeDataref(1, i32(0)), size), shortWord);
        expectEnd(beginningOf(writeDataref(1, i32(0)), size + 4), shortWord);
        expectEnd(beginningOf(writeDataref(1, i32(0)), size + 8),
                  "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4");
        expectEnd(beginningOf(writeDataref(2, f32(0)), size + 8),
                  "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4");
    }
    expectEnd(beginningOf(writeDataref(3, {1}), 12), shortByte);
    for (std::size_t size = 5; size <= 7; ++size) {
        expectEnd(beginningOf(runCommand(9, 1), size), shortWord);
    }
    expectEnd(beginningOf(runCommand(9, 1), 8), shortByte);
}

TEST_F(VelmarRequestTest, KnowsWhichTornRegistrationsEndTheSimulator) {
    const std::string longName(65, 'n');
    expectEnd(beginningOf(registerDataref(1, 1, 0, longName), 20),
              "FATAL@XPlaneDataRef::FromStream : tried to read string with A bytes, got 3");
    expectEnd(beginningOf(registerCommand(1, longName), 17),
              "FATAL@VelmarDataRef::FromStream : tried to read string with A bytes, got 8");
    expectEnd(beginningOf(registerCommand(1, longName), 16),
              "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref");
    // Whole, and yet too short.
    expectEnd(registerCommand(1, "s/press"),
              "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref");
    EXPECT_FALSE(readUnanswered(registerCommand(1, "s/press2")).endsSimulator);
    EXPECT_FALSE(readUnanswered(registerDataref(1, 1, 0, "")).endsSimulator);
}

TEST_F(VelmarRequestTest, MarksRepliesThatDoNotFit) {
    const VelmarExchange other = read(readDataref(1), fromHex("05 00 00 00 02 00 00 00"));
    EXPECT_EQ(other.replies[0].marks,
              (Marks{{MarkKind::Odd, "another reply was expected: 05 00 00 00 02 00 00 00"}}));
    const VelmarExchange shorter =
        read(readDataref(1), fromHex("05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 01 02"));
    EXPECT_EQ(shorter.replies[0].marks, (Marks{{MarkKind::Odd, "a value of 4 bytes: 01 02"}}));
    const VelmarExchange longer = read(pollCommandStates(), fromHex("00 00 00 00 AA BB"));
    EXPECT_EQ(longer.replies.back().marks,
              (Marks{{MarkKind::Odd, "more than the packets ask for: AA BB"}}));
    const VelmarExchange states = read(pollCommandStates(), fromHex("02 00 00 00 09 00 00 00 01"));
    EXPECT_EQ(states.replies[0].marks, (Marks{{MarkKind::Odd, "2 states: 09 00 00 00 01"}}));
    const VelmarExchange status =
        read(unregisterDataref(1), fromHex("02 00 00 00 01 00 00 00 07 00 00 00"));
    EXPECT_EQ(status.replies[0].text, "1 s/int: status 7");
    EXPECT_EQ(status.replies[0].marks, (Marks{{MarkKind::Odd, "no status: "}}));
}

TEST_F(VelmarRequestTest, LetsTheAnswerExplainNumbersFromBeforeTheCapture) {
    VelmarNames unknown;
    unknown.areComplete = false;
    const Bytes request = join({writeDataref(8, i32(5)), readDataref(8), runCommand(7, 1)});
    const Bytes answer = fromHex(
        "06 00 00 00 08 00 00 00 01 00 00 00 "
        "05 00 00 00 08 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00");
    const VelmarExchange exchange = readVelmarExchange(request, {}, ByteView(answer), unknown);
    EXPECT_EQ(summary(exchange.packets),
              "write dataref|8 = 05 00 00 00\n"
              "read dataref|8\nrun command|7: once\n");
    EXPECT_EQ(summary(exchange.replies),
              "write dataref|8: success\n"
              "read dataref|8 = 05 00 00 00\n");
    for (const Message& packet : exchange.packets) {
        EXPECT_TRUE(packet.marks.empty()) << packet.kind;
    }
}
