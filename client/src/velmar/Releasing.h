#pragma once

#include <span>
#include <string>
#include <vector>

#include "Connection.h"
#include "HeldCommands.h"
#include "velmar/Wire.h"

namespace orvane::velmar {

// A packet that helps to end a command.
struct ReleaseStep {
    enum class Kind { Register, End, Unregister };

    Kind kind = Kind::End;
    wire::Number number = 0;
    std::string command;
};

// Takes the steps in as few requests as possible, and removes what they end from `held`.
void takeSteps(detail::Connection& on, const std::string& doing, std::span<const ReleaseStep> steps,
               detail::HeldCommands& held);

// Ends all commands in `held` by name and removes them. This works on any connection, even one that
// otherwise speaks Tarnel. A command that may have been ended already is ended only if it is down.
// The numbers from `firstNumber` on must be free, and are free again afterwards.
void endByName(detail::Connection& on, const std::string& doing, detail::HeldCommands& held,
               wire::Number firstNumber);

} // namespace orvane::velmar
