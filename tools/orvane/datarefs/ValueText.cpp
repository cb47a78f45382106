#include "tools/orvane/datarefs/ValueText.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <variant>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/Numbers.h"

namespace orvane::tool {

namespace {

using velmar::Type;
using velmar::Value;
using Json = nlohmann::ordered_json;

template <typename Whole>
std::string textOf(Whole number) {
    return fmt::format("{}", number);
}

std::string textOf(float number) {
    return floatText(number);
}

template <typename Whole>
Json jsonOf(Whole number) {
    return number;
}

// Via the text: a plain conversion to double would print digits that the float never had.
Json jsonOf(float number) {
    return std::strtod(floatText(number).c_str(), nullptr);
}

template <typename Element>
Json jsonOf(const std::vector<Element>& elements) {
    Json array = Json::array();
    for (const Element& element : elements) {
        array.push_back(jsonOf(element));
    }
    return array;
}

const char* description(std::int32_t /*number*/) {
    return "a whole number from -2147483648 to 2147483647";
}

const char* description(std::uint8_t /*number*/) {
    return "a whole number from 0 to 255";
}

const char* description(float /*number*/) {
    return "a number that a float can hold";
}

template <typename Number>
Number parseNumber(std::string_view text) {
    const std::optional<Number> number = headless::parsedNumber<Number>(text);
    if (!number) {
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("\"{}\" is not {}", text, description(Number{})));
    }
    return *number;
}

template <typename Element>
Value parseElements(std::string_view text, std::uint32_t size) {
    std::vector<Element> elements;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        elements.push_back(parseNumber<Element>(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    if (elements.size() != size) {
        throw Failure(ExitCode::WrongUsage, fmt::format("expected {} elements, got {} in \"{}\"",
                                                        size, elements.size(), text));
    }
    return elements;
}

} // namespace

std::string floatText(float number) {
    return std::isnan(number) ? "nan" : fmt::format("{}", number);
}

std::string valueText(const Value& value) {
    std::string text;
    forEachNumber(value, [&](auto number) {
        text += text.empty() ? "" : ",";
        text += textOf(number);
    });
    return text;
}

Json valueJson(const Value& value) {
    return std::visit([](const auto& each) { return jsonOf(each); }, value);
}

std::string typeText(Type type, std::uint32_t size) {
    switch (type) {
    case Type::Int:
        return "int";
    case Type::Float:
        return "float";
    case Type::Byte:
        return "byte";
    case Type::IntArray:
        return fmt::format("int[{}]", size);
    case Type::FloatArray:
        return fmt::format("float[{}]", size);
    }
    return "unknown";
}

Value parseValue(std::string_view text, Type type, std::uint32_t size) {
    switch (type) {
    case Type::Int:
        return parseNumber<std::int32_t>(text);
    case Type::Byte:
        return parseNumber<std::uint8_t>(text);
    case Type::IntArray:
        return parseElements<std::int32_t>(text, size);
    case Type::FloatArray:
        return parseElements<float>(text, size);
    case Type::Float:
        break;
    }
    return parseNumber<float>(text);
}

} // namespace orvane::tool
