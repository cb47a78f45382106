#include "headless/host/DatarefText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

#include "headless/lists/ParsedNumber.h"

namespace headless {

namespace {

constexpr std::size_t kLongestNumber = 64;

template <class Number>
std::string format(Number value) {
    std::array<char, kLongestNumber> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), result.ptr};
}

template <class Number>
std::string formatAll(const std::vector<Number>& values) {
    std::string text;
    for (const Number value : values) {
        text += text.empty() ? "" : ",";
        text += format(value);
    }
    return text;
}

template <class Number>
Number parse(std::string_view text) {
    if (const auto value = parsedNumber<Number>(text)) {
        return *value;
    }
    throw std::invalid_argument("\"" + std::string(text) + "\" is not a value of this dataref");
}

template <class Number>
std::vector<Number> parseAll(std::string_view text) {
    std::vector<Number> values;
    while (true) {
        const std::size_t comma = text.find(',');
        values.push_back(parse<Number>(text.substr(0, comma)));
        if (comma == std::string_view::npos) {
            return values;
        }
        text.remove_prefix(comma + 1);
    }
}

template <class Element>
std::vector<Element> room(int size) {
    return std::vector<Element>(static_cast<std::size_t>(std::max(0, size)));
}

int countOf(const Elements& elements, int size) {
    return elements.count == Elements::kAll ? size - elements.first : elements.count;
}

std::string formatFloats(IDatarefValue& value, const Elements& elements) {
    auto floats = room<float>(countOf(elements, value.GetFloats(nullptr, 0, 0)));
    value.GetFloats(floats.data(), elements.first, static_cast<int>(floats.size()));
    return formatAll(floats);
}

std::string formatInts(IDatarefValue& value, const Elements& elements) {
    auto ints = room<int>(countOf(elements, value.GetInts(nullptr, 0, 0)));
    value.GetInts(ints.data(), elements.first, static_cast<int>(ints.size()));
    return formatAll(ints);
}

// Excess values are dropped.
template <class Number>
std::vector<Number> parseElements(std::string_view text, const Elements& elements) {
    std::vector<Number> values = parseAll<Number>(text);
    if (elements.count != Elements::kAll) {
        values.resize(std::min(values.size(), static_cast<std::size_t>(elements.count)));
    }
    return values;
}

std::string formatBytes(IDatarefValue& value) {
    auto bytes = room<char>(value.GetBytes(nullptr, 0, 0));
    value.GetBytes(bytes.data(), 0, static_cast<int>(bytes.size()));
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), '\0')};
}

void parseBytes(IDatarefValue& value, std::string_view text) {
    auto bytes = room<char>(value.GetBytes(nullptr, 0, 0));
    if (text.size() > bytes.size()) {
        throw std::invalid_argument("the text is longer than the dataref");
    }
    std::copy(text.begin(), text.end(), bytes.begin());
    value.SetBytes(bytes.data(), 0, static_cast<int>(bytes.size()));
}

int nearestInt(double number) {
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return std::isnan(number) ? 0
                              : static_cast<int>(std::clamp(std::round(number), kLowest, kHighest));
}

} // namespace

std::string formatDataref(const Dataref& dataref, const Elements& elements) {
    IDatarefValue& value = dataref.Value();
    if (dataref.Offers(xplmType_Double)) {
        return format(value.GetDouble());
    }
    if (dataref.Offers(xplmType_Float)) {
        return format(value.GetFloat());
    }
    if (dataref.Offers(xplmType_Int)) {
        return format(value.GetInt());
    }
    if (dataref.Offers(xplmType_FloatArray)) {
        return formatFloats(value, elements);
    }
    if (dataref.Offers(xplmType_IntArray)) {
        return formatInts(value, elements);
    }
    return formatBytes(value);
}

void parseDataref(const Dataref& dataref, std::string_view text, const Elements& elements) {
    IDatarefValue& value = dataref.Value();
    if (dataref.Offers(xplmType_Double)) {
        value.SetDouble(parse<double>(text));
    } else if (dataref.Offers(xplmType_Float)) {
        value.SetFloat(parse<float>(text));
    } else if (dataref.Offers(xplmType_Int)) {
        value.SetInt(parse<int>(text));
    } else if (dataref.Offers(xplmType_FloatArray)) {
        auto floats = parseElements<float>(text, elements);
        value.SetFloats(floats.data(), elements.first, static_cast<int>(floats.size()));
    } else if (dataref.Offers(xplmType_IntArray)) {
        auto ints = parseElements<int>(text, elements);
        value.SetInts(ints.data(), elements.first, static_cast<int>(ints.size()));
    } else {
        parseBytes(value, text);
    }
}

void writeNumbers(const Dataref& dataref, std::span<const double> numbers,
                  const Elements& elements) {
    IDatarefValue& value = dataref.Value();
    const auto count = static_cast<int>(numbers.size());
    if (numbers.empty()) {
        return;
    }
    if (dataref.Offers(xplmType_Double)) {
        value.SetDouble(numbers.front());
    } else if (dataref.Offers(xplmType_Float)) {
        value.SetFloat(static_cast<float>(numbers.front()));
    } else if (dataref.Offers(xplmType_Int)) {
        value.SetInt(nearestInt(numbers.front()));
    } else if (dataref.Offers(xplmType_FloatArray)) {
        std::vector<float> floats(numbers.begin(), numbers.end());
        value.SetFloats(floats.data(), elements.first, count);
    } else if (dataref.Offers(xplmType_IntArray)) {
        std::vector<int> ints(numbers.size());
        std::transform(numbers.begin(), numbers.end(), ints.begin(), &nearestInt);
        value.SetInts(ints.data(), elements.first, count);
    }
}

std::optional<int> arraySize(const Dataref& dataref) {
    if (dataref.Offers(xplmType_Double | xplmType_Float | xplmType_Int)) {
        return std::nullopt;
    }
    if (dataref.Offers(xplmType_FloatArray)) {
        return dataref.Value().GetFloats(nullptr, 0, 0);
    }
    if (dataref.Offers(xplmType_IntArray)) {
        return dataref.Value().GetInts(nullptr, 0, 0);
    }
    return std::nullopt;
}

} // namespace headless
