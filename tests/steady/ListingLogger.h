#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "common/ILoggingService.h"

// Notes the beginning of every message, whatever its level, without taking memory for it.
class ListingLogger final : public ILoggingService {
public:
    void SetLogLevel(LogLevel /*level*/) override {}

    void Log(LogLevel /*level*/, std::string message) override {
        if (count < beginnings.size()) {
            std::strncpy(beginnings[count].data(), message.c_str(), kLength);
        }
        ++count;
    }

    void Clear() { count = 0; }
    std::size_t Count() const { return count; }

    // Up to the first bracket, or the first digit behind a blank: what does not change with the
    // numbers in the message.
    std::vector<std::string> Messages() const {
        std::vector<std::string> found;
        for (std::size_t i = 0; i < count && i < beginnings.size(); ++i) {
            found.push_back(withoutNumbers(beginnings[i].data()));
        }
        return found;
    }

private:
    static constexpr std::size_t kLength = 120;

    static std::string withoutNumbers(std::string_view text) {
        return std::string(text.substr(0, text.find_first_of("(0123456789")));
    }

    std::array<std::array<char, kLength + 1>, 64> beginnings{};
    std::size_t count = 0;
};
