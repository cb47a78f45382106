#include "headless/program/Console.h"

#include <exception>

#include "headless/scenario/Statement.h"

namespace headless {

std::string Console::Execute(const std::string& line) {
    try {
        const bool isComment = !line.empty() && withoutComment(line).empty();
        return isComment ? "ok" : readStatement(line).execute(flight);
    } catch (const std::exception& error) {
        return std::string("error: ") + error.what();
    }
}

} // namespace headless
