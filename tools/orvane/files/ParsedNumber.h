#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace orvane::tool {

// The number that the whole text is; empty if it is not one, or does not fit.
template <typename Number>
std::optional<Number> parsedNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc{} && stopped == end;
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace orvane::tool
