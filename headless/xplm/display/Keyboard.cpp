#include "headless/xplm/display/Keyboard.h"

namespace headless {

void Keyboard::Press(char key, XPLMKeyFlags flags, char virtualKey) {
    if (passSniffers(true, key, flags, virtualKey) && !windows.PressKey(key, flags, virtualKey) &&
        passSniffers(false, key, flags, virtualKey)) {
        runHotKeys(flags, virtualKey);
    }
}

std::size_t Keyboard::DropOf(XPLMPluginID plugin) {
    return hotKeys.DropOf(plugin) + sniffers.DropOf(plugin);
}

bool Keyboard::passSniffers(bool beforeWindows, char key, XPLMKeyFlags flags, char virtualKey) {
    for (const KeySniffer& sniffer : sniffers.All()) {
        if (sniffer.beforeWindows == beforeWindows && sniffers.Has(sniffer) &&
            context.IsActive(sniffer.owner)) {
            const PluginContext::Call call(context, sniffer.owner, "key sniffer");
            if (call.Into(sniffer.callback, key, flags, virtualKey, sniffer.refcon) == 0) {
                return false;
            }
        }
    }
    return true;
}

void Keyboard::runHotKeys(XPLMKeyFlags flags, char virtualKey) {
    constexpr XPLMKeyFlags kModifiers =
        xplm_ShiftFlag | xplm_OptionAltFlag | xplm_ControlFlag | xplm_DownFlag | xplm_UpFlag;
    for (const HotKey* key : hotKeys.All()) {
        if (hotKeys.Find(key) == nullptr || !hotKeys.IsActive(*key) || key->callback == nullptr) {
            continue;
        }
        // A hot key without a direction reacts to key down.
        const XPLMKeyFlags wanted = (key->flags & (xplm_DownFlag | xplm_UpFlag)) != 0
                                        ? key->flags
                                        : key->flags | xplm_DownFlag;
        if (key->virtualKey == virtualKey && wanted == (flags & kModifiers)) {
            const PluginContext::Call call(context, hotKeys.OwnerOf(*key), "hot key");
            call.Into(key->callback, key->refcon);
        }
    }
}

} // namespace headless
