#include "tools/orvane/dump/TarnelDefinitions.h"

#include "tools/orvane/dump/TarnelWire.h"

#include <fmt/format.h>

namespace orvane::tool::dump {

bool TarnelOutput::IsWatchedCommand() const {
    return type == kTypeCommand && name.starts_with("kyr/");
}

bool TarnelOutput::IsArray() const {
    return type == kTypeIntArray || type == kTypeFloatArray;
}

std::string TarnelOutput::TypeText() const {
    switch (type) {
    case kTypeInt:
        return "int";
    case kTypeFloat:
        return "float";
    case kTypeIntArray:
    case kTypeFloatArray: {
        const char* const element = type == kTypeIntArray ? "int" : "float";
        const std::string from = first == 0 ? std::string() : fmt::format(" from {}", first);
        return fmt::format("{}[{}]{}", element, count, from);
    }
    case kTypeCommand:
        return "command";
    default:
        return fmt::format("type {}", type);
    }
}

} // namespace orvane::tool::dump
