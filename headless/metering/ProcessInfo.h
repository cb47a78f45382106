#pragma once

#include <cstddef>

namespace headless {

// Kilobytes of memory in use; 0 when the system does not tell.
std::size_t residentKilobytes();
std::size_t openFileDescriptors();

} // namespace headless
