#include "tools/orvane/plugin/LogReport.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/plugin/LogLines.h"

namespace orvane::tool::plugin {

namespace {

constexpr std::string_view kName = "XPlaneOrvane ";
constexpr std::string_view kUnknownError = "Unknown Socket Error Code ";

bool isVerbose(std::string_view message) {
    return message == "PluginStart" || message.starts_with("Verbose@") ||
           message.starts_with("VERBOSE@");
}

// Drops a word of digits and separators, such as "2026-3-5", and the blank after it.
bool dropStamp(std::string_view& text) {
    const std::size_t end = text.find(' ');
    if (end == 0 || end == std::string_view::npos ||
        text.substr(0, end).find_first_not_of("0123456789-:") != std::string_view::npos) {
        return false;
    }
    text.remove_prefix(end + 1);
    return true;
}

void add(LogReport& report, const Explanation* explanation, const std::string& line) {
    const auto found =
        std::find_if(report.lines.begin(), report.lines.end(),
                     [&](const LoggedLines& lines) { return lines.explanation == explanation; });
    if (found == report.lines.end()) {
        report.lines.push_back({explanation, 1, line});
    } else {
        ++found->count;
        found->last = line;
    }
}

} // namespace

std::string_view messageIn(std::string_view line) {
    if (!line.starts_with(kName)) {
        return {};
    }
    line.remove_prefix(kName.size());
    return dropStamp(line) && dropStamp(line) ? line : std::string_view();
}

LogReport readLog(const std::filesystem::path& file, const std::vector<Explanation>& explanations) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        throw Failure(ExitCode::WrongUsage, fmt::format("{}: not a file", file.string()));
    }
    std::ifstream log(file);
    if (!log) {
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("{}: {}", file.string(), std::strerror(errno)));
    }
    LogReport report;
    for (std::string line; std::getline(log, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        const std::string_view message = messageIn(line);
        if (isVerbose(message)) {
            ++report.verboseCount;
        } else if (!message.empty()) {
            add(report, explanationOf(explanations, message), line);
        }
    }
    return report;
}

std::string errorTextOf(std::string_view message) {
    const std::size_t begin = message.rfind(kUnknownError);
    if (begin == std::string_view::npos) {
        return "";
    }
    message.remove_prefix(begin + kUnknownError.size());
    const std::optional<int> code = headless::parsedNumber<int>(message);
    return code ? std::strerror(*code) : "";
}

} // namespace orvane::tool::plugin
