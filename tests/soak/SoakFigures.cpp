#include "soak/SoakFigures.h"

#include <sstream>

#include "e2e/SimulatorProcess.h"

namespace {

// Normal variation of the allocator; a leak of ten bytes per client would be more.
constexpr long kPlayKilobytes = 512;

} // namespace

SoakFigures SoakFigures::Of(SimulatorProcess& simulator, std::size_t resets) {
    return {.residentKilobytes = simulator.AskNumber("rss"),
            .fileDescriptors = simulator.AskNumber("fds"),
            .commandHandlers = simulator.AskNumber("handlers"),
            .logLines = simulator.LogLines().size() - resets};
}

std::string SoakFigures::GrowthSince(const SoakFigures& earlier) const {
    std::ostringstream growth;
    if (residentKilobytes > earlier.residentKilobytes + kPlayKilobytes) {
        growth << " memory";
    }
    if (fileDescriptors != earlier.fileDescriptors) {
        growth << " file descriptors";
    }
    if (commandHandlers != earlier.commandHandlers) {
        growth << " command handlers";
    }
    if (logLines != earlier.logLines) {
        growth << " log";
    }
    return growth.str();
}

std::string SoakFigures::Text() const {
    std::ostringstream text;
    text << "rss " << residentKilobytes << " KB, fds " << fileDescriptors << ", handlers "
         << commandHandlers << ", log " << logLines << " lines";
    return text.str();
}
