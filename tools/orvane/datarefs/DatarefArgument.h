#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/ElementRange.h"

namespace orvane::tool {

struct TypeAndSize {
    velmar::Type type = velmar::Type::Float;
    std::uint32_t size = 0;
};

// A dataref as a user names it on the command line: NAME[:TYPE][@UNIT][=VALUE], or some elements of
// an array: NAME[3], NAME[2:5].
//
// TYPE is int, float, byte, int[N] or float[N], which are the first N elements; of elements it is
// int or float. UNIT is only shown. Where there is no type, it is left to whoever uses the argument
// to find one.
struct DatarefArgument {
    // More than that makes an answer that does not arrive whole even on the simulator's machine.
    static constexpr std::uint32_t kMostElements = 500'000;

    std::string name; // with the elements, if there are any
    std::optional<velmar::Type> type;
    std::uint32_t size = 0; // elements of an array type
    std::string unit;
    std::optional<std::string> value;
    std::string text; // as it was written, without the value
    std::optional<ElementRange> elements;
    // Of the array that the elements are part of: what is registered.
    std::string arrayName;
    std::uint32_t arraySize = 0;

    // As it is registered; a float, or an array of floats, if there is no type.
    velmar::Dataref Dataref() const;
    // Takes the type that it is to be registered with; of elements, only whether it is of floats.
    void SetType(const TypeAndSize& registered);

    // The part of what was read that it names.
    velmar::Value ValueIn(const velmar::Value& registered) const;
    // "NAME:TYPE", which reads back as the same.
    std::string NameAndType() const;
    // The name of one element of an array.
    std::string ElementName(std::size_t place) const;
};

// NAME[:TYPE][@UNIT]. Failure: what is wrong with it, and what would be right.
DatarefArgument parseDatarefArgument(std::string_view text);

// NAME[:TYPE][@UNIT]=VALUE, the value unread.
DatarefArgument parseAssignment(std::string_view text);

// The same for many. Failure: one names the dataref of another, unless it is other elements of an
// array.
std::vector<DatarefArgument> parseDatarefArguments(const std::vector<std::string>& texts);
std::vector<DatarefArgument> parseAssignments(const std::vector<std::string>& texts);

// Lets the elements of one array be registered alike. Failure, as above.
void shareArrays(std::vector<DatarefArgument>& arguments);

// What to write so that each argument gets its value: elements are put into what their arrays had
// `before`, which is as it was read, in the order of the arguments.
std::vector<std::pair<std::string, velmar::Value>> wholeValues(
    std::span<const DatarefArgument> arguments, std::span<const velmar::Value> values,
    std::span<const velmar::Value> before);

// What "int", "float[8]" and so on stand for. Failure, as above.
TypeAndSize parseType(std::string_view text);

} // namespace orvane::tool
