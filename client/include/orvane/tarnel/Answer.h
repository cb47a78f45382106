#pragma once

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "orvane/Export.h"
#include "orvane/tarnel/Definitions.h"

namespace orvane::tarnel {

// Of an int, a float, an int array, a float array and a command.
using Value =
    std::variant<std::int32_t, float, std::vector<std::int32_t>, std::vector<float>, bool>;

struct OutputValue {
    OutputId id = 0;
    Value value;
};

// The values of all declared outputs, in the order of their declaration, as they were before the
// request that it answers was carried out.
struct ORVANE_API Answer {
    std::vector<OutputValue> outputs;
    // A hash of the aircraft's description, or 0 while none is loaded; all values are 0 then.
    std::uint32_t aircraftId = 0;

    bool isAircraftLoaded() const { return aircraftId != 0; }

    // The value of an output; takes the same time however many there are. std::out_of_range: none
    // has this identifier; std::bad_variant_access: it is of another type. The reference lives as
    // long as the answer.
    const Value& at(OutputId id) const;
    template <typename T>
    const T& get(OutputId id) const {
        return std::get<T>(at(id));
    }

private:
    friend class Client;

    // Which tell where an output is; none in an answer that a program made by itself.
    std::shared_ptr<const Definitions> definitions;
};

} // namespace orvane::tarnel
