// A plugin that expects OpenGL and the SDK's library in its process, and says in the log what it
// got.

#include <dlfcn.h>

#include <cstring>

#include "QuietEntryPoints.h"
#include "XPLMDefs.h"
#include "XPLMGraphics.h"
#include "XPLMUtilities.h"

// Of the library that it brings along, which expects OpenGL and the SDK, too.
extern "C" int companionInteger();

extern "C" void glFlush();
extern "C" int glHeadlessTestInteger();
extern "C" double gluHeadlessTestNumber();

namespace {

bool sdkOpensByName() {
    void* const library = ::dlopen("Resources/plugins/XPLM_64.so", RTLD_NOW);
    return library != nullptr &&
           ::dlsym(library, "XPLMDebugString") == reinterpret_cast<void*>(&XPLMDebugString);
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Drawing");
    std::strcpy(outSignature, "headless.tests.drawing");
    std::strcpy(outDescription, "Calls OpenGL.");
    if (glHeadlessTestInteger() == 0 && gluHeadlessTestNumber() == 0.0 && companionInteger() == 0) {
        XPLMDebugString("no-ops answer 0\n");
    }
    glFlush();
    XPLMDebugString(sdkOpensByName() ? "the SDK opens by name\n" : "no SDK\n");
    XPLMGetTexture(0);
    return 1;
}
