#include "orvane/tarnel/Definitions.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "tarnel/Wire.h"

namespace orvane::tarnel {

namespace {

// The server has buffers of 0x0FFFFFFF bytes, and ends the simulator's process when one is full.
constexpr std::size_t kLargestMessage = 0x0FFFFFFB;

void refuseIf(bool condition, const std::string& why) {
    if (condition) {
        throw std::invalid_argument(why);
    }
}

// Of two outputs that a connection cannot have both.
void checkPair(const Output& former, const Output& added) {
    refuseIf(former.id() == added.id(), "the outputs " + former.name() + " and " + added.name() +
                                            " both have the identifier " +
                                            std::to_string(added.id()));
    refuseIf(former.type() == OutputType::Command && added.type() == OutputType::Command &&
                 former.name() == added.name(),
             "the command " + added.name() + " is reported under " + std::to_string(former.id()) +
                 " and cannot be under " + std::to_string(added.id()) + " too");
}

} // namespace

Definitions& Definitions::add(Input input) {
    refuseIf(requestSize() + wire::kInputSize > kLargestMessage, "there are too many inputs");
    actions.insert(input.action());
    inputRecords.push_back(std::move(input));
    return *this;
}

Definitions& Definitions::add(Output output) {
    for (const Output& former : outputRecords) {
        checkPair(former, output);
    }
    refuseIf(requestSize() + wire::kOutputSize > kLargestMessage, "there are too many outputs");
    const std::size_t size = answerBytes + wire::longestEntry(output);
    refuseIf(size > kLargestMessage,
             "the output " + output.name() + " makes the answers longer than the server can send");
    answerBytes += wire::entrySize(output);
    outputRecords.push_back(std::move(output));
    return *this;
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
