#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace headless {

// Empty if the text as a whole is not a number, or the number does not fit.
template <class Number>
std::optional<Number> parsedNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc{} && stopped == end;
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace headless
