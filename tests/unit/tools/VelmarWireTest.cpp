#include "tools/demo/VelmarWire.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Bytes.h"

namespace {

namespace packet = demo::velmar_packet;

TEST(VelmarRequestTest, BeginsWithTheIdentification) {
    EXPECT_EQ(toHex(demo::VelmarRequest().Wire()), "55 66 77 88");
}

TEST(VelmarRequestTest, PutsPacketsOneBehindTheOther) {
    demo::VelmarRequest request;
    request.RegisterDataref(7, demo::VelmarType::FloatArray, 3, "a/b");
    request.RegisterCommand(8, "c");
    request.Read(7);
    request.WriteInt(9, -2);
    request.PollCommands();
    EXPECT_EQ(toHex(request.Wire()),
              "55 66 77 88 "
              "01 00 00 00 07 00 00 00 05 00 00 00 03 00 00 00 03 61 2F 62 "
              "03 00 00 00 08 00 00 00 01 63 "
              "05 00 00 00 07 00 00 00 "
              "06 00 00 00 09 00 00 00 04 00 00 00 FE FF FF FF "
              "08 00 00 00");
}

TEST(VelmarRequestTest, RefusesANameThatIsTooLong) {
    demo::VelmarRequest request;
    EXPECT_THROW(request.RegisterCommand(1, std::string(256, 'x')), std::invalid_argument);
    EXPECT_NO_THROW(request.RegisterCommand(1, std::string(255, 'x')));
}

TEST(VelmarAnswerTest, IsTakenApartInTheOrderOfThePackets) {
    demo::VelmarAnswer answer(
        fromHex("01 00 00 00 07 00 00 00 01 00 00 00 "
                "05 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 FF FF FF FF "
                "05 00 00 00 02 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F "
                "05 00 00 00 03 00 00 00 01 00 00 00 08 00 00 00 "
                "00 00 00 3F 00 00 00 40 "
                "02 00 00 00 04 00 00 00 01 05 00 00 00 02"));
    answer.ExpectDone(packet::kRegisterDataref, 7);
    EXPECT_EQ(answer.Int(1), -1);
    EXPECT_EQ(answer.Float(2), 1.0F);
    EXPECT_EQ(answer.Floats(3, 2), (std::vector<float>{0.5F, 2.0F}));
    EXPECT_EQ(answer.CommandStates(), (std::vector<demo::VelmarCommandState>{{4, 1}, {5, 2}}));
    EXPECT_NO_THROW(answer.ExpectEnd());
}

TEST(VelmarAnswerTest, ThrowsAtARefusal) {
    demo::VelmarAnswer answer(fromHex("01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00"));
    EXPECT_THROW(answer.ExpectDone(packet::kRegisterDataref, 7), demo::WireError);
}

TEST(VelmarAnswerTest, ThrowsAtAnotherReplyThanExpected) {
    const Bytes reply = fromHex("01 00 00 00 07 00 00 00 01 00 00 00");
    EXPECT_THROW(demo::VelmarAnswer(reply).ExpectDone(packet::kRegisterCommand, 7),
                 demo::WireError);
    EXPECT_THROW(demo::VelmarAnswer(reply).ExpectDone(packet::kRegisterDataref, 8),
                 demo::WireError);
}

TEST(VelmarAnswerTest, ThrowsAtAnEndTooSoonOrTooLate) {
    EXPECT_THROW(demo::VelmarAnswer(fromHex("01 00 00")).CommandStates(), demo::WireError);
    EXPECT_THROW(demo::VelmarAnswer(fromHex("01 00 00 00 04 00 00 00")).CommandStates(),
                 demo::WireError);
    EXPECT_THROW(demo::VelmarAnswer(fromHex("00")).ExpectEnd(), demo::WireError);
}

} // namespace
