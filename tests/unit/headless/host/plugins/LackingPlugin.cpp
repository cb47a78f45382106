// A plugin that needs names that do not exist. Its constructor must never run.

#include <cstdlib>

#include "QuietEntryPoints.h"
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
