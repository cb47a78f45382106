#pragma once

#include "tools/orvane/dump/Endpoint.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orvane::tool::dump {

using ByteView = std::span<const std::uint8_t>;

// What stands in front of the IP packets of a capture; the numbers are those of the file format.
enum class LinkType : int {
    Null = 0, // a family in the byte order of the machine that captured
    Ethernet = 1,
    Raw = 101,
    Loop = 108, // a family in network byte order
    LinuxCooked = 113,
    Ipv4 = 228,
    LinuxCooked2 = 276,
};

bool isSupported(LinkType type);

// One TCP segment of IPv4. `payload` is what was captured of `payloadSize` bytes.
struct TcpSegment {
    Endpoint source;
    Endpoint destination;
    std::uint32_t sequence = 0;
    std::uint32_t acknowledged = 0;
    bool hasAcknowledgement = false;
    bool isSyn = false;
    bool isFin = false;
    bool isReset = false;
    std::size_t payloadSize = 0;
    ByteView payload;
};

// Nothing for all other traffic, for fragments of IP packets, and for headers that were cut off.
// `frame` is borrowed by the result.
std::optional<TcpSegment> readSegment(LinkType type, ByteView frame);

} // namespace orvane::tool::dump
