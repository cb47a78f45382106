#include "headless/scenario/Condition.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "headless/host/DatarefPlace.h"

namespace headless {

namespace {

std::vector<double> numbersIn(const std::string& text) {
    std::vector<double> numbers;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t comma = std::min(text.find(',', begin), text.size());
        Arguments part(std::string_view(text).substr(begin, comma - begin));
        numbers.push_back(part.TakeNumber<double>("a number"));
        part.RequireEnd();
        begin = comma + 1;
    }
    return numbers;
}

} // namespace

Condition::Condition(Arguments& arguments) : name(arguments.Word("the dataref")) {
    const std::string sign = arguments.Word("a comparison such as ==");
    comparison = readOperator(sign);
    value = arguments.Until({"within", "for"}, "the value");
    text = name + " " + sign + " " + value;
    if (arguments.Take("within")) {
        const bool compares = comparison == Operator::Equal || comparison == Operator::Unequal;
        if (!compares) {
            throw std::invalid_argument("\"within\" goes with == and != only");
        }
        const std::string word = arguments.Word("the tolerance");
        tolerance = Arguments(word).TakeNumber<double>("the tolerance");
        if (!(*tolerance >= 0.0)) {
            throw std::invalid_argument("a tolerance is 0 or more");
        }
        text += " within " + word;
    }
}

Condition::Operator Condition::readOperator(const std::string& word) {
    const std::vector<std::pair<const char*, Operator>> known{
        {"==", Operator::Equal},  {"!=", Operator::Unequal}, {"<", Operator::Less},
        {"<=", Operator::AtMost}, {">", Operator::Greater},  {">=", Operator::AtLeast}};
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const auto& one) { return word == one.first; });
    if (found == known.end()) {
        throw std::invalid_argument("\"" + word + "\" is not one of == != < <= > >=");
    }
    return found->second;
}

std::optional<std::string> Condition::Otherwise(const DatarefTable& datarefs) const {
    std::optional<DatarefPlace> place;
    try {
        place.emplace(datarefs, name);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    std::string got = place->Format();
    const bool holds =
        place->IsText() ? holdsForText(got) : holdsForNumbers(got, place->HasFloats());
    return holds ? std::nullopt : std::optional(std::move(got));
}

bool Condition::holdsForText(const std::string& got) const {
    if (tolerance.has_value() ||
        (comparison != Operator::Equal && comparison != Operator::Unequal)) {
        throw std::invalid_argument(name + " is text, which is compared by == and != only");
    }
    return (got == value) == (comparison == Operator::Equal);
}

bool Condition::holdsForNumbers(const std::string& got, bool isFloat) const {
    const std::vector<double> wanted = numbersIn(value);
    const std::vector<double> numbers = got.empty() ? std::vector<double>() : numbersIn(got);
    if (comparison == Operator::Equal || comparison == Operator::Unequal) {
        const bool equal =
            std::equal(numbers.begin(), numbers.end(), wanted.begin(), wanted.end(),
                       [&](double one, double other) { return areEqual(one, other, isFloat); });
        return equal == (comparison == Operator::Equal);
    }
    if (numbers.size() != 1 || wanted.size() != 1) {
        throw std::invalid_argument("arrays are compared by == and != only; an element is " + name +
                                    "[0]");
    }
    return isInOrder(numbers.front(), wanted.front());
}

// A float equals the decimal fraction that it is nearest to.
bool Condition::areEqual(double got, double wanted, bool isFloat) const {
    if (tolerance.has_value()) {
        return std::abs(got - wanted) <= *tolerance;
    }
    return isFloat ? static_cast<float>(got) == static_cast<float>(wanted) : got == wanted;
}

bool Condition::isInOrder(double got, double wanted) const {
    switch (comparison) {
    case Operator::Less:
        return got < wanted;
    case Operator::AtMost:
        return got <= wanted;
    case Operator::Greater:
        return got > wanted;
    default:
        return got >= wanted;
    }
}

} // namespace headless
