#include "tools/orvane/dump/StreamAssembler.h"

#include <gtest/gtest.h>

#include <string>

using orvane::tool::dump::ByteView;
using orvane::tool::dump::StreamAssembler;
using orvane::tool::dump::TcpSegment;

namespace {

// A direction that writes down what it is told: "abc", "<3 missing>", ".".
class StreamAssemblerTest : public testing::Test {
protected:
    void syn(std::uint32_t sequence) {
        TcpSegment segment;
        segment.sequence = sequence;
        segment.isSyn = true;
        stream.Add(segment);
    }

    void add(std::uint32_t sequence, const std::string& text, bool isFin = false) {
        addCut(sequence, text, text.size(), isFin);
    }

    void addCut(std::uint32_t sequence, const std::string& text, std::size_t size,
                bool isFin = false) {
        TcpSegment segment;
        segment.sequence = sequence;
        segment.isFin = isFin;
        segment.payloadSize = size;
        segment.payload = {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
        stream.Add(segment);
    }

    std::string told;
    StreamAssembler stream{
        {.bytes = [this](ByteView bytes) { told.append(bytes.begin(), bytes.end()); },
         .gap = [this](std::uint64_t size) { told += "<" + std::to_string(size) + " missing>"; },
         .end = [this] { told += "."; }}};
};

} // namespace

TEST_F(StreamAssemblerTest, DeliversWhatComesInOrderAtOnce) {
    syn(999);
    add(1000, "abc");
    EXPECT_EQ(told, "abc");
    add(1003, "def");
    EXPECT_EQ(told, "abcdef");
}

TEST_F(StreamAssemblerTest, PutsInOrderWhatOvertook) {
    syn(999);
    add(1006, "ghi");
    add(1003, "def");
    EXPECT_EQ(told, "");
    add(1000, "abc");
    EXPECT_EQ(told, "abcdefghi");
}

TEST_F(StreamAssemblerTest, DeliversOnceWhatWasSentTwice) {
    syn(999);
    add(1000, "abc");
    add(1000, "abc");
    add(1001, "bcde");
    add(1007, "hi");
    add(1007, "hi");
    add(1003, "defg");
    EXPECT_EQ(told, "abcdefghi");
}

TEST_F(StreamAssemblerTest, KeepsTheLongerOfTwoThatWait) {
    syn(999);
    add(1003, "d");
    add(1003, "def");
    add(1003, "de");
    add(1000, "abc");
    EXPECT_EQ(told, "abcdef");
}

TEST_F(StreamAssemblerTest, CountsOnBeyondTheLastSequenceNumber) {
    syn(0xFFFFFFFD);
    add(0xFFFFFFFE, "abc");
    add(1, "def");
    EXPECT_EQ(told, "abcdef");
}

TEST_F(StreamAssemblerTest, TakesUpAConnectionThatIsUnderWay) {
    add(5000, "abc");
    add(5003, "def");
    EXPECT_EQ(told, "abcdef");
}

TEST_F(StreamAssemblerTest, TellsOfWhatWasAcknowledgedButNeverSeen) {
    syn(999);
    add(1000, "abc");
    stream.Acknowledge(1003);
    EXPECT_EQ(told, "abc");
    add(1006, "ghi");
    stream.Acknowledge(1009);
    EXPECT_EQ(told, "abc<3 missing>ghi");
    stream.Acknowledge(1011);
    EXPECT_EQ(told, "abc<3 missing>ghi<2 missing>");
}

TEST_F(StreamAssemblerTest, TellsOfWhatWasCutOffAPacket) {
    syn(999);
    addCut(1000, "ab", 5);
    add(1005, "fg");
    EXPECT_EQ(told, "ab<3 missing>fg");
}

TEST_F(StreamAssemblerTest, EndsBehindTheLastByte) {
    syn(999);
    add(1003, "def", true);
    EXPECT_EQ(told, "");
    add(1000, "abc");
    EXPECT_EQ(told, "abcdef.");
    add(1003, "def", true);
    EXPECT_EQ(told, "abcdef.");
}

TEST_F(StreamAssemblerTest, CountsNoByteForTheEnd) {
    syn(999);
    add(1000, "abc");
    add(1003, "", true);
    stream.Acknowledge(1004);
    EXPECT_EQ(told, "abc.");
}

TEST_F(StreamAssemblerTest, DeliversWhatWaitsWhenTheCaptureIsOver) {
    syn(999);
    add(1003, "def");
    add(1008, "ij", true);
    stream.Finish();
    EXPECT_EQ(told, "<3 missing>def<2 missing>ij.");
}

TEST_F(StreamAssemblerTest, PassesOverWhatIsFarFromItsPlace) {
    syn(999);
    add(1000, "abc");
    add(1000 + 0x50000000U, "far ahead");
    add(1000 - 0x50000000U, "far behind");
    stream.Acknowledge(1000 + 0x50000000U);
    stream.Finish();
    EXPECT_EQ(told, "abc");
}
