#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace orvane::tool::dump {

// An IPv4 address, its first number in the highest byte, and a port.
struct Endpoint {
    std::uint32_t address = 0;
    std::uint16_t port = 0;

    bool operator==(const Endpoint&) const = default;
    bool operator<(const Endpoint& other) const {
        return std::tie(address, port) < std::tie(other.address, other.port);
    }
};

// "192.0.2.7:48000"
std::string toString(const Endpoint& endpoint);

} // namespace orvane::tool::dump
