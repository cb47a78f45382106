#include "headless/metering/ProcessInfo.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

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
    std::error_code error;
    const std::filesystem::directory_iterator folder("/proc/self/fd", error);
    // One of them is the folder's own.
    return error ? 0U : static_cast<std::size_t>(std::distance(begin(folder), end(folder))) - 1U;
}

} // namespace headless
