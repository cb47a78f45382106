#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "orvane/Discovery.h"

namespace orvane::detail {

inline constexpr const char* kBeaconGroup = "239.255.1.1";
inline constexpr std::uint16_t kBeaconPort = 49707;

// Reads the beacon of a simulator; its address stays empty. Nothing if the bytes are not one whole
// beacon of major version 1, or come from another program of the maker. What newer minor versions
// append is ignored.
//
//   "BECN", 0
//   uint8   major version, 1
//   uint8   minor version
//   uint32  program: 1 simulator, 2 plane maker
//   uint32  version, 121400
//   uint32  role: 1 master, 2 external visual, 3 instructor's station
//   uint16  the simulator's own UDP port
//   text    name of the computer, at most 500 bytes and a 0
//   uint16  another port, in newer versions
std::optional<HeardSimulator> parseBeacon(std::span<const std::uint8_t> bytes);

} // namespace orvane::detail
