#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool {

// The known word that was most likely meant by `typed`; empty if none is close.
std::string nearestWord(std::string_view typed, const std::vector<std::string>& known);

// The same for options, with one dash or two. A single letter stands for the option that it begins:
// -V for --version.
std::string nearestOption(std::string_view typed, const std::vector<std::string>& known);

} // namespace orvane::tool
