#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace headless {

// Outputs of the SDK's functions; a caller may pass null for one it does not need.
template <class Value>
void give(Value* output, const Value& value) {
    if (output != nullptr) {
        *output = value;
    }
}

// At most `size` characters, including the terminating zero.
inline void giveText(char* output, std::size_t size, std::string_view text) {
    if (output != nullptr && size > 0) {
        const std::size_t length = std::min(text.size(), size - 1);
        std::copy_n(text.begin(), length, output);
        output[length] = '\0';
    }
}

// A structure that begins with its structSize, which the caller sets: fills only that many bytes.
template <class Structure>
void giveStructure(Structure* output, const Structure& value) {
    const int size = output->structSize;
    const auto room = static_cast<std::size_t>(std::max(0, size));
    std::memcpy(output, &value, std::min(room, sizeof(Structure)));
    output->structSize = size;
}

// The same for an input: fields that an older caller's structure lacks are zero.
template <class Structure>
Structure takeStructure(const Structure& input) {
    Structure taken{};
    const auto given = static_cast<std::size_t>(std::max(0, input.structSize));
    std::memcpy(&taken, &input, std::min(given, sizeof(Structure)));
    return taken;
}

} // namespace headless
