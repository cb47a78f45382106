#pragma once

#include <string>
#include <vector>

#include "XPLMPlanes.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginRegistry.h"
#include "headless/xplm/utilities/SystemFolder.h"

namespace headless {

// The user's aircraft and the others, and who controls the latter.
//
// There are kMost aircraft, of which one is active until a plugin asks for more. They have a model
// and nothing else: no other aircraft flies.
class Aircraft final {
public:
    static constexpr int kMost = 20;

    Aircraft(PluginRegistry& pluginRegistry, PluginContext& pluginContext,
             const SystemFolder& systemFolder, CallRecorder& callRecorder);
    Aircraft(const Aircraft&) = delete;
    Aircraft& operator=(const Aircraft&) = delete;

    // The user's aircraft goes and another one comes: plugins are told both.
    void LoadUsers(const std::string& path);
    // Plugins are told that it goes, or that it came.
    void TellUnloaded();
    void TellLoaded();

    int Active() const { return active; }
    // XPLM_NO_PLUGIN_ID when nobody does.
    XPLMPluginID Controller() const { return controller; }
    // The path of the model; empty for an index that does not exist or has none.
    std::string ModelOf(int index) const;

    // For the plugin that calls. The callback is told when the planes are free again.
    bool Acquire(char** wantedModels, XPLMPlanesAvailable_f callback, void* refcon);
    void Release();
    // Only of the controller.
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
