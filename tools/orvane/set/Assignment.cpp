#include "tools/orvane/set/Assignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/Numbers.h"
#include "tools/orvane/datarefs/ValueText.h"

namespace orvane::tool {

namespace {

using velmar::Type;
using velmar::Value;

Assignment::Candidate candidateFor(const DatarefArgument& argument, const TypeAndSize& type) {
    Assignment::Candidate candidate{argument, {}};
    candidate.argument.SetType(type);
    candidate.value =
        parseValue(*argument.value, *candidate.argument.type, candidate.argument.size);
    return candidate;
}

std::vector<double> numbersOf(const Value& value) {
    std::vector<double> numbers;
    forEachNumber(value, [&](auto number) { numbers.push_back(static_cast<double>(number)); });
    return numbers;
}

// Only NaN is near to NaN.
double distance(double one, double other) {
    if (one == other || (std::isnan(one) && std::isnan(other))) {
        return 0.0;
    }
    const double difference = std::abs(one - other);
    return std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
}

double distance(const Value& one, const Value& other) {
    const std::vector<double> left = numbersOf(one);
    const std::vector<double> right = numbersOf(other);
    double sum = 0.0;
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        sum += distance(left[i], right[i]);
    }
    return sum;
}

} // namespace

Assignment makeAssignment(const DatarefArgument& argument) {
    try {
        if (argument.type) {
            return {{candidateFor(argument, {*argument.type, argument.size})}};
        }
        const auto commas = std::count(argument.value->begin(), argument.value->end(), ',');
        const auto size = commas > 0 ? static_cast<std::uint32_t>(commas + 1) : 0;
        Assignment assignment{
            {candidateFor(argument, {size > 0 ? Type::FloatArray : Type::Float, size})}};
        try {
            assignment.candidates.push_back(
                candidateFor(argument, {size > 0 ? Type::IntArray : Type::Int, size}));
        } catch (const Failure&) {
            // Not whole numbers, so not ints.
        }
        return assignment;
    } catch (const Failure& failure) {
        throw Failure(failure.Code(), fmt::format("{}: {}", argument.text, failure.what()));
    }
}

bool wasTaken(const Value& written, const Value& before, const Value& after) {
    return distance(after, written) == 0.0 || distance(before, written) == 0.0 ||
           distance(after, written) < distance(after, before);
}

} // namespace orvane::tool
