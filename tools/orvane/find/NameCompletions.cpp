#include "tools/orvane/find/NameCompletions.h"

#include <map>
#include <stdexcept>
#include <vector>

#include "tools/orvane/find/NameLists.h"

namespace orvane::tool {

namespace {

// Candidates with their meanings.
using Candidates = std::map<std::string, std::string>;

template <typename Entry>
Candidates candidatesOf(const std::vector<Entry>& all, const std::string& begin,
                        const std::string& end) {
    Candidates candidates;
    for (const Entry& each : all) {
        if (!each.name.starts_with(begin)) {
            continue;
        }
        const std::size_t slash = each.name.find('/', begin.size());
        if (slash != std::string::npos) {
            candidates.emplace(each.name.substr(0, slash + 1), "");
        } else {
            candidates.emplace(each.name + end, each.description);
        }
    }
    return candidates;
}

std::string linesOf(const Candidates& candidates) {
    std::string lines;
    for (const auto& [name, meaning] : candidates) {
        lines += name;
        if (!meaning.empty()) {
            lines.append("\t").append(meaning);
        }
        lines += '\n';
    }
    return lines;
}

} // namespace

std::string nameCompletions(const std::string& kind, const std::string& begin) {
    const bool isAssignment = kind == "DATAREF=VALUE";
    ListFiles files;
    if (kind == "DATAREF" || isAssignment) {
        files.datarefs = installedLists().datarefs;
    } else if (kind == "SIMCOMMAND") {
        files.commands = installedLists().commands;
    }
    try {
        const NameLists lists = NameLists::Read(files);
        return linesOf(candidatesOf(lists.datarefs, begin, isAssignment ? "=" : "")) +
               linesOf(candidatesOf(lists.commands, begin, ""));
    } catch (const std::runtime_error&) {
        return {};
    }
}

} // namespace orvane::tool
