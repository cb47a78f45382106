#include "orvane/tarnel/Answer.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

namespace orvane::tarnel {

const Value& Answer::at(OutputId id) const {
    const auto position = definitions ? definitions->positionOf(id) : std::nullopt;
    // The program may have removed or sorted outputs.
    if (position && *position < outputs.size() && outputs[*position].id == id) {
        return outputs[*position].value;
    }
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [id](const OutputValue& output) { return output.id == id; });
    if (found == outputs.end()) {
        throw std::out_of_range("no output has the identifier " + std::to_string(id));
    }
    return found->value;
}

} // namespace orvane::tarnel
