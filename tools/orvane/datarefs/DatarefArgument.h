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

// Whether a name is one of the plugin's own, which it creates for an output.
bool isOwnName(std::string_view name);

struct TypeAndSize {
    velmar::Type type = velmar::Type::Float;
    std::uint32_t size = 0;
};

// A dataref as a user names it on the command line: NAME[:TYPE][@UNIT][=VALUE], or some elements of
// an array: NAME[3], NAME[2:5].
//
// TYPE is int, float, byte, int[N] or float[N] (the first N elements); for elements, int or float.
// UNIT is only shown. If there is no type, the user of the argument finds one.
struct DatarefArgument {
    // A larger answer would not arrive whole, even on the simulator's machine.
    static constexpr std::uint32_t kMaxElements = 500'000;

    std::string name; // including the elements
    std::optional<velmar::Type> type;
    std::uint32_t size = 0; // elements of an array type
    std::string unit;
    std::optional<std::string> value;
    std::string text; // as given, without the value
    std::optional<ElementRange> elements;
    // The array of the elements, which is what gets registered.
    std::string arrayName;
    std::uint32_t arraySize = 0;

    // What to register: a float, or an array of floats, if there is no type.
    velmar::Dataref Dataref() const;
    // Sets the type to register; for elements only whether it is of floats.
    void SetType(const TypeAndSize& registered);

    // The part of the registered value that it names.
    velmar::Value ValueIn(const velmar::Value& registered) const;
    // "NAME:TYPE", which parses back to the same.
    std::string NameAndType() const;
    // The name of one element of an array.
    std::string ElementName(std::size_t place) const;
};

// NAME[:TYPE][@UNIT]. Failure: it is malformed; the text says what would be right.
DatarefArgument parseDatarefArgument(std::string_view text);

// NAME[:TYPE][@UNIT]=VALUE; the value is not parsed.
DatarefArgument parseAssignment(std::string_view text);

// The same for many. Failure: two name the same dataref, unless they name different elements.
std::vector<DatarefArgument> parseDatarefArguments(const std::vector<std::string>& texts);
std::vector<DatarefArgument> parseAssignments(const std::vector<std::string>& texts);

// Makes the elements of one array register it alike. Failure, as above.
void shareArrays(std::vector<DatarefArgument>& arguments);

// What to write so that each argument gets its value: elements are put into `before`, the values of
// their arrays as read, in the order of the arguments.
std::vector<std::pair<std::string, velmar::Value>> wholeValues(
    std::span<const DatarefArgument> arguments, std::span<const velmar::Value> values,
    std::span<const velmar::Value> before);

// Parses "int", "float[8]" and so on. Failure, as above.
TypeAndSize parseType(std::string_view text);

} // namespace orvane::tool
