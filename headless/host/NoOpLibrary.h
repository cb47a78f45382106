#pragma once

#include <string>
#include <vector>

namespace headless {

// Makes a shared library in memory whose functions do nothing and answer 0, and makes its names
// available to the process for its whole life. Other libraries can ask for it by `soname`. Throws
// PluginError if the system refuses.
void loadNoOpLibrary(const std::string& soname, const std::vector<std::string>& names);

} // namespace headless
