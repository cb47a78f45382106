// A plugin that needs names which nobody has. Its constructor must never run.

#include <cstdlib>

#include "XPLMDefs.h"

extern "C" void XPLMNoSuchOne();
extern "C" void XPLMNoSuchTwo();
extern "C" void nobodyHasThis();

namespace {

struct Loaded {
    Loaded() { std::abort(); }
};

const Loaded loaded;

} // namespace

PLUGIN_API int XPluginStart(char* /*name*/, char* /*signature*/, char* /*description*/) {
    XPLMNoSuchTwo();
    XPLMNoSuchOne();
    nobodyHasThis();
    return 1;
}

PLUGIN_API void XPluginStop(void) {}
PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginDisable(void) {}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
