#pragma once

#include <istream>
#include <string>
#include <vector>

#include "headless/xplm/data/DatarefDefinition.h"

namespace headless {

// Reads the simulator's own list of datarefs (DataRefs.txt).
//
// Tab-separated columns: name, type ("int", "float[8]", "byte[500]"; several dimensions, such as
// "float[4][3]", are flattened), writable ("y" or "n"), units, description. The last two may be
// missing. A first line that begins with a digit is the file's version header; blank lines are
// skipped. An array without a size, "byte[]", gets kOpenSize elements. A double is also offered as
// a float.
//
// A line that cannot be read is skipped with a warning. If no line can be read, throws
// TextFileError with file and line.
struct DatarefsFile {
    static constexpr int kOpenSize = 256;

    std::vector<DatarefDefinition> definitions;
    // One line each, "FILE:LINE: reason".
    std::vector<std::string> warnings;

    static DatarefsFile Read(const std::string& path);
    // `name` is the file's name in errors.
    static DatarefsFile Parse(std::istream& stream, const std::string& name);
};

} // namespace headless
