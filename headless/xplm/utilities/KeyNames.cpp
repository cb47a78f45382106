#include "headless/xplm/utilities/KeyNames.h"

#include <array>
#include <string>

#include "XPLMDefs.h"

namespace headless {

namespace {

struct NamedKey {
    int key;
    const char* name;
};

constexpr NamedKey kNamed[] = {
    {XPLM_VK_BACK, "Backspace"},
    {XPLM_VK_TAB, "Tab"},
    {XPLM_VK_CLEAR, "Clear"},
    {XPLM_VK_RETURN, "Return"},
    {XPLM_VK_ESCAPE, "Escape"},
    {XPLM_VK_SPACE, "Space"},
    {XPLM_VK_PRIOR, "Page Up"},
    {XPLM_VK_NEXT, "Page Down"},
    {XPLM_VK_END, "End"},
    {XPLM_VK_HOME, "Home"},
    {XPLM_VK_LEFT, "Left"},
    {XPLM_VK_UP, "Up"},
    {XPLM_VK_RIGHT, "Right"},
    {XPLM_VK_DOWN, "Down"},
    {XPLM_VK_INSERT, "Insert"},
    {XPLM_VK_DELETE, "Delete"},
    {XPLM_VK_MULTIPLY, "Numpad *"},
    {XPLM_VK_ADD, "Numpad +"},
    {XPLM_VK_SEPARATOR, "Separator"},
    {XPLM_VK_SUBTRACT, "Numpad -"},
    {XPLM_VK_DECIMAL, "Numpad ."},
    {XPLM_VK_DIVIDE, "Numpad /"},
    {XPLM_VK_EQUAL, "="},
    {XPLM_VK_MINUS, "-"},
    {XPLM_VK_RBRACE, "]"},
    {XPLM_VK_LBRACE, "["},
    {XPLM_VK_QUOTE, "'"},
    {XPLM_VK_SEMICOLON, ";"},
    {XPLM_VK_BACKSLASH, "\\"},
    {XPLM_VK_COMMA, ","},
    {XPLM_VK_SLASH, "/"},
    {XPLM_VK_PERIOD, "."},
    {XPLM_VK_BACKQUOTE, "`"},
    {XPLM_VK_ENTER, "Enter"},
    {XPLM_VK_NUMPAD_ENT, "Numpad Enter"},
    {XPLM_VK_NUMPAD_EQ, "Numpad ="},
};

std::array<std::string, 256> makeNames() {
    std::array<std::string, 256> names;
    const auto set = [&](int key, const std::string& name) {
        names.at(static_cast<std::size_t>(key)) = name;
    };
    for (char letter = '0'; letter <= 'Z'; ++letter) {
        if (letter <= '9' || letter >= 'A') {
            set(letter, std::string(1, letter));
        }
    }
    for (int digit = 0; digit <= 9; ++digit) {
        set(XPLM_VK_NUMPAD0 + digit, "Numpad " + std::to_string(digit));
    }
    for (int key = XPLM_VK_F1; key <= XPLM_VK_F24; ++key) {
        // Starts from a string, or GCC 12 with optimisation warns of a copy that never happens.
        set(key, std::string("F") + std::to_string(key - XPLM_VK_F1 + 1));
    }
    for (const NamedKey& named : kNamed) {
        set(named.key, named.name);
    }
    return names;
}

} // namespace

const char* keyName(unsigned char virtualKey) {
    static const std::array<std::string, 256> kNames = makeNames();
    return kNames.at(virtualKey).c_str();
}

} // namespace headless
