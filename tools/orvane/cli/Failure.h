#pragma once

#include <stdexcept>
#include <string>

#include "tools/orvane/cli/ExitCode.h"

namespace orvane::tool {

// Ends the tool with one line on standard error and an exit status.
class Failure final : public std::runtime_error {
public:
    Failure(ExitCode exitCode, const std::string& line)
        : std::runtime_error(line), exitCode(exitCode) {}

    ExitCode Code() const { return exitCode; }

private:
    ExitCode exitCode;
};

} // namespace orvane::tool
