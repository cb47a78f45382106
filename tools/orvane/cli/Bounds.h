#pragma once

#include <cstdint>
#include <string>

namespace CLI {
class Validator;
}

namespace orvane::tool {

inline constexpr double kSecondsPerDay = 86'400.0;
inline constexpr double kSecondsPerYear = 31'536'000.0;

// Checks for the values of options, with plain messages: "5s" is not a number, 0 is not between a
// millisecond and a day. `words` names the bounds if numbers would be hard to read.
CLI::Validator between(double least, double most, const std::string& words = {});
CLI::Validator wholeBetween(std::int64_t least, std::int64_t most, const std::string& words = {});

} // namespace orvane::tool
