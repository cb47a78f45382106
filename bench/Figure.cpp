#include "bench/Figure.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

// Open only in scripts/bench, which redirects the other streams.
constexpr int kProgressFile = 3;

} // namespace

void showProgress(const std::string& name) {
    static const bool wanted = ::isatty(kProgressFile) != 0;
    if (wanted) {
        ::dprintf(kProgressFile, "\r    %-60.60s\r", name.c_str());
    }
}

void failCheck(const std::string& what) {
    std::fprintf(stderr, "benchmark: %s\n", what.c_str());
    std::exit(EXIT_FAILURE);
}

double threadSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}
