#include "velmar/Checks.h"

#include <cstddef>
#include <stdexcept>
#include <variant>

namespace orvane::velmar {

namespace {

constexpr std::size_t kLongestName = 255;
// The server ends the simulator's process if an answer does not fit into its buffer of 0x0FFFFFFF
// bytes.
constexpr std::uint32_t kMaxElements = 60'000'000;

[[noreturn]] void refuse(const std::string& why) {
    throw std::invalid_argument(why);
}

std::size_t elementsOf(const Value& value) {
    if (const auto* ints = std::get_if<std::vector<std::int32_t>>(&value)) {
        return ints->size();
    }
    if (const auto* floats = std::get_if<std::vector<float>>(&value)) {
        return floats->size();
    }
    return 1;
}

const char* nameOf(Type type) {
    switch (type) {
    case Type::Int:
        return "int";
    case Type::Float:
        return "float";
    case Type::Byte:
        return "byte";
    case Type::IntArray:
        return "int array";
    case Type::FloatArray:
        return "float array";
    }
    return "unknown type";
}

bool isArray(Type type) {
    return type == Type::IntArray || type == Type::FloatArray;
}

} // namespace

void checkName(std::string_view name) {
    if (name.empty()) {
        refuse("a name is empty");
    }
    if (name.size() > kLongestName) {
        refuse("the name " + std::string(name) + " has " + std::to_string(name.size()) +
               " bytes; at most 255 are allowed");
    }
    if (name.find('\0') != std::string_view::npos) {
        refuse("the name " + std::string(name.substr(0, name.find('\0'))) +
               " contains a zero byte");
    }
}

void checkDataref(const Dataref& dataref) {
    checkName(dataref.name);
    if (dataref.type < Type::Int || dataref.type > Type::FloatArray) {
        refuse(dataref.name + " has unknown type " +
               std::to_string(static_cast<std::uint32_t>(dataref.type)));
    }
    if (isArray(dataref.type) && (dataref.size < 1 || dataref.size > kMaxElements)) {
        refuse("the array " + dataref.name + " has " + std::to_string(dataref.size) +
               " elements; 1 to " + std::to_string(kMaxElements) + " are allowed");
    }
}

void checkValue(const Value& value, const Dataref& dataref) {
    const Type type = typeOf(value);
    if (type != dataref.type) {
        refuse(dataref.name + " is registered as " + nameOf(dataref.type) + " and cannot take " +
               nameOf(type));
    }
    const std::size_t elements = elementsOf(value);
    if (isArray(type) && elements != dataref.size) {
        refuse(dataref.name + " is registered with " + std::to_string(dataref.size) +
               " elements and cannot take " + std::to_string(elements));
    }
}

void checkAction(Action action) {
    if (action < Action::Once || action > Action::End) {
        refuse("there is no action " + std::to_string(static_cast<unsigned int>(action)));
    }
}

void checkChanges(double rate, double deadband) {
    // The slowest that a nanosecond clock can count.
    constexpr double kSlowestRate = 1e-9;
    if (!(rate >= kSlowestRate)) {
        refuse("a rate of " + std::to_string(rate) + " readings per second is not above 0");
    }
    if (!(deadband >= 0)) {
        refuse("a deadband must be at least 0, not " + std::to_string(deadband));
    }
}

} // namespace orvane::velmar
