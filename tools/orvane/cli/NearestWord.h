#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool {

// The known word that somebody most likely meant who typed another; empty if none is close.
std::string nearestWord(std::string_view typed, const std::vector<std::string>& known);

// The same of options, which begin with one dash or two. A letter stands for the option that it
// begins: -V for --version.
std::string nearestOption(std::string_view typed, const std::vector<std::string>& known);

} // namespace orvane::tool
