#include "tools/orvane/cli/NearestWord.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <utility>

namespace orvane::tool {

namespace {

// How many letters must be added, removed, replaced, or swapped with the next one.
std::size_t editsBetween(std::string_view one, std::string_view other) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last;
    std::vector<std::size_t> row(other.size() + 1);
    for (std::size_t i = 0; i <= one.size(); ++i) {
        for (std::size_t j = 0; j <= other.size(); ++j) {
            if (i == 0 || j == 0) {
                row[j] = i + j;
                continue;
            }
            const std::size_t change = one[i - 1] == other[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast = std::exchange(last, row);
    }
    return last.back();
}

std::string_view withoutDashes(std::string_view option) {
    const std::size_t begin = option.find_first_not_of('-');
    return begin == std::string_view::npos ? std::string_view() : option.substr(begin);
}

char lower(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

} // namespace

std::string nearestWord(std::string_view typed, const std::vector<std::string>& known) {
    constexpr std::size_t kLettersPerEdit = 4;
    std::string nearest;
    std::size_t fewest = 1 + typed.size() / kLettersPerEdit;
    for (const std::string& word : known) {
        // An abbreviation is not a mistake.
        const bool isBeginning = typed.size() > 1 && word.starts_with(typed);
        const std::size_t edits = isBeginning ? 0 : editsBetween(typed, word);
        if (edits < word.size() && (edits < fewest || (edits == fewest && nearest.empty()))) {
            nearest = word;
            fewest = edits;
        }
    }
    return nearest;
}

std::string nearestOption(std::string_view typed, const std::vector<std::string>& known) {
    const std::string_view name = withoutDashes(typed);
    if (name.size() == 1) {
        const auto found = std::find_if(known.begin(), known.end(), [&](const std::string& option) {
            return lower(withoutDashes(option).front()) == lower(name.front());
        });
        return found == known.end() ? "" : *found;
    }
    std::vector<std::string> names;
    names.reserve(known.size());
    for (const std::string& option : known) {
        names.emplace_back(withoutDashes(option));
    }
    const std::string nearest = nearestWord(name, names);
    const auto found = std::find(names.begin(), names.end(), nearest);
    return found == names.end() ? "" : known[static_cast<std::size_t>(found - names.begin())];
}

} // namespace orvane::tool
