// A plugin that tells the log what happens to it and takes back all that it registered.

#include <cstdint>
#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

int counter = 0;

XPLMDataRef counterDataref = nullptr;
XPLMCommandRef command = nullptr;

int readCounter(void* /*refcon*/) {
    return counter;
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    ++counter;
    return -1.0F;
}

int onCommand(XPLMCommandRef /*pressed*/, XPLMCommandPhase phase, void* /*refcon*/) {
    XPLMDebugString(("command phase " + std::to_string(phase) + "\n").c_str());
    return 0;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Fake");
    std::strcpy(outSignature, "headless.tests.fake");
    std::strcpy(outDescription, "A plugin for tests.");
    counterDataref = XPLMRegisterDataAccessor(
        "fake/counter", xplmType_Int, 0, &readCounter, nullptr, nullptr, nullptr, nullptr, nullptr,
        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    command = XPLMCreateCommand("fake/command", "A command");
    XPLMRegisterCommandHandler(command, &onCommand, 1, nullptr);
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    XPLMDebugString("start\n");
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMUnregisterFlightLoopCallback(&onFlightLoop, nullptr);
    XPLMUnregisterCommandHandler(command, &onCommand, 1, nullptr);
    XPLMUnregisterDataAccessor(counterDataref);
    XPLMDebugString("stop\n");
}

PLUGIN_API int XPluginEnable(void) {
    XPLMDebugString("enable\n");
    return 1;
}

PLUGIN_API void XPluginDisable(void) {
    XPLMDebugString("disable\n");
}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID from, int message, void* parameter) {
    const auto value = reinterpret_cast<std::intptr_t>(parameter);
    XPLMDebugString(("message " + std::to_string(message) + " " + std::to_string(value) + " from " +
                     std::to_string(from) + "\n")
                        .c_str());
}
