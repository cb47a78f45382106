#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "soak/Soak.h"
#include "support/PrivateNetwork.h"
#include "support/TemporaryDirectory.h"

int main(int argc, char** argv) {
    CLI::App app("Flies for long in a short time, and sees that nothing grows.");
    constexpr long kFramesPerHour = 60L * 60 * 60;
    int seconds = 300;
    int hours = 0;
    auto* const real = app.add_option("--seconds", seconds, "How long");
    real->check(CLI::Range(1, 1000000));
    app.add_option("--hours", hours,
                   "How long in the simulator, at 60 frames a second; with Python")
        ->check(CLI::Range(1, 1000))
        ->excludes(real);
    app.footer("Exit code: 0 when all stayed flat, 1 when something grew or failed.");
    CLI11_PARSE(app, argc, argv);
    try {
        enterPrivateNetwork();
        const TemporaryDirectory directory;
        directory.MakePluginsFolder();
        Soak soak({.duration = std::chrono::seconds(seconds),
                   .frames = hours * kFramesPerHour,
                   .withPython = hours > 0});
        return soak.Run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak: %s\n", error.what());
        return 1;
    }
}
