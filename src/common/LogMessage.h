#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>

#include "common/ILoggingService.h"

// A piece of a log message: text, or an integer in plain decimal. Valid only during the call that
// it is made for.
class LogMessagePart final {
public:
    LogMessagePart(const char* text) : text(text) {}
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

// Joins the pieces.
std::string logMessage(std::initializer_list<LogMessagePart> parts);

// Joins and logs the pieces. A message that would be dropped is not built at all: every exchange
// has several, and the verbose log is usually off.
template <typename... Pieces>
void logIfEnabled(ILoggingService* logger, LogLevel level, Pieces... pieces) {
    if (logger->IsEnabled(level)) {
        logger->Log(level, logMessage({pieces...}));
    }
}
