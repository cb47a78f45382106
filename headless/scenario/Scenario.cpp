#include "headless/scenario/Scenario.h"

#include <iostream>
#include <utility>

#include "headless/lists/TextLines.h"

namespace headless {

namespace {

void addLine(Scenario& scenario, const std::string& line, int number) {
    std::string text = withoutComment(line);
    if (!text.empty()) {
        Statement statement = readStatement(text);
        scenario.lines.push_back({number, std::move(text), std::move(statement)});
    }
}

} // namespace

Scenario Scenario::Read(const std::string& path) {
    if (path == kStandardInput) {
        return Parse(std::cin, "standard input");
    }
    Scenario scenario{path, {}};
    forEachLineOfFile(
        path, [&](const std::string& line, int number) { addLine(scenario, line, number); });
    return scenario;
}

Scenario Scenario::Parse(std::istream& stream, const std::string& name) {
    Scenario scenario{name, {}};
    forEachLine(stream, name,
                [&](const std::string& line, int number) { addLine(scenario, line, number); });
    return scenario;
}

} // namespace headless
