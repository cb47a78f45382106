#include "orvane/tarnel/Answer.h"

#include <algorithm>
#include <stdexcept>

namespace orvane::tarnel {

const Value& Answer::at(OutputId id) const {
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [id](const OutputValue& output) { return output.id == id; });
    if (found == outputs.end()) {
        throw std::out_of_range("no output has the identifier " + std::to_string(id));
    }
    return found->value;
}

} // namespace orvane::tarnel
