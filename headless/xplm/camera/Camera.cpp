#include "headless/xplm/camera/Camera.h"

namespace headless {

void Camera::Control(XPLMCameraControlDuration howLong, XPLMCameraControl_f callback,
                     void* refcon) {
    const auto former = control;
    void* const formerRefcon = controlRefcon;
    const XPLMPluginID formerOwner = owner;
    duration = callback == nullptr ? 0 : howLong;
    control = callback;
    controlRefcon = refcon;
    owner = context.Plugin();
    if (former != nullptr && context.IsActive(formerOwner)) {
        const PluginContext::Call call(context, formerOwner, "camera control");
        call.Into(former, nullptr, 1, formerRefcon);
    }
}

void Camera::Release() {
    duration = 0;
    control = nullptr;
}

void Camera::Move() {
    if (control == nullptr || !context.IsActive(owner)) {
        return;
    }
    const PluginContext::Call call(context, owner, "camera control");
    XPLMCameraPosition_t moved = position;
    if (call.Into(control, &moved, 0, controlRefcon) == 0) {
        Release();
    } else {
        position = moved;
    }
}

std::size_t Camera::DropOf(XPLMPluginID plugin) {
    const bool controls = control != nullptr && owner == plugin;
    if (controls) {
        Release();
    }
    return controls ? 1 : 0;
}

} // namespace headless
