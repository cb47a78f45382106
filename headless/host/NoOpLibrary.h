#pragma once

#include <string>
#include <vector>

namespace headless {

// A shared library made in memory, whose functions do nothing and answer 0.
class NoOpLibrary final {
public:
    // Makes the names known to the process for its whole life. `soname` is what other libraries may
    // ask for. Throws PluginError when the system refuses.
    static void Load(const std::string& soname, const std::vector<std::string>& names);
};

} // namespace headless
