#include "tools/orvane/files/InputLines.h"

#include <utility>

namespace orvane::tool {

std::optional<std::string> InputLines::Next() {
    std::size_t searched = begin;
    std::size_t end = std::string::npos;
    while ((end = unread.find('\n', searched)) == std::string::npos) {
        // Drops what was returned once per block, not once per line.
        unread.erase(0, std::exchange(begin, 0));
        searched = unread.size();
        if (!file.ReadInto(unread)) {
            break;
        }
    }
    isCut = end == std::string::npos;
    if (isCut && (unread.empty() || !file.IsAtEnd())) {
        return std::nullopt;
    }
    std::string line = unread.substr(begin, isCut ? end : end - begin);
    begin = isCut ? unread.size() : end + 1;
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    ++number;
    return line;
}

} // namespace orvane::tool
