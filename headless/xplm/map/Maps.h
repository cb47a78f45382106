#pragma once

#include <string>

#include "XPLMMap.h"
#include "headless/xplm/OwnedObjects.h"

namespace headless {

// A layer as it was told to be; its callbacks are not called, for the map is not drawn.
struct MapLayer {
    XPLMCreateMapLayer_t parameters{};
    std::string name;
};

// The map of the user interface, which is there from the beginning, and the layers in it.
class Maps final {
public:
    Maps(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), layers(pluginContext, callRecorder, "map layer") {}
    Maps(const Maps&) = delete;
    Maps& operator=(const Maps&) = delete;

    static bool Exists(const char* map);
    // Null when the map does not exist.
    XPLMMapLayerID Create(const XPLMCreateMapLayer_t& parameters);
    // Tells the layer's plugin first. False when there is no such layer.
    bool Destroy(XPLMMapLayerID handle);
    // Null, and the refusal recorded, when there is no such layer.
    const MapLayer* Resolve(XPLMMapLayerID handle) { return layers.Resolve(handle); }
    std::size_t DropOf(XPLMPluginID plugin) { return layers.DropOf(plugin); }

private:
    PluginContext& context;
    OwnedObjects<MapLayer> layers;
};

} // namespace headless
