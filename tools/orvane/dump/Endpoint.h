#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace orvane::tool::dump {

// An IPv4 address, its first number in the highest byte, and a port.
struct Endpoint {
    std::uint32_t address = 0;
    std::uint16_t port = 0;

    auto operator<=>(const Endpoint&) const = default;
};

// "192.0.2.7:48000"
std::string toString(const Endpoint& endpoint);

} // namespace orvane::tool::dump
