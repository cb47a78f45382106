#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

// A dataref as a user names it on the command line: NAME[:TYPE][@UNIT][=VALUE].
//
// TYPE is int, float, byte, int[N] or float[N]; arrays are read and written from element 0 on. UNIT
// is only shown. Where there is no type, it is left to whoever uses the argument to find one.
struct DatarefArgument {
    // More than that makes an answer that does not arrive whole even on the simulator's machine.
    static constexpr std::uint32_t kMostElements = 500'000;

    std::string name;
    std::optional<velmar::Type> type;
    std::uint32_t size = 0; // elements of an array type
    std::string unit;
    std::optional<std::string> value;
    std::string text; // as it was written, without the value

    // As it is registered; a float if there is no type.
    velmar::Dataref Dataref() const;
};

// NAME[:TYPE][@UNIT]. Failure: what is wrong with it, and what would be right.
DatarefArgument parseDatarefArgument(std::string_view text);

// NAME[:TYPE][@UNIT]=VALUE, the value unread.
DatarefArgument parseAssignment(std::string_view text);

// The same for many, none of which may name the dataref of another.
std::vector<DatarefArgument> parseDatarefArguments(const std::vector<std::string>& texts);
std::vector<DatarefArgument> parseAssignments(const std::vector<std::string>& texts);

// What "int", "float[8]" and so on stand for. Failure, as above.
struct TypeAndSize {
    velmar::Type type = velmar::Type::Float;
    std::uint32_t size = 0;
};
TypeAndSize parseType(std::string_view text);

} // namespace orvane::tool
