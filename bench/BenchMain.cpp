#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "bench/Figure.h"

void showProgress(const std::string& name) {
    static const bool wanted = ::isatty(STDERR_FILENO) != 0;
    if (wanted) {
        std::fprintf(stderr, "\r%-60.60s\r", name.c_str());
    }
}

void failCheck(const std::string& what) {
    std::fprintf(stderr, "benchmark: %s\n", what.c_str());
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): one thread
}

int main(int argc, char** argv) {
    addFigures();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    benchmark::RunSpecifiedBenchmarks();
    showProgress("");
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
