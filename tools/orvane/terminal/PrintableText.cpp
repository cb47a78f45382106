#include "tools/orvane/terminal/PrintableText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include <fmt/core.h>

namespace orvane::tool {

namespace {

using CodePoint = std::uint32_t;

constexpr unsigned char kContinuation = 0x80;
constexpr CodePoint kLastCodePoint = 0x10FFFF;

// The length of a character by its first byte; 0 if no character begins with it.
std::size_t lengthFrom(unsigned char first) {
    if (first < kContinuation) {
        return 1;
    }
    for (const auto& [mask, mark, length] :
         {std::array<unsigned, 3>{0xE0, 0xC0, 2}, {0xF0, 0xE0, 3}, {0xF8, 0xF0, 4}}) {
        if ((first & mask) == mark) {
            return length;
        }
    }
    return 0;
}

bool isHarmless(CodePoint character) {
    // Control characters; Arabic letter mark; marks, separators, embeddings; isolates; surrogates.
    constexpr std::array<std::pair<CodePoint, CodePoint>, 8> kHarmful{{{0x00, 0x1F},
                                                                       {0x7F, 0x9F},
                                                                       {0x061C, 0x061C},
                                                                       {0x200E, 0x200F},
                                                                       {0x2028, 0x202E},
                                                                       {0x2066, 0x2069},
                                                                       {0xD800, 0xDFFF},
                                                                       {0xFEFF, 0xFEFF}}};
    return character <= kLastCodePoint &&
           std::none_of(kHarmful.begin(), kHarmful.end(), [&](const auto& range) {
               return character >= range.first && character <= range.second;
           });
}

// The number of bytes of the first character if a terminal merely shows it, else 0.
std::size_t harmlessLength(std::string_view text) {
    constexpr std::array<CodePoint, 5> kLeastOfLength{0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = lengthFrom(first);
    if (length == 0 || length > text.size()) {
        return 0;
    }
    CodePoint character = length == 1 ? first : first & (0x7FU >> length);
    for (const char byte : text.substr(1, length - 1)) {
        if ((static_cast<unsigned char>(byte) & 0xC0U) != kContinuation) {
            return 0;
        }
        character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return character >= kLeastOfLength[length] && isHarmless(character) ? length : 0;
}

} // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = harmlessLength(text);
        if (length == 0) {
            result += fmt::format("\\x{:02X}", static_cast<unsigned char>(text.front()));
        } else {
            result += text.front() == '\\' ? "\\\\" : text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

bool hasControls(std::string_view text) {
    return std::any_of(text.begin(), text.end(),
                       [](unsigned char each) { return each < ' ' || each == 0x7F; });
}

} // namespace orvane::tool
