#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>

#include "headless/metering/ProcessInfo.h"
#include "headless/scenario/Statements.h"

namespace headless {

namespace {

constexpr int kHighestStatus = 255;

void expectInLog(const std::string& text, const std::string& file) {
    std::ifstream log(file);
    std::string last;
    for (std::string line; std::getline(log, line); last = line) {
        if (line.find(text) != std::string::npos) {
            return;
        }
    }
    throw ExpectationFailed("expected a line of the log with \"" + text +
                            "\", got none; the last is \"" + last + "\"");
}

// In microseconds.
std::string worstFrame(Flight& flight) {
    const auto worst = flight.Session().Statistics().Worst();
    return "worst " +
           std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(worst).count());
}

std::string listStatements(Flight& /*flight*/) {
    std::string text;
    for (const StatementKind& kind : statementKinds()) {
        text += (text.empty() ? "ok: " : "; ") + std::string(kind.usage);
    }
    return text;
}

} // namespace

Statement readLog(Arguments& arguments) {
    if (!arguments.Take("expect")) {
        throw std::invalid_argument("the form is \"log expect TEXT\"");
    }
    const std::string text = arguments.Rest("the text");
    return checking(arguments,
                    [text](Flight& flight) { expectInLog(text, flight.Session().LogFile()); });
}

Statement readWorst(Arguments& arguments) {
    return reporting(arguments, &worstFrame);
}

Statement readResidentMemory(Arguments& arguments) {
    return reporting(arguments,
                     [](Flight&) { return "rss " + std::to_string(residentKilobytes()); });
}

Statement readFileDescriptors(Arguments& arguments) {
    return reporting(arguments,
                     [](Flight&) { return "fds " + std::to_string(openFileDescriptors()); });
}

Statement readHelp(Arguments& arguments) {
    if (arguments.AtEnd()) {
        return reporting(arguments, &listStatements);
    }
    const StatementKind& kind = statementKind(arguments.Word("the statement"));
    return reporting(
        arguments, [&kind](Flight&) { return std::string(kind.usage) + ": " + kind.description; });
}

Statement readQuit(Arguments& arguments) {
    const int status = arguments.AtEnd() ? 0 : arguments.TakeNumber<int>("the status");
    if (status < 0 || status > kHighestStatus) {
        throw std::invalid_argument("an exit status is 0 to 255");
    }
    return acting(arguments, [status](Flight& flight) { flight.Quit(status); });
}

} // namespace headless
