#pragma once

#include <istream>
#include <string>
#include <vector>

#include "headless/scenario/Statement.h"

namespace headless {

struct ScenarioLine {
    int number = 0;
    // The statement as written, without its comment.
    std::string text;
    Statement statement;
};

// A file of statements, one per line. A # begins a comment; blank lines are skipped. The whole file
// is read before any statement is carried out.
struct Scenario {
    static constexpr const char* kStandardInput = "-";

    // The file's name in error messages.
    std::string name;
    std::vector<ScenarioLine> lines;

    // Throws TextFileError if the file cannot be opened or a line is not a statement.
    static Scenario Read(const std::string& path);
    static Scenario Parse(std::istream& stream, const std::string& name);
};

} // namespace headless
