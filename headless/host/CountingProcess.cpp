#include "headless/host/CountingProcess.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "headless/xplm/Simulator.h"

namespace headless {

namespace {

constexpr const char* kPreload = "LD_PRELOAD";

// Empty when it is not known where libraries are, or it is not there.
std::string counterFile() {
    Dl_info library{};
    if (::dladdr(reinterpret_cast<void*>(&Simulator::Current), &library) == 0) {
        return {};
    }
    const std::string simulator = library.dli_fname;
    const std::string file =
        simulator.substr(0, simulator.rfind('/') + 1) + "libheadless-allocations.so";
    // Blanks and colons part the names of several libraries.
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
        // This is the new one. What it starts is to have the former environment.
        const std::string former = others.substr(std::min(others.size(), file.size() + 1));
        former.empty() ? ::unsetenv(kPreload) : ::setenv(kPreload, former.c_str(), 1);
        return;
    }
    ::setenv(kPreload, others.empty() ? file.c_str() : (file + ":" + others).c_str(), 1);
    ::execv("/proc/self/exe", arguments);
    // It goes on without.
    others.empty() ? ::unsetenv(kPreload) : ::setenv(kPreload, others.c_str(), 1);
}

} // namespace headless
