#pragma once

#include "tools/orvane/dump/VelmarWire.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace orvane::tool::dump {

struct VelmarDataref {
    std::string name{};
    VelmarType type = VelmarType::None;
    std::uint32_t arraySize = 0;

    bool IsArray() const;
    // What a value of it takes on the wire behind its length; 64 bits, as the plugin computes it.
    std::uint64_t ValueSize() const;
    // "float", "int[3]"
    std::string TypeText() const;
};

// What a connection has registered so far.
struct VelmarNames {
    // False when the capture began in the middle: there may be numbers that it does not explain.
    bool areComplete = true;
    std::map<std::uint32_t, VelmarDataref> datarefs{};
    std::map<std::uint32_t, std::string> commands{};

    // The number, and the name if it has one.
    std::string DatarefText(std::uint32_t id) const;
    std::string CommandText(std::uint32_t id) const;
};

} // namespace orvane::tool::dump
