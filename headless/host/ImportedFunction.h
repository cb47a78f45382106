#pragma once

#include <string>

namespace headless {

// Makes a loaded library call something else by the name of a function of another library. What
// the library looked up by itself stays. False when it does not use the name.
bool redirectImport(void* library, const std::string& function, const void* target);

} // namespace headless
