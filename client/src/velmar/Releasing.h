#pragma once

#include <span>
#include <string>
#include <vector>

#include "Connection.h"
#include "HeldCommands.h"
#include "velmar/Wire.h"

namespace orvane::velmar {

// A packet that has a part in ending a command.
struct ReleaseStep {
    enum class Kind { Register, End, Unregister };

    Kind kind = Kind::End;
    wire::Number number = 0;
    std::string command;
};

// Takes the steps, in as few requests as their size permits, and what they end out of the account.
void takeSteps(detail::Connection& on, const std::string& doing, std::span<const ReleaseStep> steps,
               detail::HeldCommands& held);

// Ends all commands of the account by their names, which works on any connection, also on one that
// speaks Tarnel otherwise, and takes them out. What may have been ended already is ended only if it
// is down. The numbers from `firstNumber` on must be free, and are so again unless there are
// commands of that kind.
void endByName(detail::Connection& on, const std::string& doing, detail::HeldCommands& held,
               wire::Number firstNumber);

} // namespace orvane::velmar
