#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "orvane/tarnel/Input.h"
#include "orvane/tarnel/Output.h"

namespace orvane::tarnel {

// All that a client declares at once. The order is kept: it is the order in which inputs of one
// action are applied, and in which outputs are reported.
class Definitions final {
public:
    // std::invalid_argument: another output has this identifier, this command has another
    // identifier already, or a message becomes longer than the server can hold (256 MiB).
    Definitions& add(Input input);
    Definitions& add(Output output);

    bool declares(ActionId action) const;
    const std::vector<Input>& inputs() const { return inputRecords; }
    const std::vector<Output>& outputs() const { return outputRecords; }

    // Bytes of the request and of an answer with an aircraft loaded, with all that frames them. On
    // a network keep the first within one packet (1400) and the second below 64 KB; see
    // docs/tarnel.md.
    std::size_t requestSize() const;
    std::size_t answerSize() const;

private:
    std::vector<Input> inputRecords;
    std::vector<Output> outputRecords;
    std::set<ActionId> actions;
    std::size_t answerBytes = 0; // of the outputs alone
};

} // namespace orvane::tarnel
