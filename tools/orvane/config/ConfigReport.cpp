#include "tools/orvane/config/ConfigReport.h"

#include <algorithm>

#include <fmt/core.h>

namespace orvane::tool::config {

const char* typeWord(DatarefType type) {
    switch (type) {
    case DatarefType::Int:
        return "int";
    case DatarefType::Float:
        return "float";
    case DatarefType::Double:
        return "double";
    case DatarefType::IntArray:
        return "int_array";
    case DatarefType::FloatArray:
        return "float_array";
    case DatarefType::ByteArray:
        return "byte_array";
    }
    return "";
}

bool isArray(DatarefType type) {
    return type == DatarefType::IntArray || type == DatarefType::FloatArray ||
           type == DatarefType::ByteArray;
}

std::string typeText(const Declaration& declared) {
    const std::string word = typeWord(declared.type);
    return isArray(declared.type) ? fmt::format("{}[{}]", word, declared.size) : word;
}

const char* reasonWord(Reason reason) {
    switch (reason) {
    case Reason::None:
        return "";
    case Reason::Tab:
        return "tab";
    case Reason::CarriageReturn:
        return "carriage-return";
    case Reason::CutByComment:
        return "cut-by-comment";
    case Reason::NoType:
        return "no-type";
    case Reason::UnknownType:
        return "unknown-type";
    case Reason::NoSize:
        return "no-size";
    case Reason::SizeNotANumber:
        return "size-no-number";
    case Reason::SizeBelowOne:
        return "size-below-one";
    case Reason::SizeTooLarge:
        return "size-too-large";
    case Reason::Duplicate:
        return "duplicate";
    }
    return "";
}

std::size_t ConfigReport::IgnoredCount() const {
    return static_cast<std::size_t>(std::count_if(
        lines.begin(), lines.end(), [](const ConfigLine& line) { return line.IsIgnored(); }));
}

} // namespace orvane::tool::config
