#pragma once

#include "XPLMCamera.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The camera, and the plugin that moves it. Nothing is drawn.
class Camera final {
public:
    explicit Camera(PluginContext& pluginContext) : context(pluginContext) {}
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    const XPLMCameraPosition_t& Position() const { return position; }
    // 0 if no plugin controls the camera.
    XPLMCameraControlDuration Duration() const { return duration; }

    // Calls the previous controller's callback, to report that it lost the camera.
    void Control(XPLMCameraControlDuration howLong, XPLMCameraControl_f callback, void* refcon);
    void Release();

    // Once per frame: asks the controlling plugin where the camera is.
    void Move();
    std::size_t DropOf(XPLMPluginID plugin);

private:
    PluginContext& context;
    XPLMCameraPosition_t position{0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F};
    XPLMCameraControlDuration duration = 0;
    XPLMCameraControl_f control = nullptr;
    void* controlRefcon = nullptr;
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;
};

} // namespace headless
