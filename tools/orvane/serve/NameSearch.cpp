#include "tools/orvane/serve/NameSearch.h"

#include <functional>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/find/Pattern.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

namespace {

constexpr std::size_t kLongestText = 100;

// As the page asks for it.
std::string argumentOf(const ListedDataref& dataref) {
    return dataref.name + ":" + (dataref.type == "double" ? "float" : dataref.type);
}

const std::string& argumentOf(const ListedCommand& command) {
    return command.name;
}

bool isTransferable(const ListedDataref& dataref) {
    return !dataref.type.starts_with("byte");
}

bool isTransferable(const ListedCommand& /*command*/) {
    return true;
}

template <typename Entry>
void appendMatches(Record& found, const std::vector<Entry>& all,
                   const std::function<bool(const Entry&)>& matches) {
    for (const Entry& each : all) {
        if (found.size() == NameSearch::kMostAnswers) {
            return;
        }
        if (isTransferable(each) && matches(each)) {
            found.push_back({{"name", argumentOf(each)}, {"text", each.description}});
        }
    }
}

template <typename Entry>
Record matchesOf(const std::vector<Entry>& all, const Pattern& pattern) {
    const auto isNamed = [&](const Entry& each) { return pattern.Matches(each.name, ""); };
    const auto isDescribed = [&](const Entry& each) {
        return !isNamed(each) && pattern.Matches("", each.description);
    };
    Record found = Record::array();
    appendMatches<Entry>(found, all, isNamed);
    appendMatches<Entry>(found, all, isDescribed);
    return found;
}

} // namespace

NameSearch::NameSearch(NameLists lists) : lists(std::move(lists)) {}

std::string NameSearch::Matching(const std::string& text) const {
    if (!isSearchText(text)) {
        throw Failure(ExitCode::WrongUsage,
                      "\"match\" is empty, too long, not plain text, or has *, ? or [");
    }
    const Pattern pattern(text);
    return jsonText({{"datarefs", matchesOf(lists.datarefs, pattern)},
                     {"commands", matchesOf(lists.commands, pattern)}});
}

bool isSearchText(std::string_view text) {
    return !text.empty() && text.size() <= kLongestText && !hasControls(text) &&
           text.find_first_of("*?[") == std::string_view::npos;
}

} // namespace orvane::tool
