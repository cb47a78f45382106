#include "headless/xplm/display/Windows.h"

#include <algorithm>

namespace headless {

XPLMWindowID Windows::Create(const XPLMCreateWindow_t& parameters) {
    Window window;
    window.parameters = parameters;
    window.geometry = {parameters.left, parameters.top, parameters.right, parameters.bottom};
    window.vrWidth = window.geometry.Width();
    window.vrHeight = window.geometry.Height();
    window.visible = parameters.visible != 0;
    Window* const added = windows.Add(window);
    order.push_back(added);
    return added;
}

void Windows::Destroy(XPLMWindowID handle) {
    if (windows.Remove(handle)) {
        forgetMissing();
    }
}

void Windows::SetPositioningMode(XPLMWindowID handle, XPLMWindowPositioningMode mode) {
    Window* const window = Resolve(handle);
    if (window == nullptr) {
        return;
    }
    // There is no headset to move to.
    window->mode = mode == xplm_WindowVR ? xplm_WindowPositionFree : mode;
    if (mode == xplm_WindowFullScreenOnMonitor || mode == xplm_WindowFullScreenOnAllMonitors) {
        window->geometry = kScreen;
    } else if (mode == xplm_WindowCenterOnMonitor) {
        const int width = window->geometry.Width();
        const int height = window->geometry.Height();
        const int left = (kScreen.Width() - width) / 2;
        const int bottom = (kScreen.Height() - height) / 2;
        window->geometry = {left, bottom + height, left + width, bottom};
    }
}

void Windows::BringToFront(XPLMWindowID handle) {
    if (Window* window = Resolve(handle)) {
        std::erase(order, window);
        order.push_back(window);
    }
}

bool Windows::IsInFront(XPLMWindowID handle) const {
    const auto front = std::find_if(order.rbegin(), order.rend(),
                                    [](const Window* window) { return window->visible; });
    return front != order.rend() && *front == handle;
}

void Windows::TakeFocus(XPLMWindowID handle) {
    Window* const next = handle == nullptr ? nullptr : Resolve(handle);
    if (next == focused) {
        return;
    }
    const Window* const former = focused;
    focused = next;
    if (former != nullptr) {
        sendKey(*former, 0, 0, 0, true);
    }
}

bool Windows::PressKey(char key, XPLMKeyFlags flags, char virtualKey) {
    if (focused == nullptr) {
        return false;
    }
    sendKey(*focused, key, flags, virtualKey, false);
    return true;
}

bool Windows::Click(int x, int y, XPLMMouseStatus status) {
    const std::vector<Window*> shown(order.rbegin(), order.rend());
    for (Window* window : shown) {
        if (windows.Find(window) == nullptr || !window->visible ||
            !window->geometry.Contains(x, y) || !windows.IsActive(*window)) {
            continue;
        }
        const auto handler = window->parameters.handleMouseClickFunc;
        const PluginContext::Call call(context, windows.OwnerOf(*window), "window mouse handler");
        if (handler != nullptr &&
            call.Into(handler, window, x, y, status, window->parameters.refcon) != 0) {
            return true;
        }
    }
    return false;
}

std::size_t Windows::DropOf(XPLMPluginID plugin) {
    const std::size_t dropped = windows.DropOf(plugin);
    forgetMissing();
    return dropped;
}

void Windows::sendKey(const Window& window, char key, XPLMKeyFlags flags, char virtualKey,
                      bool losingFocus) {
    const auto handler = window.parameters.handleKeyFunc;
    if (handler != nullptr && windows.IsActive(window)) {
        const PluginContext::Call call(context, windows.OwnerOf(window), "window key handler");
        call.Into(handler, const_cast<Window*>(&window), key, flags, virtualKey,
                  window.parameters.refcon, losingFocus ? 1 : 0);
    }
}

void Windows::forgetMissing() {
    std::erase_if(order, [&](const Window* window) { return windows.Find(window) == nullptr; });
    if (focused != nullptr && windows.Find(focused) == nullptr) {
        focused = nullptr;
    }
}

} // namespace headless
