#include "headless/scenario/Scenario.h"

#include <fstream>
#include <iostream>
#include <utility>

#include "headless/lists/TextLines.h"

namespace headless {

Scenario Scenario::Read(const std::string& path) {
    if (path == kStandardInput) {
        return Parse(std::cin, "standard input");
    }
    std::ifstream stream = openTextFile(path);
    return Parse(stream, path);
}

Scenario Scenario::Parse(std::istream& stream, const std::string& name) {
    Scenario scenario{name, {}};
    forEachLine(stream, name, [&](const std::string& line, int number) {
        std::string text = withoutComment(line);
        if (!text.empty()) {
            Statement statement = readStatement(text);
            scenario.lines.push_back({number, std::move(text), std::move(statement)});
        }
    });
    return scenario;
}

} // namespace headless
