#pragma once

#include <string>

#include "XPLMDisplay.h"
#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/display/Screen.h"

namespace headless {

// A cockpit device: one of the simulator's that a plugin customises, or one that a plugin made.
struct AvionicsDevice {
    XPLMDeviceID device = -1;
    std::string id;
    std::string name;
    Rectangle geometry{0, 480, 640, 0};
    float brightness = 1.0F;
    bool popupVisible = false;
    bool poppedOut = false;
    // Made by XPLMCreateAvionicsEx().
    bool own = false;
};

// The devices of all plugins. They are never drawn or touched; the bus has full voltage.
class Avionics final {
public:
    Avionics(PluginContext& pluginContext, CallRecorder& callRecorder)
        : devices(pluginContext, callRecorder, "avionics device") {}
    Avionics(const Avionics&) = delete;
    Avionics& operator=(const Avionics&) = delete;

    XPLMAvionicsID Add(const AvionicsDevice& device) { return devices.Add(device); }
    // One of the simulator's devices; the same handle each time.
    XPLMAvionicsID HandleOf(XPLMDeviceID device);
    // Null if there is no such device; records the refusal.
    AvionicsDevice* Resolve(XPLMAvionicsID handle) { return devices.Resolve(handle); }
    void Remove(XPLMAvionicsID handle);
    void TakeFocus(XPLMAvionicsID handle) { focused = Resolve(handle); }
    bool HasFocus(XPLMAvionicsID handle) const { return handle != nullptr && handle == focused; }
    std::size_t DropOf(XPLMPluginID plugin);

private:
    OwnedObjects<AvionicsDevice> devices;
    const AvionicsDevice* focused = nullptr;
};

} // namespace headless
