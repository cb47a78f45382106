#include "tools/orvane/dump/VelmarNames.h"

#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

namespace orvane::tool::dump {

bool VelmarDataref::IsArray() const {
    return type == VelmarType::IntArray || type == VelmarType::FloatArray;
}

std::uint64_t VelmarDataref::ValueSize() const {
    constexpr std::uint64_t kWord = 4;
    switch (type) {
    case VelmarType::None:
        return 0;
    case VelmarType::Byte:
        return 1;
    case VelmarType::IntArray:
    case VelmarType::FloatArray:
        return kWord * arraySize;
    default:
        return kWord;
    }
}

std::string VelmarDataref::TypeText() const {
    switch (type) {
    case VelmarType::Int:
        return "int";
    case VelmarType::Float:
        return "float";
    case VelmarType::Byte:
        return "byte";
    case VelmarType::IntArray:
        return fmt::format("int[{}]", arraySize);
    case VelmarType::FloatArray:
        return fmt::format("float[{}]", arraySize);
    default:
        return "none";
    }
}

std::string VelmarNames::DatarefText(std::uint32_t id) const {
    const auto found = datarefs.find(id);
    return found == datarefs.end() ? std::to_string(id)
                                   : fmt::format("{} {}", id, printable(found->second.name));
}

std::string VelmarNames::CommandText(std::uint32_t id) const {
    const auto found = commands.find(id);
    return found == commands.end() ? std::to_string(id)
                                   : fmt::format("{} {}", id, printable(found->second));
}

} // namespace orvane::tool::dump
