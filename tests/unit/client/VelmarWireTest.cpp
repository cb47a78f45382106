#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "UnexpectedAnswer.h"
#include "support/Bytes.h"
#include "velmar/Wire.h"

namespace {

using namespace orvane::velmar;
using orvane::detail::ByteReader;
using orvane::detail::ByteWriter;
using orvane::detail::UnexpectedAnswer;

template <typename Write>
std::string written(Write write) {
    ByteWriter writer;
    write(writer);
    return toHex(writer.bytes());
}

template <typename Read>
auto readFrom(const char* hex, Read read) {
    const Bytes bytes = fromHex(hex);
    ByteReader reader(bytes);
    auto result = read(reader);
    reader.expectEnd();
    return result;
}

Dataref dataref(Type type, std::uint32_t size = 0) {
    return {"a/b", type, size};
}

TEST(ClientVelmarWireTest, BeginsARequestWithTheIdentification) {
    EXPECT_EQ(toHex(wire::beginRequest().bytes()), "55 66 77 88");
}

TEST(ClientVelmarWireTest, RegistersDatarefs) {
    const auto registered = [](wire::Number number, const Dataref& wanted) {
        EXPECT_EQ(wire::registerDatarefSize(wanted), 20U);
        return written([&](auto& writer) { wire::writeRegisterDataref(writer, number, wanted); });
    };
    EXPECT_EQ(registered(7, dataref(Type::Float)),
              "01 00 00 00 07 00 00 00 02 00 00 00 00 00 00 00 03 61 2F 62");
    EXPECT_EQ(registered(0x01020304, dataref(Type::IntArray, 8)),
              "01 00 00 00 04 03 02 01 04 00 00 00 08 00 00 00 03 61 2F 62");
    // A size has no effect on a scalar and is not sent.
    EXPECT_EQ(registered(1, dataref(Type::Byte, 9)),
              "01 00 00 00 01 00 00 00 03 00 00 00 00 00 00 00 03 61 2F 62");
}

TEST(ClientVelmarWireTest, PutsZerosAfterACommandWithAShortName) {
    const auto registered = [](const std::string& name) {
        const std::string hex =
            written([&](auto& writer) { wire::writeRegisterCommand(writer, 9, name); });
        EXPECT_EQ(wire::registerCommandSize(name), fromHex(hex).size());
        return hex;
    };
    EXPECT_EQ(registered("ab/cdefg"), "03 00 00 00 09 00 00 00 08 61 62 2F 63 64 65 66 67");
    EXPECT_EQ(registered("ab/cdef"),
              "03 00 00 00 09 00 00 00 07 61 62 2F 63 64 65 66 00 00 00 00 00 00 00 00");
    EXPECT_EQ(registered("a"), "03 00 00 00 09 00 00 00 01 61 00 00 00 00 00 00 00 00");
}

TEST(ClientVelmarWireTest, UnregistersReadsRunsAndPolls) {
    EXPECT_EQ(written([](auto& writer) { wire::writeUnregisterDataref(writer, 7); }),
              "02 00 00 00 07 00 00 00");
    EXPECT_EQ(written([](auto& writer) { wire::writeUnregisterCommand(writer, 9); }),
              "04 00 00 00 09 00 00 00");
    EXPECT_EQ(written([](auto& writer) { wire::writeRead(writer, 7); }), "05 00 00 00 07 00 00 00");
    EXPECT_EQ(written([](auto& writer) { wire::writeRun(writer, 9, Action::Once); }),
              "07 00 00 00 09 00 00 00 01");
    EXPECT_EQ(written([](auto& writer) { wire::writeRun(writer, 9, Action::Begin); }),
              "07 00 00 00 09 00 00 00 02");
    EXPECT_EQ(written([](auto& writer) { wire::writeRun(writer, 9, Action::End); }),
              "07 00 00 00 09 00 00 00 03");
    EXPECT_EQ(written([](auto& writer) { wire::writePoll(writer); }), "08 00 00 00");
}

TEST(ClientVelmarWireTest, WritesEachTypeWithItsLength) {
    const auto wrote = [](const Value& value) {
        const std::string hex = written([&](auto& writer) { wire::writeWrite(writer, 7, value); });
        EXPECT_EQ(wire::writeSize(value), fromHex(hex).size());
        return hex;
    };
    EXPECT_EQ(wrote(std::int32_t{-2}), "06 00 00 00 07 00 00 00 04 00 00 00 FE FF FF FF");
    EXPECT_EQ(wrote(43200.0F), "06 00 00 00 07 00 00 00 04 00 00 00 00 C0 28 47");
    EXPECT_EQ(wrote(std::uint8_t{200}), "06 00 00 00 07 00 00 00 01 00 00 00 C8");
    EXPECT_EQ(wrote(std::vector<std::int32_t>{1, -1}),
              "06 00 00 00 07 00 00 00 08 00 00 00 01 00 00 00 FF FF FF FF");
    EXPECT_EQ(wrote(std::vector<float>{0.5F}), "06 00 00 00 07 00 00 00 04 00 00 00 00 00 00 3F");
}

TEST(ClientVelmarWireTest, DistinguishesSuccessFromRefusal) {
    const auto dataref = [](auto& reader) { return wire::readRegisterDatarefReply(reader, 7); };
    EXPECT_TRUE(readFrom("01 00 00 00 07 00 00 00 01 00 00 00", dataref));
    EXPECT_FALSE(readFrom("01 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00", dataref));
    const auto command = [](auto& reader) { return wire::readRegisterCommandReply(reader, 9); };
    EXPECT_TRUE(readFrom("03 00 00 00 09 00 00 00 01 00 00 00", command));
    EXPECT_FALSE(readFrom("03 00 00 00 09 00 00 00 02 00 00 00 02 00 00 00", command));
}

TEST(ClientVelmarWireTest, RejectsAReplyOfAnotherShape) {
    const auto dataref = [](auto& reader) { return wire::readRegisterDatarefReply(reader, 7); };
    for (const char* wrong : {
             "", "01 00 00 00 07 00 00",
             "03 00 00 00 07 00 00 00 01 00 00 00",             // another type
             "01 00 00 00 08 00 00 00 01 00 00 00",             // another number
             "01 00 00 00 07 00 00 00 03 00 00 00",             // no status
             "01 00 00 00 07 00 00 00 02 00 00 00",             // a failure of nothing
             "01 00 00 00 07 00 00 00 02 00 00 00 02 00 00 00", // of a command
             "01 00 00 00 07 00 00 00 01 00 00 00 00",          // a byte too many
         }) {
        EXPECT_THROW(readFrom(wrong, dataref), UnexpectedAnswer) << wrong;
    }
}

TEST(ClientVelmarWireTest, ReadsEachType) {
    const auto value = [](const char* hex, const Dataref& wanted) {
        const std::string reply = std::string("05 00 00 00 07 00 00 00 01 00 00 00 ") + hex;
        EXPECT_EQ(wire::readReplySize(wanted), fromHex(reply).size());
        return readFrom(reply.c_str(),
                        [&](auto& reader) { return wire::readReadReply(reader, 7, wanted); });
    };
    EXPECT_EQ(value("04 00 00 00 FF FF FF FF", dataref(Type::Int)), Value(-1));
    EXPECT_EQ(value("04 00 00 00 00 00 80 3F", dataref(Type::Float)), Value(1.0F));
    EXPECT_EQ(value("01 00 00 00 C8", dataref(Type::Byte)), Value(std::uint8_t{200}));
    EXPECT_EQ(value("08 00 00 00 01 00 00 00 02 00 00 00", dataref(Type::IntArray, 2)),
              Value(std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(value("08 00 00 00 00 00 00 3F 00 00 00 40", dataref(Type::FloatArray, 2)),
              Value(std::vector<float>{0.5F, 2.0F}));
}

TEST(ClientVelmarWireTest, RejectsAValueOfAnotherLength) {
    const auto array = [](auto& reader) {
        return wire::readReadReply(reader, 7, dataref(Type::FloatArray, 2));
    };
    for (const char* wrong : {
             "05 00 00 00 07 00 00 00 01 00 00 00 04 00 00 00 00 00 80 3F",
             "05 00 00 00 07 00 00 00 01 00 00 00 08 00 00 00 00 00 80 3F",
             "05 00 00 00 07 00 00 00 02 00 00 00 01 00 00 00",
         }) {
        EXPECT_THROW(readFrom(wrong, array), UnexpectedAnswer) << wrong;
    }
}

TEST(ClientVelmarWireTest, ReadsAPoll) {
    const auto poll = [](auto& reader) { return wire::readPollReply(reader); };
    EXPECT_TRUE(readFrom("00 00 00 00", poll).empty());
    const auto entries = readFrom("03 00 00 00 04 00 00 00 01 05 00 00 00 02 06 00 00 00 00", poll);
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(wire::pollReplySize(3), 19U);
    EXPECT_EQ(entries[0].number, 4U);
    EXPECT_EQ(entries[0].state, CommandState::Down);
    EXPECT_EQ(entries[1].number, 5U);
    EXPECT_EQ(entries[1].state, CommandState::Pressed);
    EXPECT_EQ(entries[2].state, CommandState::Up);
    EXPECT_THROW(readFrom("01 00 00 00 04 00 00 00 03", poll), UnexpectedAnswer);
    EXPECT_THROW(readFrom("FF FF FF FF 04 00 00 00 01", poll), UnexpectedAnswer);
}

} // namespace
