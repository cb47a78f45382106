#include "headless/xplm/display/Avionics.h"

namespace headless {

XPLMAvionicsID Avionics::HandleOf(XPLMDeviceID device) {
    for (AvionicsDevice* known : devices.All()) {
        if (!known->own && known->device == device) {
            return known;
        }
    }
    AvionicsDevice added;
    added.device = device;
    return devices.Add(added);
}

void Avionics::Remove(XPLMAvionicsID handle) {
    if (devices.Remove(handle) && handle == focused) {
        focused = nullptr;
    }
}

std::size_t Avionics::DropOf(XPLMPluginID plugin) {
    const std::size_t dropped = devices.DropOf(plugin);
    if (devices.Find(focused) == nullptr) {
        focused = nullptr;
    }
    return dropped;
}

} // namespace headless
