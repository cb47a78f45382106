#pragma once

#include <string>
#include <vector>

#include "headless/xplm/Simulator.h"

namespace headless {

// What can stand at the end of a statement of which `before` is written and `word` is begun: words
// of the language, datarefs, commands or plugins, in ascending order.
//
// Names are completed part by part, as paths of files are: "sim/" instead of all that begin so.
std::vector<std::string> completionsOf(Simulator& simulator, const std::string& before,
                                       const std::string& word);

} // namespace headless
