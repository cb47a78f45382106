#pragma once

#include <string>

#include "XPLMDataAccess.h"

namespace headless {

// A dataref's name, type bits, element count of its array types, and whether plugins may write it.
struct DatarefDefinition {
    std::string name;
    XPLMDataTypeID types = xplmType_Float;
    // Elements of an array, bytes of xplmType_Data. Ignored for scalars.
    int elements = 0;
    bool writable = true;
    std::string units{};
    std::string description{};
};

} // namespace headless
