#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orvane::velmar {

// A request that does not arrive as a whole can end the simulator; up to this size it is one packet
// on nearly every network, with room for the headers of TCP and of a tunnel.
inline constexpr std::size_t kLargestRequest = 1'400;

// What the server's system does not take in one call arrives damaged; up to here it takes
// everything, on a new connection and a slow network too.
inline constexpr std::size_t kLargestAnswer = 64 * 1024 - 1;

// Bytes that a packet adds to the request and its reply to the answer.
struct Cost {
    std::size_t request = 0;
    std::size_t answer = 0;
};

// Of a request without packets: the identification, and the length before the answer.
inline constexpr Cost kEmpty{.request = 4, .answer = 4};

// Packets `begin` up to, and without, `end`.
struct Batch {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Cuts a list of packets, in order, into requests within both limits. `base` is what each request
// and its answer cost besides. A packet that alone is beyond a limit gets a request of its own.
std::vector<Batch> cutIntoRequests(std::span<const Cost> packets, Cost base);

} // namespace orvane::velmar
