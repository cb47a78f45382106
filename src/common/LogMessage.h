#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

// A piece of a log message: text as it stands, or a whole number in plain decimal. Lives no longer
// than the call that it is made for.
class LogMessagePart final {
public:
    LogMessagePart(const char* piece) : text(piece) {}
    template <std::integral Number>
    LogMessagePart(Number number) {
        const char* const end =
            std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        text = std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
    }
    LogMessagePart(const LogMessagePart&) = delete;
    LogMessagePart& operator=(const LogMessagePart&) = delete;

    std::string_view Text() const { return text; }

private:
    // Enough for any 64-bit number with its sign.
    std::array<char, 20> digits{};
    std::string_view text;
};

// The pieces in a row. Takes memory once, as messages are built in every exchange, and most of them
// to be dropped.
std::string logMessage(std::initializer_list<LogMessagePart> parts);
