#pragma once

#include <vector>

#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/display/Window.h"

namespace headless {

// All windows, their stacking order, and which of them has the keyboard.
//
// Nothing is drawn: a window keeps what it is given, and gets keys and clicks from the host.
class Windows final {
public:
    Windows(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), windows(pluginContext, callRecorder, "window") {}
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    XPLMWindowID Create(const XPLMCreateWindow_t& parameters);
    void Destroy(XPLMWindowID handle);
    // Null if there is no such window; records the refusal.
    Window* Resolve(XPLMWindowID handle) { return windows.Resolve(handle); }

    void SetPositioningMode(XPLMWindowID handle, XPLMWindowPositioningMode mode);
    void BringToFront(XPLMWindowID handle);
    bool IsInFront(XPLMWindowID handle) const;
    // Null takes the keyboard away from all windows. Notifies the window that loses it.
    void TakeFocus(XPLMWindowID handle);
    XPLMWindowID Focused() const { return focused; }

    // Host side: sends the key to the window with the keyboard. False if no window has it.
    bool PressKey(char key, XPLMKeyFlags flags, char virtualKey);
    // Sends the click to the topmost visible window there. False if no window takes it.
    bool Click(int x, int y, XPLMMouseStatus status);
    std::size_t Count() const { return windows.Size(); }
    std::size_t DropOf(XPLMPluginID plugin);

private:
    void sendKey(const Window& window, char key, XPLMKeyFlags flags, char virtualKey,
                 bool losingFocus);
    void forgetMissing();

    PluginContext& context;
    OwnedObjects<Window> windows;
    // From back to front.
    std::vector<Window*> order;
    Window* focused = nullptr;
};

} // namespace headless
