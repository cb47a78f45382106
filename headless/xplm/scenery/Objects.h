#pragma once

#include <deque>
#include <string>

#include "XPLMScenery.h"
#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/utilities/SystemFolder.h"

namespace headless {

// An object file that a plugin loaded. Only its path is known: nothing is drawn.
struct SceneryObject {
    std::string path;
};

// The objects of all plugins. Any existing file can be loaded. Objects loaded in the background are
// ready in the next frame.
class Objects final {
public:
    Objects(const SystemFolder& systemFolder, PluginContext& pluginContext,
            CallRecorder& callRecorder)
        : folder(systemFolder),
          context(pluginContext),
          objects(pluginContext, callRecorder, "object") {}
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    // Null if there is no such file.
    XPLMObjectRef Load(const char* path);
    void LoadLater(const char* path, XPLMObjectLoaded_f callback, void* refcon);
    void Unload(XPLMObjectRef handle) { objects.Remove(handle); }
    // Null if there is no such object; records the refusal.
    const SceneryObject* Resolve(XPLMObjectRef handle) { return objects.Resolve(handle); }

    // Once per frame.
    void FinishLoads();
    std::size_t DropOf(XPLMPluginID plugin);

private:
    struct Pending {
        std::string path;
        XPLMObjectLoaded_f callback;
        void* refcon;
        XPLMPluginID owner;
    };

    const SystemFolder& folder;
    PluginContext& context;
    OwnedObjects<SceneryObject> objects;
    std::deque<Pending> pending;
};

} // namespace headless
