#pragma once

#include <string>

namespace headless {

// Makes a loaded library call `target` instead of the function that it imports by this name. Does
// not affect functions that the library looked up itself. Returns false if the library does not
// import the name.
bool redirectImport(void* library, const std::string& function, const void* target);

} // namespace headless
