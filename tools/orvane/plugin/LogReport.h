#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool::plugin {

struct Explanation;

// Lines of the plugin that mean the same.
struct LoggedLines {
    // Null for lines that this version of the plugin does not log.
    const Explanation* explanation = nullptr;
    std::size_t count = 0;
    // With its date and time.
    std::string last{};
};

// What the plugin has written into a simulator's log.
struct LogReport {
    // In the order of their first lines.
    std::vector<LoggedLines> lines{};
    // Lines of the verbose log, which are not among the others.
    std::size_t verboseCount = 0;
};

// Empty if the line is not the plugin's.
std::string_view messageIn(std::string_view line);

// Borrows from `explanations`. Failure: cannot be read.
LogReport readLog(const std::filesystem::path& file, const std::vector<Explanation>& explanations);

// The system's text for "Unknown Socket Error Code 98" at the end of a message; empty without one.
std::string errorTextOf(std::string_view message);

} // namespace orvane::tool::plugin
