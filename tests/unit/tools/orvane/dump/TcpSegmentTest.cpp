#include "tools/orvane/dump/TcpSegment.h"

#include <gtest/gtest.h>

#include "support/Bytes.h"

using orvane::tool::dump::Endpoint;
using orvane::tool::dump::LinkType;
using orvane::tool::dump::readSegment;

namespace {

// From 192.0.2.7:50000 to 192.0.2.1:48000, "hello".
const Bytes kIp = fromHex(
    "45 00 00 2D 00 01 40 00 40 06 00 00 C0 00 02 07 C0 00 02 01 "
    "C3 50 BB 80 01 02 03 04 0A 0B 0C 0D 50 18 00 00 00 00 00 00 68 65 6C 6C 6F");
const Bytes kMacs = fromHex("02 00 00 00 00 01 02 00 00 00 00 02");

Bytes changed(Bytes bytes, std::size_t at, unsigned char value) {
    bytes.at(at) = value;
    return bytes;
}

void expectHello(LinkType type, const Bytes& frame) {
    const auto segment = readSegment(type, frame);
    ASSERT_TRUE(segment.has_value()) << toHex(frame);
    EXPECT_EQ(segment->source, (Endpoint{0xC0000207, 50000}));
    EXPECT_EQ(segment->destination, (Endpoint{0xC0000201, 48000}));
    EXPECT_EQ(segment->sequence, 0x01020304U);
    EXPECT_EQ(segment->acknowledged, 0x0A0B0C0DU);
    EXPECT_TRUE(segment->hasAcknowledgement);
    EXPECT_FALSE(segment->isSyn);
    EXPECT_FALSE(segment->isFin);
    EXPECT_FALSE(segment->isReset);
    EXPECT_EQ(segment->payloadSize, 5U);
    EXPECT_EQ(toHex(Bytes(segment->payload.begin(), segment->payload.end())), "68 65 6C 6C 6F");
}

} // namespace

TEST(TcpSegmentTest, ReadsEveryKindOfFrame) {
    expectHello(LinkType::Raw, kIp);
    expectHello(LinkType::Ipv4, kIp);
    expectHello(LinkType::Ethernet, join({kMacs, fromHex("08 00"), kIp}));
    expectHello(LinkType::Null, join({fromHex("02 00 00 00"), kIp}));
    expectHello(LinkType::Null, join({fromHex("00 00 00 02"), kIp}));
    expectHello(LinkType::Loop, join({fromHex("00 00 00 02"), kIp}));
    expectHello(LinkType::LinuxCooked,
                join({fromHex("00 00 03 04 00 06"), zeros(8), fromHex("08 00"), kIp}));
    expectHello(LinkType::LinuxCooked2, join({fromHex("08 00"), zeros(18), kIp}));
}

TEST(TcpSegmentTest, SkipsVlanTags) {
    expectHello(LinkType::Ethernet, join({kMacs, fromHex("81 00 00 05 08 00"), kIp}));
    expectHello(LinkType::Ethernet, join({kMacs, fromHex("88 A8 00 07 81 00 00 05 08 00"), kIp}));
}

TEST(TcpSegmentTest, LeavesOutWhatFillsAShortFrameUp) {
    expectHello(LinkType::Ethernet, join({kMacs, fromHex("08 00"), kIp, zeros(6)}));
}

TEST(TcpSegmentTest, TakesTheFrameForThePacketWhereItsLengthIsLeftOut) {
    expectHello(LinkType::Raw, changed(kIp, 3, 0));
}

TEST(TcpSegmentTest, SkipsOptionsOfBothHeaders) {
    Bytes ip = changed(changed(kIp, 0, 0x46), 3, 0x35);
    ip.insert(ip.begin() + 20, {1, 1, 1, 1});
    ip.at(24 + 12) = 0x60;
    ip.insert(ip.begin() + 44, {1, 1, 1, 1});
    expectHello(LinkType::Raw, ip);
}

TEST(TcpSegmentTest, KnowsTheFlags) {
    EXPECT_TRUE(readSegment(LinkType::Raw, changed(kIp, 33, 0x02))->isSyn);
    EXPECT_TRUE(readSegment(LinkType::Raw, changed(kIp, 33, 0x01))->isFin);
    EXPECT_TRUE(readSegment(LinkType::Raw, changed(kIp, 33, 0x04))->isReset);
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 33, 0x02))->hasAcknowledgement);
}

TEST(TcpSegmentTest, TellsWhatWasCutOffThePayload) {
    const Bytes cut(kIp.begin(), kIp.end() - 3);
    const auto segment = readSegment(LinkType::Raw, cut);
    ASSERT_TRUE(segment.has_value());
    EXPECT_EQ(segment->payloadSize, 5U);
    EXPECT_EQ(segment->payload.size(), 2U);
}

TEST(TcpSegmentTest, PassesOverEverythingElse) {
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 0, 0x65)));  // IPv6
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 9, 0x11)));  // UDP
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 6, 0x20)));  // a first fragment
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 7, 0x01)));  // a later one
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 0, 0x44)));  // a header too short
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 32, 0x40))); // likewise
    EXPECT_FALSE(readSegment(LinkType::Raw, changed(kIp, 32, 0xF0))); // longer than the packet
    EXPECT_FALSE(readSegment(LinkType::Ethernet, join({kMacs, fromHex("86 DD"), kIp})));
    EXPECT_FALSE(readSegment(LinkType::Null, join({fromHex("1E 00 00 00"), kIp})));
}

TEST(TcpSegmentTest, PassesOverFramesThatWereCutInTheirHeaders) {
    const Bytes frame = join({kMacs, fromHex("08 00"), kIp});
    for (std::size_t size = 0; size < 14 + 20 + 20; ++size) {
        const Bytes cut(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(readSegment(LinkType::Ethernet, cut)) << size;
    }
}
