#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/WireVectors.h"

// The values of the words in a vector's statement.

inline std::int32_t asInt(const std::string& text) {
    return static_cast<std::int32_t>(std::stol(text));
}

// Also in hexadecimal, after 0x.
inline std::uint32_t asNumber(const std::string& text) {
    return static_cast<std::uint32_t>(std::stoul(text, nullptr, 0));
}

template <typename T>
std::vector<T> asNumbers(const std::string& text) {
    std::vector<T> all;
    for (const std::string& word : listOf(text)) {
        all.push_back(static_cast<T>(std::stod(word)));
    }
    return all;
}

template <typename Map>
const auto& lookUp(const Map& map, const std::string& word) {
    const auto found = map.find(word);
    if (found == map.end()) {
        throw std::invalid_argument("unknown word " + word);
    }
    return found->second;
}
