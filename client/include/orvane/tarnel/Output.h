#pragma once

#include <cstdint>
#include <string>

#include "orvane/Export.h"

namespace orvane::tarnel {

// The number of an output, chosen by the client and unique among its outputs. 0xFFFF is reserved
// for the aircraft.
using OutputId = std::uint32_t;

enum class OutputType : std::int32_t {
    Int = 1,
    Float = 2,
    IntArray = 3,
    FloatArray = 4,
    Command = 6
};

// A value that the server reports in every answer.
//
// A name that begins with "kyr/" is the plugin's own: its dataref is created if it does not exist.
// Any other must be the simulator's; an unknown one is reported as zero.
//
// Each function throws std::invalid_argument for anything that the server would silently misread:
// an empty name or one of more than 99 bytes, a count below 1, a negative first element, a command
// without the prefix "kyr/", the aircraft's number.
class ORVANE_API Output final {
public:
    static Output ofInt(OutputId id, std::string dataref);
    static Output ofFloat(OutputId id, std::string dataref);
    static Output ofIntArray(OutputId id, std::string dataref, std::int32_t count,
                             std::int32_t firstElement = 0);
    static Output ofFloatArray(OutputId id, std::string dataref, std::int32_t count,
                               std::int32_t firstElement = 0);
    // True while it is down, or if it was pressed since the previous answer.
    static Output ofCommand(OutputId id, std::string command);

    OutputId id() const { return identifier; }
    const std::string& name() const { return outputName; }
    OutputType type() const { return outputType; }
    std::int32_t firstElement() const { return first; }
    std::int32_t count() const { return elements; }

private:
    Output(OutputId id, OutputType type, std::string name, std::int32_t first, std::int32_t count);

    OutputId identifier;
    OutputType outputType;
    std::string outputName;
    std::int32_t first;
    std::int32_t elements;
};

} // namespace orvane::tarnel
