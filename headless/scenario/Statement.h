#pragma once

#include <functional>
#include <span>
#include <string>

#include "headless/scenario/Arguments.h"
#include "headless/scenario/Flight.h"

namespace headless {

// A statement of a scenario or the console, parsed and ready to be carried out.
struct Statement {
    // What it does: change something, report something, or check something.
    enum class Purpose { Act, Report, Check };

    // Carries out the statement and returns one line of reply. Throws ExpectationFailed if an
    // expectation is not met, and another std::exception if the statement cannot be carried out.
    std::function<std::string(Flight&)> execute;
    Purpose purpose = Purpose::Act;
};

// What a statement's first argument names, for completion at the prompt.
enum class NamedThing { None, Dataref, Command, Plugin, Statement };

struct StatementKind {
    const char* word;
    const char* usage;
    const char* description;
    // Throws std::invalid_argument for arguments that it cannot read.
    Statement (*read)(Arguments& arguments);
    NamedThing names = NamedThing::None;
};

// All statements, in the order that help lists them.
std::span<const StatementKind> statementKinds();
// Throws std::invalid_argument if there is no such statement.
const StatementKind& statementKind(const std::string& word);

// Throws std::invalid_argument, with one line, if the line is not a statement.
Statement readStatement(const std::string& line);

// Carries out a line of the console and returns its reply, which is one line: "error: " and the
// reason if it is not a statement, cannot be carried out or an expectation is not met; "ok" for a
// comment.
std::string replyTo(const std::string& line, Flight& flight);

// Returns the line without its comment and without blanks at both ends. A comment begins with a #
// at the beginning of the line or after a blank, but not in quotes.
std::string withoutComment(const std::string& line);

} // namespace headless
