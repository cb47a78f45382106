#include "tools/orvane/find/Pattern.h"

#include <fnmatch.h>

#include <cctype>

namespace orvane::tool {

namespace {

std::string inLowerCase(std::string text) {
    for (char& letter : text) {
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return text;
}

} // namespace

Pattern::Pattern(const std::string& text)
    : lowered(inLowerCase(text)), isGlob(text.find_first_of("*?[") != std::string::npos) {}

bool Pattern::Matches(const std::string& name, const std::string& description) const {
    const std::string lowerName = inLowerCase(name);
    if (isGlob) {
        return ::fnmatch(lowered.c_str(), lowerName.c_str(), 0) == 0;
    }
    return lowerName.find(lowered) != std::string::npos ||
           inLowerCase(description).find(lowered) != std::string::npos;
}

} // namespace orvane::tool
