#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orvane::velmar {

// A request that does not arrive whole can end the simulator. Up to this size it is one packet on
// nearly every network, with room for the headers of TCP and a tunnel.
inline constexpr std::size_t kLargestRequest = 1'400;

// An answer that the server's system does not take in one call arrives damaged. Up to this size it
// takes everything, even on a new connection and a slow network.
inline constexpr std::size_t kLargestAnswer = 64 * 1024 - 1;

// Bytes that a packet adds to the request and its reply to the answer.
struct Cost {
    std::size_t request = 0;
    std::size_t answer = 0;
};

// A request without packets: the identification, and the length before the answer.
inline constexpr Cost kEmpty{.request = 4, .answer = 4};

// Packets from `begin` to before `end`.
struct Batch {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Splits a list of packets, in order, into requests within both limits. `base` is the cost of each
// request without packets. A packet that exceeds a limit by itself gets its own request.
std::vector<Batch> cutIntoRequests(std::span<const Cost> packets, Cost base);

} // namespace orvane::velmar
