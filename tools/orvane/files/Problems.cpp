#include "tools/orvane/files/Problems.h"

#include <algorithm>
#include <tuple>

#include <fmt/core.h>

#include "tools/orvane/files/Output.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

std::string problemText(const std::string& file, const Problem& problem) {
    const std::string column = problem.column == 0 ? "" : fmt::format(":{}", problem.column);
    return fmt::format("{}:{}{}: {}", file, problem.line, column, problem.reason);
}

std::string problemLines(const std::string& file, Problems problems) {
    std::stable_sort(problems.begin(), problems.end(), [](const Problem& a, const Problem& b) {
        return std::tie(a.line, a.column) < std::tie(b.line, b.column);
    });
    std::string lines;
    for (const Problem& problem : problems) {
        lines += printable(problemText(file, problem)) + '\n';
    }
    return lines;
}

void printProblems(const std::string& file, const Problems& problems) {
    printErrorText(problemLines(file, problems));
}

} // namespace orvane::tool
