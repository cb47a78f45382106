#include <string>

#include <gtest/gtest.h>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "UnexpectedAnswer.h"
#include "support/Bytes.h"

namespace {

using orvane::detail::ByteReader;
using orvane::detail::ByteWriter;
using orvane::detail::UnexpectedAnswer;

template <typename Action>
std::string complaintOf(Action action) {
    try {
        action();
    } catch (const UnexpectedAnswer& answer) {
        return answer.what();
    }
    return "none";
}

TEST(ByteReaderTest, TakesValuesLittleEndian) {
    const Bytes bytes = fromHex("07 01 02 03 04 FE FF FF FF 00 00 80 BF");
    ByteReader reader(bytes);
    EXPECT_EQ(reader.readUInt8(), 7);
    EXPECT_EQ(reader.readUInt32(), 0x04030201U);
    EXPECT_EQ(reader.readInt32(), -2);
    EXPECT_EQ(reader.left(), 4U);
    EXPECT_EQ(reader.readFloat(), -1.0F);
    EXPECT_EQ(complaintOf([&] { reader.expectEnd(); }), "none");
}

TEST(ByteReaderTest, DoesNotReadBeyondTheEnd) {
    const Bytes bytes = fromHex("01 02 03");
    ByteReader reader(bytes);
    EXPECT_EQ(complaintOf([&] { reader.readUInt32(); }),
              "expected an answer of at least 4 bytes, got 3");
    EXPECT_EQ(reader.readUInt8(), 1);
}

TEST(ByteReaderTest, SaysWhatItExpectedAndWhatItGot) {
    const Bytes bytes = fromHex("01 00 00 00 02 00 00 00");
    ByteReader reader(bytes);
    EXPECT_EQ(complaintOf([&] { reader.expectUInt32(1, "a thing"); }), "none");
    EXPECT_EQ(complaintOf([&] { reader.expectEnd(); }), "expected an answer of 4 bytes, got 8");
    EXPECT_EQ(complaintOf([&] { reader.expectUInt32(3, "a thing"); }),
              "expected a thing 3 at byte 4 of an answer of 8, got 2");
}

TEST(ByteWriterTest, AppendsValuesLittleEndian) {
    ByteWriter writer;
    writer.writeUInt8(7);
    writer.writeUInt32(0x04030201);
    writer.writeInt32(-2);
    writer.writeFloat(-1.0F);
    writer.writeText("ab");
    writer.writeField("c", 3);
    writer.writeZeros(2);
    EXPECT_EQ(toHex(writer.bytes()), "07 01 02 03 04 FE FF FF FF 00 00 80 BF 61 62 63 00 00 00 00");
}

} // namespace
