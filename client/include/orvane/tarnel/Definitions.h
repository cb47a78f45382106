#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "orvane/Export.h"
#include "orvane/tarnel/Input.h"
#include "orvane/tarnel/Output.h"

namespace orvane::tarnel {

// All that a client declares at once. The order is kept: inputs of one action are applied in it,
// and outputs reported in it. Adding takes constant time.
class ORVANE_API Definitions final {
public:
    // std::invalid_argument: another output has this identifier, this command already has another
    // identifier, or a message becomes longer than the server can hold (256 MiB).
    Definitions& add(Input input);
    Definitions& add(Output output);

    bool declares(ActionId action) const;
    const std::vector<Input>& inputs() const { return inputRecords; }
    const std::vector<Output>& outputs() const { return outputRecords; }
    // The index in `outputs`.
    std::optional<std::size_t> positionOf(OutputId id) const;

    // Bytes of the request and of an answer with an aircraft loaded, framing included. On a network
    // keep the first within one packet (1400) and the second below 64 KB; see docs/tarnel.md.
    std::size_t requestSize() const;
    std::size_t answerSize() const;

private:
    void checkIsNew(const Output& output) const;

    std::vector<Input> inputRecords;
    std::vector<Output> outputRecords;
    std::unordered_set<ActionId> actions;
    std::unordered_map<OutputId, std::size_t> positions;
    std::unordered_map<std::string, OutputId> commands; // the observed ones
    std::size_t answerBytes = 0;                        // of the outputs only
};

} // namespace orvane::tarnel
