#pragma once

#include "headless/xplm/data/DatarefDefinition.h"

#include <istream>
#include <string>
#include <vector>

namespace headless {

// Reads the simulator's own list of datarefs (DataRefs.txt).
//
// Tab-separated columns: name, type ("int", "float[8]", "byte[500]", several dimensions such as
// "float[4][3]" are flattened), writable ("y" or "n"), units, description; the last two may be
// missing. A first line that begins with a digit is the file's version header; blank lines are
// skipped. Anything else throws TextFileError with file and line.
class DatarefsFile final {
public:
    static std::vector<DatarefDefinition> Read(const std::string& path);
    // `name` stands for the file in errors.
    static std::vector<DatarefDefinition> Parse(std::istream& stream, const std::string& name);
};

} // namespace headless
