#include "tools/orvane/plugin/LogLines.h"

#include <algorithm>
#include <cctype>

namespace orvane::tool::plugin {

namespace {

constexpr std::string_view kHeading = "| Line | What happened | Why | What to do |";
constexpr std::size_t kColumns = 4;

std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    std::size_t end = 0;
    while ((end = text.find(separator)) != std::string_view::npos) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + separator.size());
    }
    parts.emplace_back(text);
    return parts;
}

std::string withoutBackticks(std::string text) {
    std::erase(text, '`');
    return text;
}

std::vector<std::string> cellsOf(std::string_view row) {
    constexpr std::string_view kBegin = "| ";
    constexpr std::string_view kEnd = " |";
    if (!row.starts_with(kBegin) || !row.ends_with(kEnd)) {
        return {};
    }
    row.remove_prefix(kBegin.size());
    row.remove_suffix(kEnd.size());
    return split(row, " | ");
}

// "<number>" has a letter after the bracket, "length < 4" has not.
std::size_t placeholderIn(const std::string& text, std::size_t from) {
    std::size_t begin = text.find('<', from);
    while (begin != std::string::npos &&
           (begin + 1 == text.size() ||
            std::isalpha(static_cast<unsigned char>(text[begin + 1])) == 0)) {
        begin = text.find('<', begin + 1);
    }
    return begin;
}

Pieces piecesOf(const std::string& message) {
    Pieces pieces;
    std::size_t begin = 0;
    std::size_t placeholder = 0;
    while ((placeholder = placeholderIn(message, begin)) != std::string::npos) {
        pieces.push_back(message.substr(begin, placeholder - begin));
        begin = std::min(message.find('>', placeholder), message.size() - 1) + 1;
    }
    pieces.push_back(message.substr(begin));
    return pieces;
}

Explanation explanationFrom(const std::vector<std::string>& cells) {
    Explanation explanation;
    for (const std::string& line : split(cells[0], "<br>")) {
        explanation.messages.push_back(piecesOf(withoutBackticks(line)));
    }
    explanation.happened = withoutBackticks(cells[1]);
    explanation.why = withoutBackticks(cells[2]);
    explanation.toDo = withoutBackticks(cells[3]);
    return explanation;
}

bool matches(const Pieces& pieces, std::string_view message) {
    if (pieces.size() == 1) {
        return message == pieces.front();
    }
    if (!message.starts_with(pieces.front())) {
        return false;
    }
    message.remove_prefix(pieces.front().size());
    for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
        const std::size_t found = message.find(pieces[i]);
        if (found == std::string_view::npos) {
            return false;
        }
        message.remove_prefix(found + pieces[i].size());
    }
    return message.ends_with(pieces.back());
}

std::size_t lengthOf(const Pieces& pieces) {
    std::size_t length = 0;
    for (const std::string& piece : pieces) {
        length += piece.size();
    }
    return length;
}

} // namespace

std::vector<Explanation> explanationsOn(std::string_view page) {
    std::vector<Explanation> all;
    bool isInTable = false;
    for (const std::string& line : split(page, "\n")) {
        const std::vector<std::string> cells = cellsOf(line);
        if (line == kHeading) {
            isInTable = true;
        } else if (isInTable && cells.size() == kColumns) {
            all.push_back(explanationFrom(cells));
        } else if (!line.starts_with("|---")) {
            isInTable = false;
        }
    }
    return all;
}

const Explanation* explanationOf(const std::vector<Explanation>& all, std::string_view message) {
    const Explanation* best = nullptr;
    std::size_t bestLength = 0;
    for (const Explanation& explanation : all) {
        for (const Pieces& pieces : explanation.messages) {
            const bool isMatch = matches(pieces, message) || message == pieces.front();
            if (isMatch && lengthOf(pieces) > bestLength) {
                best = &explanation;
                bestLength = lengthOf(pieces);
            }
        }
    }
    return best;
}

} // namespace orvane::tool::plugin
