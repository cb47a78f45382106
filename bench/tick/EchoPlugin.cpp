// The floor of a tick: a plugin that gives the benchmark's client the same answers as ours, with
// the same calls to the system and to the simulator and nothing in between.

#include <cstdio>
#include <exception>
#include <memory>

#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "bench/tick/EchoServer.h"

namespace {

constexpr float kNextFlightLoop = -1.0F;

// Size of the simulator's buffers for the three texts of XPluginStart.
constexpr std::size_t kStartTextSize = 256;

std::unique_ptr<EchoServer> server;

void setText(char* out, const char* text) {
    std::snprintf(out, kStartTextSize, "%s", text);
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    server->ProcessEvents();
    return kNextFlightLoop;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    setText(outName, "Echo");
    setText(outSignature, "bench.tick.echo");
    setText(outDescription, "The floor of a tick.");
    try {
        server = std::make_unique<EchoServer>();
    } catch (const std::exception& error) {
        XPLMDebugString(error.what());
        return 0;
    }
    XPLMRegisterFlightLoopCallback(&onFlightLoop, kNextFlightLoop, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop() {
    server.reset();
}

PLUGIN_API int XPluginEnable() {
    return 1;
}

PLUGIN_API void XPluginDisable() {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int message, void* /*param*/) {
    if (message == XPLM_MSG_PLANE_LOADED) {
        server->ReadAircraft();
    }
}
