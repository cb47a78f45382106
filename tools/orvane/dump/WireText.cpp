#include "tools/orvane/dump/WireText.h"

#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace orvane::tool::dump {

namespace {

constexpr std::size_t kMostElements = 16;
constexpr std::size_t kMostBytes = 32;

std::string arrayText(const nlohmann::ordered_json& values) {
    std::string text = "[";
    for (std::size_t i = 0; i < std::min(values.size(), kMostElements); ++i) {
        text += (i == 0 ? "" : ", ") + valueText(values[i]);
    }
    if (values.size() > kMostElements) {
        text += fmt::format(", ... {} in all", values.size());
    }
    return text + "]";
}

} // namespace

nlohmann::ordered_json toJson(float value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? "inf" : "-inf";
    }
    return std::strtod(fmt::format("{}", value).c_str(), nullptr);
}

std::string valueText(const nlohmann::ordered_json& value) {
    if (value.is_array()) {
        return arrayText(value);
    }
    return value.is_string() ? printable(value.get<std::string>()) : value.dump();
}

std::string hexText(ByteView bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kMostBytes))) {
        text += fmt::format("{}{:02X}", text.empty() ? "" : " ", byte);
    }
    if (bytes.size() > kMostBytes) {
        text += fmt::format(" ... {} bytes in all", bytes.size());
    }
    return text;
}

std::string hexNumber(std::uint32_t value) {
    return fmt::format("0x{:08X}", value);
}

} // namespace orvane::tool::dump
