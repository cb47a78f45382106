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

void Avionics::DropOf(XPLMPluginID plugin) {
    devices.DropOf(plugin);
    if (devices.Find(focused) == nullptr) {
        focused = nullptr;
    }
}

} // namespace headless
