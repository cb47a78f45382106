#include "headless/xplm/map/Maps.h"

namespace headless {

bool Maps::Exists(const char* map) {
    return map != nullptr && std::string(map) == XPLM_MAP_USER_INTERFACE;
}

XPLMMapLayerID Maps::Create(const XPLMCreateMapLayer_t& parameters) {
    if (!Exists(parameters.mapToCreateLayerIn)) {
        return nullptr;
    }
    return layers.Add({parameters, parameters.layerName == nullptr ? "" : parameters.layerName});
}

bool Maps::Destroy(XPLMMapLayerID handle) {
    const MapLayer* const layer = layers.Resolve(handle);
    if (layer == nullptr) {
        return false;
    }
    const auto callback = layer->parameters.willBeDeletedCallback;
    if (callback != nullptr && layers.IsActive(*layer)) {
        const PluginContext::Call call(context, layers.OwnerOf(*layer), "map layer deletion");
        call.Into(callback, handle, layer->parameters.refcon);
    }
    return layers.Remove(handle);
}

} // namespace headless
