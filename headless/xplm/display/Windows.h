#pragma once

#include <vector>

#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/display/Window.h"

namespace headless {

// All windows, the order in which they lie, and which of them has the keyboard.
//
// Nothing is drawn: a window remembers what it is told, and gets keys and clicks when the host
// gives them.
class Windows final {
public:
    Windows(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), windows(pluginContext, callRecorder, "window") {}
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    XPLMWindowID Create(const XPLMCreateWindow_t& parameters);
    void Destroy(XPLMWindowID handle);
    // Null, and the refusal recorded, when there is no such window.
    Window* Resolve(XPLMWindowID handle) { return windows.Resolve(handle); }

    void SetPositioningMode(XPLMWindowID handle, XPLMWindowPositioningMode mode);
    void BringToFront(XPLMWindowID handle);
    bool IsInFront(XPLMWindowID handle) const;
    // Null takes the keyboard away from all windows. Who loses it is told.
    void TakeFocus(XPLMWindowID handle);
    XPLMWindowID Focused() const { return focused; }

    // Host side: to the window with the keyboard. False when there is none.
    bool PressKey(char key, XPLMKeyFlags flags, char virtualKey);
    // To the topmost visible window at the place. False when no window takes it.
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
