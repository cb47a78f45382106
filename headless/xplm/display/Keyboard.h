#pragma once

#include <string>

#include "headless/xplm/CallbackList.h"
#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/display/Windows.h"

namespace headless {

struct HotKey {
    char virtualKey = 0;
    XPLMKeyFlags flags = 0;
    std::string description;
    XPLMHotKey_f callback = nullptr;
    void* refcon = nullptr;
};

struct KeySniffer {
    XPLMKeySniffer_f callback;
    bool beforeWindows;
    void* refcon;
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;

    bool operator==(const KeySniffer&) const = default;
};

// Passes on a key in this order: sniffers before the windows, the window that has the keyboard,
// sniffers after the windows, hot keys. All but hot keys may swallow it.
class Keyboard final {
public:
    Keyboard(Windows& allWindows, PluginContext& pluginContext, CallRecorder& callRecorder)
        : windows(allWindows),
          context(pluginContext),
          sniffers(pluginContext, callRecorder, "key sniffer"),
          hotKeys(pluginContext, callRecorder, "hot key") {}
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    // Host side: a key goes down or up, depending on the flags.
    void Press(char key, XPLMKeyFlags flags, char virtualKey);
    std::size_t DropOf(XPLMPluginID plugin);

    // Plugin side.
    CallbackList<KeySniffer>& Sniffers() { return sniffers; }
    OwnedObjects<HotKey>& HotKeys() { return hotKeys; }

private:
    // False if one of them swallows the key.
    bool passSniffers(bool beforeWindows, char key, XPLMKeyFlags flags, char virtualKey);
    void runHotKeys(XPLMKeyFlags flags, char virtualKey);

    Windows& windows;
    PluginContext& context;
    CallbackList<KeySniffer> sniffers;
    OwnedObjects<HotKey> hotKeys;
};

} // namespace headless
