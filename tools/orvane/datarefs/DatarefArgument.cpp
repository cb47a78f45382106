#include "tools/orvane/datarefs/DatarefArgument.h"

#include "tools/orvane/cli/Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace orvane::tool {

namespace {

using velmar::Type;

constexpr const char* kTypes = "the types are int, float, byte, int[N] and float[N]";
constexpr std::size_t kLongestName = 255;

[[noreturn]] void refuse(std::string_view text, const std::string& reason) {
    throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", text, reason));
}

std::uint32_t parseSize(std::string_view text, std::string_view digits) {
    std::uint32_t size = 0;
    const auto [stopped, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), size);
    const bool isNumber = stopped == digits.data() + digits.size() && !digits.empty();
    if (!isNumber || error != std::errc{} || size < 1 || size > DatarefArgument::kMostElements) {
        refuse(text, fmt::format("an array has 1 to {} elements, as in {}[8]",
                                 DatarefArgument::kMostElements, text.substr(0, text.find('['))));
    }
    return size;
}

TypeAndSize parseArrayType(std::string_view text, std::size_t bracket) {
    if (text.back() != ']') {
        refuse(text, "the bracket is not closed");
    }
    const std::string_view element = text.substr(0, bracket);
    if (element != "int" && element != "float") {
        refuse(text, fmt::format("there are no such arrays; {}", kTypes));
    }
    const std::string_view digits = text.substr(bracket + 1, text.size() - bracket - 2);
    return {element == "int" ? Type::IntArray : Type::FloatArray, parseSize(text, digits)};
}

void checkName(std::string_view text, const std::string& name) {
    if (name.empty()) {
        refuse(text, "the name is missing");
    }
    if (name.size() > kLongestName) {
        refuse(text, fmt::format("a name has at most {} characters", kLongestName));
    }
    if (name.back() == ']') {
        const std::string_view array = std::string_view(name).substr(0, name.rfind('['));
        refuse(text, fmt::format("write an array as {}:float[N] or {}:int[N], which is its first N "
                                 "elements",
                                 array, array));
    }
}

void checkDistinct(const std::vector<DatarefArgument>& arguments) {
    std::set<std::string_view> names;
    for (const DatarefArgument& argument : arguments) {
        if (!names.insert(argument.name).second) {
            refuse(argument.name, "named twice");
        }
    }
}

} // namespace

velmar::Dataref DatarefArgument::Dataref() const {
    return {name, type.value_or(Type::Float), size};
}

TypeAndSize parseType(std::string_view text) {
    if (const std::size_t bracket = text.find('['); bracket != std::string_view::npos) {
        return parseArrayType(text, bracket);
    }
    if (text == "int") {
        return {Type::Int};
    }
    if (text == "float") {
        return {Type::Float};
    }
    if (text == "byte") {
        return {Type::Byte};
    }
    if (text == "double") {
        refuse(text, fmt::format("the protocol carries no doubles; {}", kTypes));
    }
    refuse(text, fmt::format("no such type; {}", kTypes));
}

DatarefArgument parseDatarefArgument(std::string_view text) {
    DatarefArgument argument;
    argument.text = text;
    std::string_view rest = text;
    if (const std::size_t at = rest.rfind('@'); at != std::string_view::npos) {
        argument.unit = rest.substr(at + 1);
        rest = rest.substr(0, at);
    }
    if (const std::size_t colon = rest.rfind(':'); colon != std::string_view::npos) {
        const TypeAndSize parsed = parseType(rest.substr(colon + 1));
        argument.type = parsed.type;
        argument.size = parsed.size;
        rest = rest.substr(0, colon);
    }
    argument.name = rest;
    if (argument.name.find('=') != std::string::npos) {
        refuse(text, "a value has no place here; only \"set\" takes one");
    }
    checkName(text, argument.name);
    return argument;
}

DatarefArgument parseAssignment(std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        refuse(text, "a value is missing: NAME=VALUE or NAME:TYPE=VALUE");
    }
    DatarefArgument argument = parseDatarefArgument(text.substr(0, equals));
    argument.value = text.substr(equals + 1);
    if (argument.value->empty()) {
        refuse(text, "the value is empty");
    }
    return argument;
}

std::vector<DatarefArgument> parseDatarefArguments(const std::vector<std::string>& texts) {
    std::vector<DatarefArgument> arguments;
    std::transform(texts.begin(), texts.end(), std::back_inserter(arguments), parseDatarefArgument);
    checkDistinct(arguments);
    return arguments;
}

std::vector<DatarefArgument> parseAssignments(const std::vector<std::string>& texts) {
    std::vector<DatarefArgument> arguments;
    std::transform(texts.begin(), texts.end(), std::back_inserter(arguments), parseAssignment);
    checkDistinct(arguments);
    return arguments;
}

} // namespace orvane::tool
