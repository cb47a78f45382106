#pragma once

#include <fstream>
#include <string>

#include "headless/scenario/ScenarioRun.h"

namespace headless {

// The outcome of a scenario in the XML that build servers show: a test case for each line that
// checks something, and for the line that could not be carried out.
class JunitReport final {
public:
    // Empties or creates the file. Throws std::runtime_error if that fails.
    explicit JunitReport(const std::string& path);

    // Throws std::runtime_error if it does not fit.
    void Write(const ScenarioRun& run);

private:
    void requireWritten() const;

    const std::string path;
    std::ofstream file;
};

} // namespace headless
