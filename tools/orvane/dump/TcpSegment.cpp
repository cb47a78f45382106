#include "tools/orvane/dump/TcpSegment.h"

#include <algorithm>

namespace orvane::tool::dump {

namespace {

constexpr std::uint16_t kEtherTypeIpv4 = 0x0800;
constexpr std::uint16_t kEtherTypeVlan = 0x8100;
constexpr std::uint16_t kEtherTypeServiceVlan = 0x88A8;
constexpr std::size_t kVlanTagSize = 4;
constexpr std::size_t kNullHeaderSize = 4;
constexpr std::uint32_t kFamilyIpv4 = 2;
constexpr std::uint32_t kFamilyIpv4Swapped = 0x02000000;

constexpr std::size_t kSmallestIpHeader = 20;
constexpr std::uint8_t kProtocolTcp = 6;
constexpr std::uint16_t kFragmentBits = 0x3FFF; // "more fragments", and the offset

constexpr std::size_t kSmallestTcpHeader = 20;
constexpr std::uint8_t kFin = 0x01;
constexpr std::uint8_t kSyn = 0x02;
constexpr std::uint8_t kReset = 0x04;
constexpr std::uint8_t kAck = 0x10;

// Network byte order. Callers have checked that the bytes are there.
std::uint16_t read16(ByteView bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] << 8U | bytes[at + 1]);
}

std::uint32_t read32(ByteView bytes, std::size_t at) {
    return std::uint32_t{read16(bytes, at)} << 16U | read16(bytes, at + 2);
}

// `headerSize` bytes with the type of what follows at `typeAt`, and VLAN tags behind them.
std::optional<ByteView> afterEtherType(ByteView frame, std::size_t headerSize, std::size_t typeAt) {
    if (frame.size() < headerSize) {
        return std::nullopt;
    }
    std::uint16_t type = read16(frame, typeAt);
    frame = frame.subspan(headerSize);
    while ((type == kEtherTypeVlan || type == kEtherTypeServiceVlan) &&
           frame.size() >= kVlanTagSize) {
        type = read16(frame, 2);
        frame = frame.subspan(kVlanTagSize);
    }
    return type == kEtherTypeIpv4 ? std::optional(frame) : std::nullopt;
}

std::optional<ByteView> afterFamily(ByteView frame) {
    if (frame.size() < kNullHeaderSize) {
        return std::nullopt;
    }
    const std::uint32_t family = read32(frame, 0);
    const bool isIpv4 = family == kFamilyIpv4 || family == kFamilyIpv4Swapped;
    return isIpv4 ? std::optional(frame.subspan(kNullHeaderSize)) : std::nullopt;
}

std::optional<ByteView> ipPacket(LinkType type, ByteView frame) {
    switch (type) {
    case LinkType::Null:
    case LinkType::Loop:
        return afterFamily(frame);
    case LinkType::Ethernet:
        return afterEtherType(frame, 14, 12);
    case LinkType::LinuxCooked:
        return afterEtherType(frame, 16, 14);
    case LinkType::LinuxCooked2:
        return afterEtherType(frame, 20, 0);
    case LinkType::Raw:
    case LinkType::Ipv4:
        return frame;
    }
    return std::nullopt;
}

// The TCP header and what was captured behind it, and how many bytes the packet had there.
struct TcpPart {
    ByteView captured;
    std::size_t size = 0;
};

std::optional<TcpPart> readIpHeader(ByteView packet, TcpSegment& segment) {
    constexpr std::uint8_t kVersion4 = 4;
    if (packet.size() < kSmallestIpHeader || packet[0] >> 4U != kVersion4 ||
        packet[9] != kProtocolTcp || (read16(packet, 6) & kFragmentBits) != 0) {
        return std::nullopt;
    }
    const std::size_t headerSize = std::size_t{packet[0] & 0x0FU} * 4;
    // A system that leaves segmentation to its network card may leave out the length as well.
    const std::size_t announced = read16(packet, 2);
    const std::size_t totalSize = announced == 0 ? packet.size() : announced;
    if (headerSize < kSmallestIpHeader || headerSize > std::min(packet.size(), totalSize)) {
        return std::nullopt;
    }
    segment.source.address = read32(packet, 12);
    segment.destination.address = read32(packet, 16);
    // Short Ethernet frames are filled up behind the packet.
    packet = packet.first(std::min(packet.size(), totalSize));
    return TcpPart{packet.subspan(headerSize), totalSize - headerSize};
}

bool readTcpHeader(const TcpPart& part, TcpSegment& segment) {
    const ByteView bytes = part.captured;
    if (bytes.size() < kSmallestTcpHeader) {
        return false;
    }
    const std::size_t headerSize = std::size_t{bytes[12]} / 16 * 4;
    if (headerSize < kSmallestTcpHeader || headerSize > part.size) {
        return false;
    }
    const std::uint8_t flags = bytes[13];
    segment.source.port = read16(bytes, 0);
    segment.destination.port = read16(bytes, 2);
    segment.sequence = read32(bytes, 4);
    segment.acknowledged = read32(bytes, 8);
    segment.hasAcknowledgement = (flags & kAck) != 0;
    segment.isSyn = (flags & kSyn) != 0;
    segment.isFin = (flags & kFin) != 0;
    segment.isReset = (flags & kReset) != 0;
    segment.payloadSize = part.size - headerSize;
    segment.payload = bytes.subspan(std::min(headerSize, bytes.size()));
    return true;
}

} // namespace

bool isSupported(LinkType type) {
    switch (type) {
    case LinkType::Null:
    case LinkType::Ethernet:
    case LinkType::Raw:
    case LinkType::Loop:
    case LinkType::LinuxCooked:
    case LinkType::Ipv4:
    case LinkType::LinuxCooked2:
        return true;
    }
    return false;
}

std::optional<TcpSegment> readSegment(LinkType type, ByteView frame) {
    const std::optional<ByteView> packet = ipPacket(type, frame);
    if (!packet) {
        return std::nullopt;
    }
    TcpSegment segment;
    const std::optional<TcpPart> part = readIpHeader(*packet, segment);
    if (!part || !readTcpHeader(*part, segment)) {
        return std::nullopt;
    }
    return segment;
}

} // namespace orvane::tool::dump
