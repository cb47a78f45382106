#include "headless/xplm/display/Keyboard.h"

#include <algorithm>

namespace headless {

void Keyboard::Press(char key, XPLMKeyFlags flags, char virtualKey) {
    if (passSniffers(true, key, flags, virtualKey) && !windows.PressKey(key, flags, virtualKey) &&
        passSniffers(false, key, flags, virtualKey)) {
        runHotKeys(flags, virtualKey);
    }
}

std::size_t Keyboard::DropOf(XPLMPluginID plugin) {
    return hotKeys.DropOf(plugin) +
           std::erase_if(sniffers, [&](const Sniffer& sniffer) { return sniffer.owner == plugin; });
}

bool Keyboard::AddSniffer(XPLMKeySniffer_f callback, bool beforeWindows, void* refcon) {
    if (callback == nullptr) {
        recorder.Refuse(Refusal::NullHandle, "callback");
        return false;
    }
    sniffers.push_back({callback, beforeWindows, refcon, context.Plugin()});
    return true;
}

bool Keyboard::RemoveSniffer(XPLMKeySniffer_f callback, bool beforeWindows, void* refcon) {
    const Sniffer wanted{callback, beforeWindows, refcon, context.Plugin()};
    const auto found = std::find(sniffers.begin(), sniffers.end(), wanted);
    if (found == sniffers.end()) {
        recorder.Refuse(Refusal::NotRegistered, "key sniffer");
        return false;
    }
    sniffers.erase(found);
    return true;
}

bool Keyboard::passSniffers(bool beforeWindows, char key, XPLMKeyFlags flags, char virtualKey) {
    // Sniffers may come and go while they are called.
    for (const Sniffer& sniffer : std::vector<Sniffer>(sniffers)) {
        if (sniffer.beforeWindows == beforeWindows && context.IsActive(sniffer.owner)) {
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
