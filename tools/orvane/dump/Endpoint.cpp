#include "tools/orvane/dump/Endpoint.h"

#include <fmt/format.h>

namespace orvane::tool::dump {

std::string toString(const Endpoint& endpoint) {
    const std::uint32_t address = endpoint.address;
    return fmt::format("{}.{}.{}.{}:{}", address >> 24U, address >> 16U & 0xFFU,
                       address >> 8U & 0xFFU, address & 0xFFU, endpoint.port);
}

} // namespace orvane::tool::dump
