#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "soak/Soak.h"
#include "support/PrivateNetwork.h"
#include "support/TemporaryDirectory.h"

int main(int argc, char** argv) {
    CLI::App app("Flies for long in a short time, and sees that nothing grows.");
    int seconds = 300;
    app.add_option("--seconds", seconds, "How long")->check(CLI::Range(1, 1000000));
    app.footer("Exit code: 0 when all stayed flat, 1 when something grew or failed.");
    CLI11_PARSE(app, argc, argv);
    try {
        enterPrivateNetwork();
        const TemporaryDirectory directory;
        directory.MakePluginsFolder();
        return Soak(std::chrono::seconds(seconds)).Run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak: %s\n", error.what());
        return 1;
    }
}
