#include "orvane/tarnel/Definitions.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "tarnel/Wire.h"

namespace orvane::tarnel {

namespace {

// The server's buffers have 0x0FFFFFFF bytes; it ends the simulator's process when one is full.
constexpr std::size_t kLargestMessage = 0x0FFFFFFB;

[[noreturn]] void refuse(const std::string& why) {
    throw std::invalid_argument(why);
}

} // namespace

Definitions& Definitions::add(Input input) {
    if (requestSize() + wire::kInputSize > kLargestMessage) {
        refuse("there are too many inputs");
    }
    actions.insert(input.action());
    inputRecords.push_back(std::move(input));
    return *this;
}

Definitions& Definitions::add(Output output) {
    checkIsNew(output);
    if (requestSize() + wire::kOutputSize > kLargestMessage) {
        refuse("there are too many outputs");
    }
    if (answerSize() + wire::longestEntry(output) > kLargestMessage) {
        refuse("the output " + output.name() +
               " makes the answers longer than the server can send");
    }
    answerBytes += wire::entrySize(output);
    positions.emplace(output.id(), outputRecords.size());
    if (output.type() == OutputType::Command) {
        commands.emplace(output.name(), output.id());
    }
    outputRecords.push_back(std::move(output));
    return *this;
}

// Identifiers and observed commands are unique on a connection.
void Definitions::checkIsNew(const Output& output) const {
    if (const auto position = positionOf(output.id())) {
        refuse("the outputs " + outputRecords[*position].name() + " and " + output.name() +
               " both have the identifier " + std::to_string(output.id()));
    }
    if (output.type() != OutputType::Command) {
        return;
    }
    if (const auto former = commands.find(output.name()); former != commands.end()) {
        refuse("the command " + output.name() + " is already reported as " +
               std::to_string(former->second) + " and cannot also be reported as " +
               std::to_string(output.id()));
    }
}

std::optional<std::size_t> Definitions::positionOf(OutputId id) const {
    const auto found = positions.find(id);
    return found == positions.end() ? std::nullopt : std::optional(found->second);
}

bool Definitions::declares(ActionId action) const {
    return actions.contains(action);
}

std::size_t Definitions::requestSize() const {
    return wire::kDefinitionsSize + inputRecords.size() * wire::kInputSize +
           outputRecords.size() * wire::kOutputSize;
}

std::size_t Definitions::answerSize() const {
    return wire::kFrameSize + answerBytes + wire::kAircraftSize;
}

} // namespace orvane::tarnel
