#pragma once

#include <cstddef>

namespace headless {

// Resident memory in kilobytes; 0 if the system does not report it.
std::size_t residentKilobytes();
std::size_t openFileDescriptors();

} // namespace headless
