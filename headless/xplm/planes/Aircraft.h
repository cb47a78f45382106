#pragma once

#include <string>
#include <vector>

#include "XPLMPlanes.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginRegistry.h"
#include "headless/xplm/utilities/SystemFolder.h"

namespace headless {

// The user's aircraft and the others, and which plugin controls the others.
//
// There are kMost aircraft; one is active until a plugin asks for more. They have only a model: no
// other aircraft flies.
class Aircraft final {
public:
    static constexpr int kMost = 20;

    Aircraft(PluginRegistry& pluginRegistry, PluginContext& pluginContext,
             const SystemFolder& systemFolder, CallRecorder& callRecorder);
    Aircraft(const Aircraft&) = delete;
    Aircraft& operator=(const Aircraft&) = delete;

    // Replaces the user's aircraft and sends plugins both messages below.
    void LoadUsers(const std::string& path);
    // Sends plugins the message that it is unloaded, or loaded.
    void AnnounceUnloaded();
    void AnnounceLoaded();

    int Active() const { return active; }
    // XPLM_NO_PLUGIN_ID if no plugin does.
    XPLMPluginID Controller() const { return controller; }
    // The path of the model; empty for an index that does not exist or has no model.
    std::string ModelOf(int index) const;

    // For the calling plugin. The callback is called when the planes are free again.
    bool Acquire(char** wantedModels, XPLMPlanesAvailable_f callback, void* refcon);
    void Release();
    // Refused unless the controller calls.
    void SetActive(int count);
    void SetModel(int index, const char* path);

    std::size_t DropOf(XPLMPluginID plugin);

private:
    struct Waiting {
        XPLMPlanesAvailable_f callback;
        void* refcon;
        XPLMPluginID owner;
    };

    bool isController();
    void release();

    PluginRegistry& plugins;
    PluginContext& context;
    const SystemFolder& folder;
    CallRecorder& recorder;
    std::vector<std::string> models;
    int active = 1;
    XPLMPluginID controller = XPLM_NO_PLUGIN_ID;
    std::vector<Waiting> waiting;
};

} // namespace headless
