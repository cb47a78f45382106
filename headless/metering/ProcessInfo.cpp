#include "headless/metering/ProcessInfo.h"

#include <dirent.h>
#include <unistd.h>

#include <fstream>
#include <memory>

namespace headless {

namespace {

constexpr std::size_t kBytesPerKilobyte = 1024;

} // namespace

std::size_t residentKilobytes() {
    std::ifstream statm("/proc/self/statm");
    std::size_t totalPages = 0;
    std::size_t residentPages = 0;
    statm >> totalPages >> residentPages;
    return residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / kBytesPerKilobyte;
}

std::size_t openFileDescriptors() {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc/self/fd"), &::closedir);
    if (folder == nullptr) {
        return 0;
    }
    std::size_t entries = 0;
    while (const dirent* entry = ::readdir(folder.get())) {
        entries += entry->d_name[0] == '.' ? 0U : 1U;
    }
    return entries - 1; // The folder's own descriptor.
}

} // namespace headless
