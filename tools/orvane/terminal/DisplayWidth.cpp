#include "tools/orvane/terminal/DisplayWidth.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace orvane::tool {

namespace {

// The C library knows the widths of characters in the current locale only.
class Utf8Locale final {
public:
    Utf8Locale() : before(::uselocale(utf8())) {}
    ~Utf8Locale() { ::uselocale(before); }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

private:
    // Null, which changes nothing, if the system has no such locale.
    static locale_t utf8() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    const locale_t before;
};

struct Character {
    std::size_t bytes = 1;
    std::size_t columns = 1;
};

Character firstOf(std::string_view text) {
    wchar_t decoded = 0;
    std::mbstate_t state{};
    const std::size_t bytes = std::mbrtowc(&decoded, text.data(), text.size(), &state);
    if (bytes == 0 || bytes > text.size()) {
        return {};
    }
    return {bytes, static_cast<std::size_t>(std::max(::wcwidth(decoded), 0))};
}

} // namespace

std::size_t displayWidth(std::string_view text) {
    const Utf8Locale locale;
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = firstOf(text);
        columns += character.columns;
        text.remove_prefix(character.bytes);
    }
    return columns;
}

std::string_view beginningOf(std::string_view text, std::size_t columns) {
    const Utf8Locale locale;
    std::size_t taken = 0;
    while (taken < text.size()) {
        const Character character = firstOf(text.substr(taken));
        if (character.columns > columns) {
            break;
        }
        columns -= character.columns;
        taken += character.bytes;
    }
    return text.substr(0, taken);
}

std::string_view endOf(std::string_view text, std::size_t columns) {
    std::size_t width = displayWidth(text);
    const Utf8Locale locale;
    // A character of no width belongs to the one before it, and goes with it.
    for (bool isCut = false; !text.empty();) {
        const Character character = firstOf(text);
        if (width <= columns && !(isCut && character.columns == 0)) {
            break;
        }
        isCut = true;
        width -= character.columns;
        text.remove_prefix(character.bytes);
    }
    return text;
}

std::string lastColumns(std::string_view text, std::size_t columns) {
    constexpr std::string_view kCut = "..";
    if (displayWidth(text) <= columns) {
        return std::string(text);
    }
    const std::size_t left = columns > kCut.size() ? columns - kCut.size() : 0;
    return std::string(kCut) + std::string(endOf(text, left));
}

std::string leftAligned(std::string_view text, std::size_t columns) {
    const std::size_t width = displayWidth(text);
    return std::string(text) + std::string(columns > width ? columns - width : 0, ' ');
}

} // namespace orvane::tool
