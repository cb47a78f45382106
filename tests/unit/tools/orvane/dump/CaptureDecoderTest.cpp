#include "tools/orvane/dump/CaptureDecoder.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/TarnelMessages.h"
#include "tools/orvane/dump/MessageText.h"

using orvane::tool::dump::CaptureDecoder;
using orvane::tool::dump::LinkType;
using orvane::tool::dump::Message;

namespace {

constexpr unsigned kFin = 0x01;
constexpr unsigned kSyn = 0x02;
constexpr unsigned kReset = 0x04;
constexpr unsigned kAck = 0x10;

const Bytes kVersionRequest = join({fromHex("11 22 33 44"), versionMessage()});
const Bytes kVersionAnswer = fromHex("0C 00 00 00 B1 6B 00 B5 01 00 07 0A 06 00 00 00");

Bytes u16be(unsigned value) {
    return {static_cast<unsigned char>(value >> 8U), static_cast<unsigned char>(value & 0xFFU)};
}

Bytes u32be(std::uint32_t value) {
    return join({u16be(value >> 16U), u16be(value & 0xFFFFU)});
}

// An IP packet between 10.0.0.CLIENT:5000 and 10.0.0.1:48000.
Bytes packet(unsigned char client, bool isToPlugin, unsigned flags, std::uint32_t sequence,
             std::uint32_t acknowledged, const Bytes& payload) {
    const Bytes clientAddress = {10, 0, 0, client};
    const Bytes pluginAddress = {10, 0, 0, 1};
    const unsigned length = 40 + static_cast<unsigned>(payload.size());
    return join({fromHex("45 00"),
                 u16be(length),
                 fromHex("00 00 40 00 40 06 00 00"),
                 isToPlugin ? clientAddress : pluginAddress,
                 isToPlugin ? pluginAddress : clientAddress,
                 u16be(isToPlugin ? 5000 : 48000),
                 u16be(isToPlugin ? 48000 : 5000),
                 u32be(sequence),
                 u32be(acknowledged),
                 {0x50, static_cast<unsigned char>(flags)},
                 zeros(6),
                 payload});
}

// Writes every message down, at a millisecond per packet.
class CaptureDecoderTest : public testing::Test {
protected:
    void client(unsigned flags, std::uint32_t sequence, std::uint32_t acknowledged,
                const Bytes& payload = {}, unsigned char number = 2) {
        add(packet(number, true, flags, sequence, acknowledged, payload));
    }
    void plugin(unsigned flags, std::uint32_t sequence, std::uint32_t acknowledged,
                const Bytes& payload = {}, unsigned char number = 2) {
        add(packet(number, false, flags, sequence, acknowledged, payload));
    }
    void add(const Bytes& bytes) {
        decoder.Add(timeNs, LinkType::Raw, bytes);
        timeNs += 1'000'000;
    }

    // Sequence numbers begin with 100 and 200.
    void connect(unsigned char number = 2) {
        client(kSyn, 99, 0, {}, number);
        plugin(kSyn | kAck, 199, 100, {}, number);
        client(kAck, 100, 200, {}, number);
    }

    std::int64_t timeNs = 0;
    std::string lines;
    CaptureDecoder decoder{48000,
                           [this](const Message& message) { lines += messageAsText(message, {}); }};
};

} // namespace

TEST_F(CaptureDecoderTest, FollowsAConnectionFromItsBeginningToItsEnd) {
    connect();
    client(kAck, 100, 200, kVersionRequest);
    plugin(kAck, 200, 108, kVersionAnswer);
    client(kAck | kFin, 108, 216);
    plugin(kAck | kFin, 216, 109);
    EXPECT_EQ(lines,
              "  0.000000 10.0.0.2:5000 > tcp connection: opened\n"
              "  0.003000 10.0.0.2:5000 > tarnel version\n"
              "  0.004000 10.0.0.2:5000 < tarnel version (1.000 ms): 1.0.7.10, 6\n"
              "  0.005000 10.0.0.2:5000 > tcp connection: closed\n"
              "  0.006000 10.0.0.2:5000 < tcp connection: closed\n");
    decoder.Finish();
    EXPECT_EQ(lines.find("closed\n  0.006"), lines.rfind("closed\n  0.006"));
}

TEST_F(CaptureDecoderTest, PutsSegmentsInOrder) {
    connect();
    client(kAck, 104, 200, versionMessage());
    client(kAck, 100, 200, fromHex("11 22 33 44"));
    client(kAck, 100, 200, fromHex("11 22 33 44"));
    plugin(kAck, 204, 108, Bytes(kVersionAnswer.begin() + 4, kVersionAnswer.end()));
    plugin(kAck, 200, 108, Bytes(kVersionAnswer.begin(), kVersionAnswer.begin() + 4));
    decoder.Finish();
    EXPECT_EQ(lines,
              "  0.000000 10.0.0.2:5000 > tcp connection: opened\n"
              "  0.004000 10.0.0.2:5000 > tarnel version\n"
              "  0.007000 10.0.0.2:5000 < tarnel version (3.000 ms): 1.0.7.10, 6\n");
}

TEST_F(CaptureDecoderTest, KeepsClientsApart) {
    connect(2);
    connect(3);
    lines.clear();
    client(kAck, 100, 200, fromHex("11 22 33 44"), 2);
    client(kAck, 100, 200, kVersionRequest, 3);
    plugin(kAck, 200, 108, kVersionAnswer, 3);
    plugin(kAck, 200, 104, fromHex("0C 00 00 00 FF FF 00 00 04 00 00 00 01 00 00 00"), 2);
    EXPECT_EQ(lines,
              "  0.007000 10.0.0.3:5000 > tarnel version\n"
              "  0.008000 10.0.0.3:5000 < tarnel version (1.000 ms): 1.0.7.10, 6\n"
              "  0.006000 10.0.0.2:5000 > tarnel query: for the outputs\n"
              "  0.009000 10.0.0.2:5000 < tarnel outputs (3.000 ms): aircraft "
              "0x00000001\n");
}

TEST_F(CaptureDecoderTest, TellsWhatTheCaptureLacks) {
    connect();
    lines.clear();
    client(kAck, 104, 200, versionMessage());
    plugin(kAck, 200, 108);
    client(kAck, 108, 200, kVersionRequest);
    plugin(kAck, 200, 116, kVersionAnswer);
    EXPECT_EQ(lines,
              "  0.004000 10.0.0.2:5000 > tcp connection: skips to the next request "
              "[missing: 4 bytes are not in the capture]\n"
              "  0.005000 10.0.0.2:5000 > tarnel version\n"
              "  0.006000 10.0.0.2:5000 < tarnel version (1.000 ms): 1.0.7.10, 6\n");
}

TEST_F(CaptureDecoderTest, TakesUpAConnectionThatIsUnderWay) {
    plugin(kAck, 200, 100);
    client(kAck, 100, 200, kVersionRequest);
    plugin(kAck, 200, 108, kVersionAnswer);
    EXPECT_EQ(lines,
              "  0.001000 10.0.0.2:5000 > tcp connection: under way [missing: what was "
              "before is not in the capture]\n"
              "  0.001000 10.0.0.2:5000 > tarnel version\n"
              "  0.002000 10.0.0.2:5000 < tarnel version (1.000 ms): 1.0.7.10, 6\n");
}

TEST_F(CaptureDecoderTest, BeginsAnewWhenAPortIsUsedAgain) {
    connect();
    client(kAck, 100, 200, kVersionRequest);
    client(kSyn, 5000, 0);
    client(kSyn, 5000, 0);
    EXPECT_EQ(lines,
              "  0.000000 10.0.0.2:5000 > tcp connection: opened\n"
              "  0.003000 10.0.0.2:5000 > tarnel version [missing: no answer in the "
              "capture]\n"
              "  0.004000 10.0.0.2:5000 > tcp connection: opened\n");
}

TEST_F(CaptureDecoderTest, TellsWhoResetTheConnection) {
    connect();
    client(kAck, 100, 200, fromHex("55 66 77 88 05 00 00 00"));
    plugin(kReset | kAck, 200, 108);
    client(kReset, 108, 200);
    EXPECT_EQ(lines,
              "  0.000000 10.0.0.2:5000 > tcp connection: opened\n"
              "  0.003000 10.0.0.2:5000 > velmar read dataref [ends the simulator: "
              "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4]\n"
              "  0.004000 10.0.0.2:5000 < tcp connection: reset\n");
}

TEST_F(CaptureDecoderTest, PassesOverOtherPorts) {
    CaptureDecoder other(48001, [this](const Message& message) { lines += message.kind; });
    other.Add(0, LinkType::Raw, packet(2, true, kSyn, 99, 0, {}));
    other.Finish();
    EXPECT_EQ(lines, "");
}
