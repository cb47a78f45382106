// The escaping of text for a terminal. Its result has no control sequences, and the original bytes
// can be read from it.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "tools/orvane/terminal/PrintableText.h"

namespace {

using orvane::tool::printable;

void check(bool isRight, const char* what) {
    if (!isRight) {
        std::cerr << what << '\n';
        std::abort();
    }
}

int digit(char character) {
    return character <= '9' ? character - '0' : character - 'A' + 10;
}

// The text that was made printable.
std::string original(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text.at(i + 1) == '\\') {
            bytes += text[++i];
        } else {
            check(text.at(i + 1) == 'x', "a backslash is followed by neither x nor a backslash");
            bytes += static_cast<char>(digit(text.at(i + 2)) * 16 + digit(text.at(i + 3)));
            i += 3;
        }
    }
    return bytes;
}

// Control characters of one byte, and those from U+0080 on, which have two.
bool hasControls(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isSecondControl =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (byte < 0x20 || byte == 0x7F || isSecondControl) {
            return true;
        }
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string shown = printable(text);
    check(!hasControls(shown), "a control character is left");
    check(original(shown) == text, "the result does not give the bytes back");
    // A harmless text stays unchanged, except for its backslashes.
    if (text.find('\\') == std::string::npos && shown.find('\\') == std::string::npos) {
        check(printable(shown) == shown, "a harmless text is changed");
    }
    return 0;
}
