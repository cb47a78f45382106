#pragma once

#include <string>
#include <vector>

#include "headless/xplm/Simulator.h"

namespace headless {

// What can complete a statement of which `before` is already written and `word` is begun: words of
// the language, datarefs, commands or plugins, in ascending order.
//
// Names are completed part by part, like file paths: "sim/" instead of every name that begins with
// it.
std::vector<std::string> completionsOf(Simulator& simulator, const std::string& before,
                                       const std::string& word);

} // namespace headless
