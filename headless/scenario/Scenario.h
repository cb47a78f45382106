#pragma once

#include <istream>
#include <string>
#include <vector>

#include "headless/scenario/Statement.h"

namespace headless {

struct ScenarioLine {
    int number = 0;
    // The statement as it was written, without its comment.
    std::string text;
    Statement statement;
};

// A file of statements, one a line. A # begins a comment; blank lines are skipped. All of it is
// read before anything is carried out.
struct Scenario {
    static constexpr const char* kStandardInput = "-";

    // What stands for the file in complaints.
    std::string name;
    std::vector<ScenarioLine> lines;

    // Throws TextFileError when the file cannot be opened or a line is not a statement.
    static Scenario Read(const std::string& path);
    static Scenario Parse(std::istream& stream, const std::string& name);
};

} // namespace headless
