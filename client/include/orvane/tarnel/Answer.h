#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "orvane/Export.h"
#include "orvane/tarnel/Definitions.h"

namespace orvane::tarnel {

// The value of an int, a float, an int array, a float array or a command.
using Value =
    std::variant<std::int32_t, float, std::vector<std::int32_t>, std::vector<float>, bool>;

struct OutputValue {
    OutputId id = 0;
    Value value;
};

// The values of all declared outputs, in the order of their declaration, from before the answered
// request was carried out.
struct ORVANE_API Answer {
    std::vector<OutputValue> outputs;
    // A hash of the aircraft's description, or 0 while none is loaded; all values are 0 then.
    std::uint32_t aircraftId = 0;

    bool isAircraftLoaded() const { return aircraftId != 0; }

    // The value of an output, in constant time. std::out_of_range: no output has this identifier;
    // std::bad_variant_access: it has another type. The reference is valid as long as the answer.
    const Value& at(OutputId id) const;
    template <typename T>
    const T& get(OutputId id) const {
        return std::get<T>(at(id));
    }

private:
    friend class Client;

    // To find an output; null in an answer that a program made itself.
    std::shared_ptr<const Definitions> definitions;
};

} // namespace orvane::tarnel
