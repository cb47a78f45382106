#pragma once

#include <cstddef>

namespace headless {

// Figures of this process, for tests that watch it over a long run.
class ProcessInfo final {
public:
    // Kilobytes of memory in use; 0 when the system does not tell.
    static std::size_t ResidentKilobytes();
    static std::size_t OpenFileDescriptors();
};

} // namespace headless
