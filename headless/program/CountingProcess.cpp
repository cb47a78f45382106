#include "headless/program/CountingProcess.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "headless/xplm/Simulator.h"

namespace headless {

namespace {

constexpr const char* kPreload = "LD_PRELOAD";

// Empty if the libraries' folder is unknown, or the file is missing or cannot be used.
std::string counterFile() {
    Dl_info library{};
    if (::dladdr(reinterpret_cast<void*>(&Simulator::Current), &library) == 0) {
        return {};
    }
    const std::string simulator = library.dli_fname;
    const std::string file =
        simulator.substr(0, simulator.rfind('/') + 1) + "libheadless-allocations.so";
    // LD_PRELOAD separates libraries with blanks and colons.
    const bool isUsable =
        file.find_first_of(" :") == std::string::npos && ::access(file.c_str(), R_OK) == 0;
    return isUsable ? file : std::string();
}

std::string preloaded() {
    const char* const value = std::getenv(kPreload);
    return value == nullptr ? "" : value;
}

} // namespace

void countAllocations(char** arguments) {
    const std::string file = counterFile();
    const std::string others = preloaded();
    if (file.empty()) {
        return;
    }
    if (others.starts_with(file)) {
        // The restarted process. Its children get the former environment.
        const std::string former = others.substr(std::min(others.size(), file.size() + 1));
        former.empty() ? ::unsetenv(kPreload) : ::setenv(kPreload, former.c_str(), 1);
        return;
    }
    ::setenv(kPreload, others.empty() ? file.c_str() : (file + ":" + others).c_str(), 1);
    ::execv("/proc/self/exe", arguments);
    // The restart failed; continue without counting.
    others.empty() ? ::unsetenv(kPreload) : ::setenv(kPreload, others.c_str(), 1);
}

} // namespace headless
