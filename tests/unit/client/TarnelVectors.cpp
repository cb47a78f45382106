#include "TarnelVectors.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "VectorWords.h"

namespace {

using namespace orvane::tarnel;

Input targetOf(const WireWords& words, std::int32_t element) {
    const std::int32_t action = asInt(words.at(1));
    const std::string& name = words.at(3);
    const std::map<std::string, Input> targets{
        {"int", Input::toInt(action, name)},
        {"float", Input::toFloat(action, name)},
        {"int-element", Input::toIntElement(action, name, element)},
        {"float-element", Input::toFloatElement(action, name, element)},
        {"command", Input::toCommand(action, name)}};
    return lookUp(targets, words.at(2));
}

ConditionDataref conditionOf(const std::string& text) {
    using Type = ConditionDataref::Type;
    static const std::map<std::string, Type> kTypes{{"int", Type::Int},
                                                    {"float", Type::Float},
                                                    {"int-element", Type::IntElement},
                                                    {"float-element", Type::FloatElement}};
    const WireWords words = listOf(text);
    return {words.at(0), lookUp(kTypes, words.at(1)), asInt(words.at(2))};
}

void refine(Input& input, const std::string& option, const std::string& value, bool isFloat) {
    using Refine = std::function<void(Input&, const std::string&)>;
    static const std::map<std::string, Refine> kOptions{
        {"element", [](auto&, const auto&) { /* of the target */ }},
        {"int-range",
         [](auto& of, const auto& range) {
             const auto ends = asNumbers<std::int32_t>(range);
             of.scaledByIntRange(ends.at(0), ends.at(1));
         }},
        {"float-range",
         [](auto& of, const auto& range) {
             const auto ends = asNumbers<float>(range);
             of.scaledByFloatRange(ends.at(0), ends.at(1));
         }},
        {"datarefs",
         [](auto& of, const auto& range) {
             const auto names = listOf(range);
             of.scaledByDatarefs(names.at(0), names.at(1));
         }},
        {"dataref-elements",
         [](auto& of, const auto& range) {
             const auto names = listOf(range);
             of.scaledByDatarefElements(names.at(0), names.at(1), asInt(names.at(2)));
         }},
        {"skip-one", [](auto& of, const auto&) { of.skippedWhenOne(); }},
        {"skip-zero", [](auto& of, const auto&) { of.skippedWhenZero(); }},
        {"skip-while-positive",
         [](auto& of, const auto& dataref) { of.skippedWhilePositive(conditionOf(dataref)); }},
        {"skip-while-zero",
         [](auto& of, const auto& dataref) { of.skippedWhileZero(conditionOf(dataref)); }},
        {"fixed", [](auto& of, const auto& fixed) { of.fixed(asInt(fixed)); }},
        {"held", [](auto& of, const auto&) { of.held(); }},
        {"repeat-ms", [](auto& of, const auto& interval) {
             of.repeatedEvery(std::chrono::milliseconds(asInt(interval)));
         }}};
    if (option == "fixed" && isFloat) {
        input.fixed(std::stof(value));
    } else {
        lookUp(kOptions, option)(input, value);
    }
}

Input inputOf(const WireWords& words) {
    std::vector<std::pair<std::string, std::string>> options;
    std::int32_t element = 0;
    for (std::size_t i = 4; i < words.size(); ++i) {
        const std::size_t sign = std::min(words[i].find('='), words[i].size());
        options.emplace_back(words[i].substr(0, sign),
                             words[i].substr(std::min(sign + 1, words[i].size())));
        if (options.back().first == "element") {
            element = asInt(options.back().second);
        }
    }
    Input input = targetOf(words, element);
    for (const auto& [option, value] : options) {
        refine(input, option, value, words.at(2).starts_with("float"));
    }
    return input;
}

Output outputOf(const WireWords& words) {
    const auto id = asNumber(words.at(1));
    const std::string& type = words.at(2);
    const std::string& name = words.at(3);
    if (type == "int") {
        return Output::ofInt(id, name);
    }
    if (type == "float") {
        return Output::ofFloat(id, name);
    }
    if (type == "command") {
        return Output::ofCommand(id, name);
    }
    const auto elements = asNumbers<std::int32_t>(words.at(4));
    const auto make = type == "int-array" ? &Output::ofIntArray : &Output::ofFloatArray;
    return make(id, name, elements.at(1), elements.at(0));
}

Value outputValue(OutputType type, const std::string& text) {
    switch (type) {
    case OutputType::Int:
        return asInt(text);
    case OutputType::Float:
        return std::stof(text);
    case OutputType::IntArray:
        return asNumbers<std::int32_t>(text);
    case OutputType::FloatArray:
        return asNumbers<float>(text);
    case OutputType::Command:
        break;
    }
    return text == "1";
}

} // namespace

Definitions definitionsOf(const std::vector<WireWords>& meaning) {
    Definitions definitions;
    for (const WireWords& words : meaning) {
        if (words.front() == "input") {
            definitions.add(inputOf(words));
        } else {
            definitions.add(outputOf(words));
        }
    }
    return definitions;
}

std::vector<Item> itemsOf(const std::vector<WireWords>& meaning) {
    std::vector<Item> items;
    for (const WireWords& words : meaning) {
        items.push_back({asInt(words.at(1)), asInt(words.at(2))});
    }
    return items;
}

void expectOutputs(const Answer& answer, const Definitions& definitions, const WireStep& step) {
    const std::string aircraft = wordsOf(step.text).at(1);
    EXPECT_EQ(answer.aircraftId, aircraft == "none" ? 0 : asNumber(aircraft));
    ASSERT_EQ(definitions.outputs().size(), step.meaning.size());
    ASSERT_EQ(answer.outputs.size(), step.meaning.size());
    for (std::size_t i = 0; i < step.meaning.size(); ++i) {
        const Output& output = definitions.outputs()[i];
        ASSERT_EQ(output.id(), asNumber(step.meaning[i].at(1)));
        EXPECT_EQ(answer.outputs[i].id, output.id());
        EXPECT_EQ(answer.outputs[i].value, outputValue(output.type(), step.meaning[i].at(2)))
            << output.name();
    }
}
