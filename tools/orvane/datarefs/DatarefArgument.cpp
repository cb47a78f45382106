#include "tools/orvane/datarefs/DatarefArgument.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/ValueText.h"

namespace orvane::tool {

namespace {

using velmar::Type;

constexpr const char* kTypes = "the types are int, float, byte, int[N] and float[N]";
constexpr std::size_t kLongestName = 255;

[[noreturn]] void refuse(std::string_view text, const std::string& reason) {
    throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", text, reason));
}

std::uint32_t parseSize(std::string_view text, std::string_view digits) {
    const std::uint32_t size = headless::parsedNumber<std::uint32_t>(digits).value_or(0);
    if (size < 1 || size > DatarefArgument::kMaxElements) {
        refuse(text, fmt::format("an array has 1 to {} elements, as in {}[8]",
                                 DatarefArgument::kMaxElements, text.substr(0, text.find('['))));
    }
    return size;
}

TypeAndSize parseArrayType(std::string_view text, std::size_t bracket) {
    if (text.back() != ']') {
        refuse(text, "the bracket is not closed");
    }
    const std::string_view element = text.substr(0, bracket);
    if (element != "int" && element != "float") {
        refuse(text, fmt::format("unknown array type; {}", kTypes));
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
}

bool isOfInts(Type type) {
    return type == Type::Int || type == Type::IntArray;
}

// "[2:5]:float", after the name.
void readElements(std::string_view text, std::string_view rest, DatarefArgument& argument) {
    const std::size_t closing = rest.find(']');
    if (closing == std::string_view::npos) {
        refuse(text, "the bracket is not closed");
    }
    try {
        argument.elements =
            parseElementRange(rest.substr(1, closing - 1), DatarefArgument::kMaxElements);
    } catch (const std::invalid_argument& reason) {
        refuse(text, reason.what());
    }
    argument.arraySize = argument.elements->End();
    argument.name += rest.substr(0, closing + 1);
    rest.remove_prefix(closing + 1);
    if (rest.empty()) {
        return;
    }
    if (rest != ":int" && rest != ":float") {
        refuse(text, "elements are int or float, as in NAME[3]:float");
    }
    argument.SetType({rest == ":int" ? Type::IntArray : Type::FloatArray});
}

// NAME, with its elements or its type.
void readName(std::string_view text, std::string_view rest, DatarefArgument& argument) {
    const std::size_t bracket = rest.find('[');
    const std::size_t colon = rest.substr(0, bracket).rfind(':');
    argument.name = rest.substr(0, std::min(bracket, colon));
    checkName(text, argument.name);
    if (colon != std::string_view::npos) {
        argument.SetType(parseType(rest.substr(colon + 1)));
    } else if (bracket != std::string_view::npos) {
        argument.arrayName = argument.name;
        readElements(text, rest.substr(bracket), argument);
    }
}

void checkDistinct(const std::vector<DatarefArgument>& arguments) {
    std::set<std::string_view> names;
    for (const DatarefArgument& argument : arguments) {
        if (!names.insert(argument.name).second) {
            refuse(argument.name, "named twice");
        }
    }
    for (const DatarefArgument& argument : arguments) {
        if (argument.elements && names.contains(argument.arrayName)) {
            refuse(argument.arrayName, "named both as a whole and by elements");
        }
    }
}

} // namespace

bool isOwnName(std::string_view name) {
    return name.starts_with("kyr/");
}

velmar::Dataref DatarefArgument::Dataref() const {
    if (!elements) {
        return {name, type.value_or(Type::Float), size};
    }
    const bool isInts = isOfInts(type.value_or(Type::Float));
    return {arrayName, isInts ? Type::IntArray : Type::FloatArray, arraySize};
}

void DatarefArgument::SetType(const TypeAndSize& registered) {
    if (!elements) {
        type = registered.type;
        size = registered.size;
    } else if (elements->isSingle) {
        type = isOfInts(registered.type) ? Type::Int : Type::Float;
    } else {
        type = isOfInts(registered.type) ? Type::IntArray : Type::FloatArray;
        size = elements->count;
    }
}

velmar::Value DatarefArgument::ValueIn(const velmar::Value& registered) const {
    return elements ? elements->Of(registered) : registered;
}

std::string DatarefArgument::NameAndType() const {
    const velmar::Dataref dataref = Dataref();
    const std::string word = isOfInts(dataref.type) ? "int" : "float";
    return name + ":" + (elements ? word : typeText(dataref.type, dataref.size));
}

std::string DatarefArgument::ElementName(std::size_t place) const {
    return elements ? fmt::format("{}[{}]", arrayName, elements->first + place)
                    : fmt::format("{}[{}]", name, place);
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
        refuse(text, fmt::format("the protocol has no doubles; {}", kTypes));
    }
    refuse(text, fmt::format("unknown type; {}", kTypes));
}

DatarefArgument parseDatarefArgument(std::string_view text) {
    DatarefArgument argument;
    argument.text = text;
    std::string_view rest = text;
    if (const std::size_t at = rest.rfind('@'); at != std::string_view::npos) {
        argument.unit = rest.substr(at + 1);
        rest = rest.substr(0, at);
    }
    if (rest.find('=') != std::string_view::npos) {
        refuse(text, "unexpected value; only \"set\" takes one");
    }
    readName(text, rest, argument);
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
    shareArrays(arguments);
    return arguments;
}

std::vector<DatarefArgument> parseAssignments(const std::vector<std::string>& texts) {
    std::vector<DatarefArgument> arguments;
    std::transform(texts.begin(), texts.end(), std::back_inserter(arguments), parseAssignment);
    shareArrays(arguments);
    return arguments;
}

void shareArrays(std::vector<DatarefArgument>& arguments) {
    checkDistinct(arguments);
    struct Array {
        std::uint32_t size = 0;
        std::optional<Type> type;
    };
    std::map<std::string_view, Array> arrays;
    for (const DatarefArgument& argument : arguments) {
        if (!argument.elements) {
            continue;
        }
        Array& array = arrays[argument.arrayName];
        array.size = std::max(array.size, argument.arraySize);
        if (argument.type && array.type && isOfInts(*argument.type) != isOfInts(*array.type)) {
            refuse(argument.arrayName, "named both as ints and as floats");
        }
        array.type = argument.type ? argument.type : array.type;
    }
    for (DatarefArgument& argument : arguments) {
        if (argument.elements) {
            const Array& array = arrays[argument.arrayName];
            argument.arraySize = array.size;
            if (array.type) {
                argument.SetType({*array.type});
            }
        }
    }
}

std::vector<std::pair<std::string, velmar::Value>> wholeValues(
    std::span<const DatarefArgument> arguments, std::span<const velmar::Value> values,
    std::span<const velmar::Value> before) {
    std::vector<std::pair<std::string, velmar::Value>> whole;
    std::map<std::string_view, std::size_t> places; // of arrays in `whole`
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const DatarefArgument& argument = arguments[i];
        if (!argument.elements) {
            whole.emplace_back(argument.name, values[i]);
            continue;
        }
        const auto [place, isNew] = places.emplace(argument.arrayName, whole.size());
        if (isNew) {
            whole.emplace_back(argument.arrayName, before[i]);
        }
        argument.elements->Put(values[i], whole[place->second].second);
    }
    return whole;
}

} // namespace orvane::tool
