#pragma once

#include <fstream>
#include <string>

#include "headless/scenario/ScenarioRun.h"

namespace headless {

// What became of a scenario, in the XML that build servers show: a test case for each line that
// checks something, and for the one that could not be carried out.
class JunitReport final {
public:
    // Empties the file or makes it. Throws std::runtime_error when that is not possible.
    explicit JunitReport(const std::string& path);

    void Write(const ScenarioRun& run);

private:
    std::ofstream file;
};

} // namespace headless
