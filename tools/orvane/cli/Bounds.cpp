#include "tools/orvane/cli/Bounds.h"

#include <charconv>
#include <system_error>

#include <CLI/Error.hpp>
#include <CLI/Validators.hpp>
#include <fmt/core.h>

namespace orvane::tool {

namespace {

template <typename Number>
CLI::Validator check(Number least, Number most, const std::string& words, const char* kind) {
    const std::string bounds = words.empty() ? fmt::format("{} and {}", least, most) : words;
    const auto problem = [=](const std::string& text) -> std::string {
        Number number{};
        const char* const end = text.data() + text.size();
        const auto [stopped, error] = std::from_chars(text.data(), end, number);
        if (stopped != end || error == std::errc::invalid_argument) {
            return fmt::format("\"{}\" is not {}", text, kind);
        }
        const bool isWithin = error == std::errc{} && number >= least && number <= most;
        return isWithin ? "" : fmt::format("{} is not between {}", text, bounds);
    };
    return {problem, ""};
}

} // namespace

CLI::Validator between(double least, double most, const std::string& words) {
    return check(least, most, words, "a number");
}

CLI::Validator wholeBetween(std::int64_t least, std::int64_t most, const std::string& words) {
    return check(least, most, words, "a whole number");
}

} // namespace orvane::tool
