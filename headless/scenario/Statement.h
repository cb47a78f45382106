#pragma once

#include <functional>
#include <span>
#include <string>

#include "headless/scenario/Arguments.h"
#include "headless/scenario/Flight.h"

namespace headless {

// A statement of a scenario or of the console, read and ready to be carried out.
struct Statement {
    // What it is for: to change something, to tell something, or to check something.
    enum class Purpose { Act, Tell, Check };

    // Carries it out and returns one line of reply. Throws ExpectationFailed when something is not
    // as it was expected, and another std::exception when it cannot be carried out.
    std::function<std::string(Flight&)> execute;
    Purpose purpose = Purpose::Act;
};

// What a statement names first, for a prompt that completes it.
enum class NamedThing { None, Dataref, Command, Plugin, Statement };

struct StatementKind {
    const char* word;
    const char* usage;
    const char* description;
    NamedThing names;
    // Throws std::invalid_argument for what it cannot read.
    Statement (*read)(Arguments& arguments);
};

// All that can be said, in the order in which help tells it.
std::span<const StatementKind> statementKinds();
// Throws std::invalid_argument when there is none.
const StatementKind& statementKind(const std::string& word);

// Throws std::invalid_argument, one line, for what is not a statement.
Statement readStatement(const std::string& line);

// The line without its comment, which begins with a # at the beginning of the line or after a
// blank, and without blanks around it. What is in quotes stays.
std::string withoutComment(const std::string& line);

} // namespace headless
