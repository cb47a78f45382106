#include "VelmarProtocolTest.h"

#include <vector>

namespace {

constexpr const char* kUnknownDataref7 = "05 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00";

TEST_F(VelmarProtocolTest, HasItsIdentification) {
    EXPECT_EQ(protocol->GetProtocolIdentification(), 0x88776655U);
}

TEST_F(VelmarProtocolTest, AnswersNothingToAnEmptyBuffer) {
    EXPECT_EQ(ask(""), "");
}

TEST_F(VelmarProtocolTest, LeavesThreeBytesUnreadWithoutAReply) {
    EXPECT_EQ(ask("08 00 00"), "");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 3U);
    EXPECT_EQ(ask("00"), "00 00 00 00");
}

TEST_F(VelmarProtocolTest, RegistersADataref) {
    define("sim/a", xplmType_Int);
    EXPECT_EQ(ask("01 00 00 00  07 00 00 00  01 00 00 00  00 00 00 00  05  73 69 6D 2F 61"),
              "01 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(VelmarProtocolTest, RefusesADatarefThatTheSimulatorDoesNotKnow) {
    EXPECT_EQ(ask(datarefPacket(7, 1, 0, "sim/nowhere")),
              "01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolTest, RefusesADatarefWithoutAName) {
    EXPECT_EQ(ask(datarefPacket(7, 1, 0, "")), "01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(VelmarProtocolTest, DoesNotKeepARefusedDataref) {
    ask(datarefPacket(7, 1, 0, "sim/nowhere"));
    EXPECT_EQ(ask("05 00 00 00  07 00 00 00"), kUnknownDataref7);
}

TEST_F(VelmarProtocolTest, ReplacesADatarefThatIsRegisteredTwice) {
    registerInt(7, "sim/a");
    registerInt(7, "sim/b");
    simulator.Datarefs().SetInt("sim/a", 1);
    simulator.Datarefs().SetInt("sim/b", 2);
    EXPECT_EQ(ask("05 00 00 00  07 00 00 00"),
              "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 02 00 00 00");
}

TEST_F(VelmarProtocolTest, KeepsTheFormerDatarefWhenItsReplacementIsRefused) {
    registerInt(7, "sim/a");
    simulator.Datarefs().SetInt("sim/a", 1);
    ask(datarefPacket(7, 1, 0, "sim/nowhere"));
    EXPECT_EQ(ask("05 00 00 00  07 00 00 00"),
              "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 01 00 00 00");
}

// An answer with room for one word less shows what was done before it was full.
TEST_F(VelmarProtocolTest, LooksADatarefUpAfterTheReplysFirstTwoWords) {
    define("sim/a", xplmType_Int);
    simulator.Recorder().Enable();
    RingBuffer roomForOneWord(5, &logger);
    fill(in, datarefPacket(7, 1, 0, "sim/a"));
    EXPECT_THROW(protocol->Feed(&in, &roomForOneWord), FatalReport);
    EXPECT_TRUE(simulator.Recorder().CallsOf("XPLMFindDataRef").empty());

    drain(in);
    RingBuffer roomForTwoWords(9, &logger);
    fill(in, datarefPacket(7, 1, 0, "sim/a"));
    EXPECT_THROW(protocol->Feed(&in, &roomForTwoWords), FatalReport);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMFindDataRef").size(), 1U);
    EXPECT_EQ(toHex(drain(roomForTwoWords)), "01 00 00 00 07 00 00 00");
}

TEST_F(VelmarProtocolTest, UnregistersADataref) {
    registerInt(7, "sim/a");
    EXPECT_EQ(ask("02 00 00 00  07 00 00 00"), "02 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(ask("05 00 00 00  07 00 00 00"), kUnknownDataref7);
}

TEST_F(VelmarProtocolTest, ConfirmsTheUnregistrationOfADatarefThatIsNotThere) {
    EXPECT_EQ(ask("02 00 00 00  09 00 00 00"), "02 00 00 00 09 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolTest, AnswersTheReadOfAnUnknownDatarefWithTheFailureStatus) {
    EXPECT_EQ(ask("05 00 00 00  09 00 00 00"), "05 00 00 00 09 00 00 00 02 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolTest, ReadsAFloat) {
    define("sim/f", xplmType_Float);
    simulator.Datarefs().SetFloat("sim/f", 1.0F);
    ask(datarefPacket(8, 2, 0, "sim/f"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"),
              "05 00 00 00 08 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F");
}

TEST_F(VelmarProtocolTest, ReadsAByte) {
    define("sim/b", xplmType_Int);
    simulator.Datarefs().SetInt("sim/b", 0x1FE);
    ask(datarefPacket(8, 3, 0, "sim/b"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"),
              "05 00 00 00 08 00 00 00 01 00 00 00 01 00 00 00 FE");
}

TEST_F(VelmarProtocolTest, ReadsAnIntArray) {
    define("sim/v", xplmType_IntArray, 2);
    simulator.Datarefs().SetIntArray("sim/v", {1, -1});
    ask(datarefPacket(8, 4, 2, "sim/v"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"),
              "05 00 00 00 08 00 00 00 01 00 00 00 "
              "08 00 00 00 01 00 00 00 FF FF FF FF");
}

TEST_F(VelmarProtocolTest, ReadsAFloatArray) {
    define("sim/v", xplmType_FloatArray, 3);
    simulator.Datarefs().SetFloatArray("sim/v", {1.0F, -2.0F, 0.5F});
    ask(datarefPacket(8, 5, 3, "sim/v"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"),
              "05 00 00 00 08 00 00 00 01 00 00 00 "
              "0C 00 00 00 00 00 80 3F 00 00 00 C0 00 00 00 3F");
}

TEST_F(VelmarProtocolTest, ReadsAnArrayOfSizeZeroAsItsLengthOnly) {
    define("sim/v", xplmType_FloatArray, 3);
    ask(datarefPacket(8, 5, 0, "sim/v"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"), "05 00 00 00 08 00 00 00 01 00 00 00 00 00 00 00");
}

TEST_F(VelmarProtocolTest, ReadsNothingAfterTheStatusOfATypeWithoutAValue) {
    define("sim/a", xplmType_Int);
    ask(datarefPacket(8, 0, 0, "sim/a"));
    ask(datarefPacket(9, 6, 0, "sim/a"));
    EXPECT_EQ(ask("05 00 00 00  08 00 00 00"), "05 00 00 00 08 00 00 00 01 00 00 00");
    EXPECT_EQ(ask("05 00 00 00  09 00 00 00"), "05 00 00 00 09 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolTest, WritesAnInt) {
    registerInt(7, "sim/a");
    EXPECT_EQ(ask("06 00 00 00  07 00 00 00  04 00 00 00  FE FF FF FF"),
              "06 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/a"), -2);
}

TEST_F(VelmarProtocolTest, WritesAFloat) {
    define("sim/f", xplmType_Float);
    ask(datarefPacket(8, 2, 0, "sim/f"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  04 00 00 00  00 00 00 BF"),
              "06 00 00 00 08 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetFloat("sim/f"), -0.5F);
}

TEST_F(VelmarProtocolTest, WritesAByte) {
    define("sim/b", xplmType_Int);
    ask(datarefPacket(8, 3, 0, "sim/b"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  01 00 00 00  FF"),
              "06 00 00 00 08 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/b"), 255);
}

TEST_F(VelmarProtocolTest, WritesAnIntArray) {
    define("sim/v", xplmType_IntArray, 2);
    ask(datarefPacket(8, 4, 2, "sim/v"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  08 00 00 00  01 00 00 00 FF FF FF FF"),
              "06 00 00 00 08 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetIntArray("sim/v"), (std::vector<int>{1, -1}));
}

TEST_F(VelmarProtocolTest, WritesAFloatArray) {
    define("sim/v", xplmType_FloatArray, 2);
    ask(datarefPacket(8, 5, 2, "sim/v"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  08 00 00 00  00 00 80 3F 00 00 00 C0"),
              "06 00 00 00 08 00 00 00 01 00 00 00");
    EXPECT_EQ(simulator.Datarefs().GetFloatArray("sim/v"), (std::vector<float>{1.0F, -2.0F}));
}

TEST_F(VelmarProtocolTest, ConfirmsTheWriteOfAnArrayOfSizeZero) {
    define("sim/v", xplmType_IntArray, 2);
    ask(datarefPacket(8, 4, 0, "sim/v"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  00 00 00 00"), "06 00 00 00 08 00 00 00 01 00 00 00");
}

// The value 04 00 00 00 07 00 00 00 is the packet that unregisters command 7.
TEST_F(VelmarProtocolTest, ReadsTheValueOfAWriteToAnUnknownDatarefAsTheNextPacket) {
    registerCommand(7, "sim/command");
    EXPECT_EQ(ask("06 00 00 00  09 00 00 00  04 00 00 00  07 00 00 00"),
              "04 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(observer.unregistered.size(), 1U);
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(VelmarProtocolTest, ConsumesTypeAndIdentifierOfAWriteToAnUnknownDataref) {
    fill(in, fromHex("06 00 00 00  09 00 00 00  04 00 00 00  07 00 00 00"));
    EXPECT_EQ(protocol->tryParsePacket(&in, &out), 8);
    EXPECT_EQ(out.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(toHex(drain(in)), "04 00 00 00 07 00 00 00");
}

TEST_F(VelmarProtocolTest, LetsAWriteOfTheWrongLengthAndAllAfterItWait) {
    registerInt(7, "sim/a");
    EXPECT_EQ(ask("06 00 00 00  07 00 00 00  08 00 00 00  01 00 00 00 02 00 00 00  08 00 00 00"),
              "");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 24U);
    EXPECT_EQ(ask("08 00 00 00"), "");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 28U);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/a"), 0);
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(VelmarProtocolTest, LetsTheWriteOfATypeWithoutAValueWait) {
    define("sim/a", xplmType_Int);
    ask(datarefPacket(8, 0, 0, "sim/a"));
    EXPECT_EQ(ask("06 00 00 00  08 00 00 00  00 00 00 00"), "");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 12U);
}

TEST_F(VelmarProtocolTest, ConsumesAnUnknownTypeWithoutAReply) {
    for (const char* type : {"00 00 00 00", "09 00 00 00", "FF FF FF FF", "01 00 00 80"}) {
        fill(in, fromHex(type));
        EXPECT_EQ(protocol->tryParsePacket(&in, &out), 4) << type;
        EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U) << type;
        EXPECT_EQ(out.GetNumReadBytesAvailable(), 0U) << type;
    }
    EXPECT_EQ(ask("FF FF FF FF  08 00 00 00"), "00 00 00 00");
    EXPECT_TRUE(logger.messages.empty());
}

TEST_F(VelmarProtocolTest, TreatsTheIdentificationOfASecondRequestAsAnUnknownType) {
    EXPECT_EQ(ask("08 00 00 00  55 66 77 88  05 00 00 00  09 00 00 00"),
              "00 00 00 00 05 00 00 00 09 00 00 00 02 00 00 00 01 00 00 00");
}

TEST_F(VelmarProtocolTest, CountsTheBytesOfEveryPacket) {
    define("sim/a", xplmType_Int);
    simulator.Commands().Define("sim/fire", "");
    const auto consumed = [&](const Bytes& packet) {
        fill(in, packet);
        return protocol->tryParsePacket(&in, &out);
    };
    EXPECT_EQ(consumed(datarefPacket(7, 1, 0, "sim/a")), 22);
    EXPECT_EQ(consumed(commandPacket(7, "sim/fire")), 17);
    EXPECT_EQ(consumed(fromHex("05 00 00 00  07 00 00 00")), 8);
    EXPECT_EQ(consumed(fromHex("06 00 00 00  07 00 00 00  04 00 00 00  01 00 00 00")), 16);
    EXPECT_EQ(consumed(fromHex("07 00 00 00  07 00 00 00  01")), 9);
    EXPECT_EQ(consumed(fromHex("08 00 00 00")), 4);
    EXPECT_EQ(consumed(fromHex("04 00 00 00  07 00 00 00")), 8);
    EXPECT_EQ(consumed(fromHex("02 00 00 00  07 00 00 00")), 8);
}

TEST_F(VelmarProtocolTest, HandlesAllEightPacketTypesInOneFeed) {
    define("sim/a", xplmType_Int);
    simulator.Commands().Define("sim/fire", "");
    EXPECT_EQ(ask(join({datarefPacket(7, 1, 0, "sim/a"), commandPacket(9, "sim/fire"),
                        fromHex("06 00 00 00  07 00 00 00  04 00 00 00  2A 00 00 00"),
                        fromHex("05 00 00 00  07 00 00 00"),
                        fromHex("07 00 00 00  09 00 00 00  01"), fromHex("08 00 00 00"),
                        fromHex("04 00 00 00  09 00 00 00"), fromHex("02 00 00 00  07 00 00 00")})),
              "01 00 00 00 07 00 00 00 01 00 00 00 "
              "03 00 00 00 09 00 00 00 01 00 00 00 "
              "06 00 00 00 07 00 00 00 01 00 00 00 "
              "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 2A 00 00 00 "
              "00 00 00 00 "
              "04 00 00 00 09 00 00 00 01 00 00 00 "
              "02 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(VelmarProtocolTest, AnswersWholePacketsAndKeepsATornOneAfterThem) {
    EXPECT_EQ(ask("05 00 00 00  09 00 00 00  08 00 00 00  02 00 00 00  09 00"),
              "05 00 00 00 09 00 00 00 02 00 00 00 01 00 00 00 00 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 6U);
    EXPECT_EQ(ask("00 00"), "02 00 00 00 09 00 00 00 01 00 00 00");
    EXPECT_EQ(in.GetNumReadBytesAvailable(), 0U);
}

TEST_F(VelmarProtocolTest, SharesNoIdentifiersWithAnotherInstance) {
    registerInt(7, "sim/a");
    protocol = std::make_unique<VelmarProtocol>(nullptr, &observer, &logger, nullptr, nullptr);
    EXPECT_EQ(ask("05 00 00 00  07 00 00 00"), kUnknownDataref7);
}

} // namespace
