// A plugin that ends badly in its first flight loop, as HEADLESS_TEST_CRASH tells it to; in its
// start or before it when that says "start" or "constructor".

#include <sys/mman.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

#include "QuietEntryPoints.h"
#include "XPLMDefs.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

std::string wanted() {
    const char* const text = std::getenv("HEADLESS_TEST_CRASH");
    return text == nullptr ? "" : text;
}

void readForbidden() {
    const void* const page = ::mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    [[maybe_unused]] const int value = *static_cast<const volatile int*>(page);
}

// As good as endless.
int deeper(int depth) {
    const volatile int page[1024] = {depth};
    return depth == 0 ? 0 : deeper(depth - 1) + page[0];
}

struct Early {
    Early() {
        if (wanted() == "constructor") {
            throw std::runtime_error("thrown early");
        }
    }
};

const Early early;

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    XPLMDebugString("the last line\n");
    const std::string how = wanted();
    if (how == "read") {
        readForbidden();
    } else if (how == "throw") {
        throw std::runtime_error("nobody catches this");
    } else if (how == "stack") {
        deeper(1'000'000'000);
    } else if (how == "exit") {
        std::exit(0);
    } else if (how == "thread") {
        std::thread(&readForbidden).join();
    } else {
        ::raise(std::stoi(how));
    }
    return -1.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Crashing");
    std::strcpy(outSignature, "headless.tests.crashing");
    std::strcpy(outDescription, "Ends the process.");
    if (wanted() == "start") {
        readForbidden();
    }
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 1;
}
