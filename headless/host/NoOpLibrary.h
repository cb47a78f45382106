#pragma once

#include <string>
#include <vector>

namespace headless {

// Makes a shared library in memory, whose functions do nothing and answer 0, and its names known to
// the process for its whole life. `soname` is what other libraries may ask for. Throws PluginError
// when the system refuses.
void loadNoOpLibrary(const std::string& soname, const std::vector<std::string>& names);

} // namespace headless
