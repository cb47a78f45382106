#include "orvane/tarnel/Output.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "tarnel/Names.h"

namespace orvane::tarnel {

namespace {

constexpr OutputId kAircraft = 0xFFFF;
constexpr std::string_view kOwnPrefix = "kyr/";

} // namespace

Output::Output(OutputId id, OutputType type, std::string name, std::int32_t first,
               std::int32_t count)
    : identifier(id),
      outputType(type),
      outputName(checkedName(std::move(name))),
      first(checkedElement(first, outputName)),
      elements(count) {
    if (id == kAircraft) {
        throw std::invalid_argument("the output " + outputName +
                                    " has the aircraft's number, 65535");
    }
    if (count < 1) {
        throw std::invalid_argument("the output " + outputName + " has " + std::to_string(count) +
                                    " elements; at least 1 is needed");
    }
}

Output Output::ofInt(OutputId id, std::string dataref) {
    return {id, OutputType::Int, std::move(dataref), 0, 1};
}

Output Output::ofFloat(OutputId id, std::string dataref) {
    return {id, OutputType::Float, std::move(dataref), 0, 1};
}

Output Output::ofIntArray(OutputId id, std::string dataref, std::int32_t count,
                          std::int32_t firstElement) {
    return {id, OutputType::IntArray, std::move(dataref), firstElement, count};
}

Output Output::ofFloatArray(OutputId id, std::string dataref, std::int32_t count,
                            std::int32_t firstElement) {
    return {id, OutputType::FloatArray, std::move(dataref), firstElement, count};
}

Output Output::ofCommand(OutputId id, std::string command) {
    if (!std::string_view(command).starts_with(kOwnPrefix)) {
        throw std::invalid_argument("the command " + command +
                                    " cannot be observed: only those under kyr/ can");
    }
    return {id, OutputType::Command, std::move(command), 0, 1};
}

} // namespace orvane::tarnel
