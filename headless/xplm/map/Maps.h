#pragma once

#include <string>

#include "XPLMMap.h"
#include "headless/xplm/OwnedObjects.h"

namespace headless {

// A layer as the plugin set it up. The map is not drawn, so its drawing callbacks are not called.
struct MapLayer {
    XPLMCreateMapLayer_t parameters{};
    std::string name;
};

// The user interface's map, which always exists, and its layers.
class Maps final {
public:
    Maps(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), layers(pluginContext, callRecorder, "map layer") {}
    Maps(const Maps&) = delete;
    Maps& operator=(const Maps&) = delete;

    static bool Exists(const char* map);
    // Null if the map does not exist.
    XPLMMapLayerID Create(const XPLMCreateMapLayer_t& parameters);
    // Notifies the layer's plugin first. False if there is no such layer.
    bool Destroy(XPLMMapLayerID handle);
    // Null if there is no such layer; records the refusal.
    const MapLayer* Resolve(XPLMMapLayerID handle) { return layers.Resolve(handle); }
    std::size_t DropOf(XPLMPluginID plugin) { return layers.DropOf(plugin); }

private:
    PluginContext& context;
    OwnedObjects<MapLayer> layers;
};

} // namespace headless
