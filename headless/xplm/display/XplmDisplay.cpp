// The callbacks and keys of XPLMDisplay.h.

#include "XPLMDisplay.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/display/DrawCallbacks.h"
#include "headless/xplm/display/Keyboard.h"

using headless::give;
using headless::here;
using headless::HotKey;
using headless::OwnedObjects;

int XPLMRegisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase,
                             int inWantsBefore, void* inRefcon) {
    return here().Drawing().Add({inCallback, inPhase, inWantsBefore != 0, inRefcon}) ? 1 : 0;
}

int XPLMUnregisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase,
                               int inWantsBefore, void* inRefcon) {
    return here().Drawing().Remove({inCallback, inPhase, inWantsBefore != 0, inRefcon}) ? 1 : 0;
}

int XPLMRegisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void* inRefcon) {
    return here().Keyboard().Sniffers().Add({inCallback, inBeforeWindows != 0, inRefcon}) ? 1 : 0;
}

int XPLMUnregisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void* inRefcon) {
    return here().Keyboard().Sniffers().Remove({inCallback, inBeforeWindows != 0, inRefcon}) ? 1
                                                                                             : 0;
}

XPLMHotKeyID XPLMRegisterHotKey(char inVirtualKey, XPLMKeyFlags inFlags, const char* inDescription,
                                XPLMHotKey_f inCallback, void* inRefcon) {
    return here().Keyboard().HotKeys().Add({inVirtualKey, inFlags,
                                            inDescription == nullptr ? "" : inDescription,
                                            inCallback, inRefcon});
}

void XPLMUnregisterHotKey(XPLMHotKeyID inHotKey) {
    here().Keyboard().HotKeys().Remove(inHotKey);
}

int XPLMCountHotKeys(void) {
    return static_cast<int>(here().Keyboard().HotKeys().Size());
}

XPLMHotKeyID XPLMGetNthHotKey(int inIndex) {
    const OwnedObjects<HotKey>& hotKeys = here().Keyboard().HotKeys();
    const bool exists = inIndex >= 0 && static_cast<std::size_t>(inIndex) < hotKeys.Size();
    return exists ? hotKeys.All()[static_cast<std::size_t>(inIndex)] : nullptr;
}

void XPLMGetHotKeyInfo(XPLMHotKeyID inHotKey, char* outVirtualKey, XPLMKeyFlags* outFlags,
                       char* outDescription, XPLMPluginID* outPlugin) {
    constexpr std::size_t kDescriptionSize = 512;
    OwnedObjects<HotKey>& hotKeys = here().Keyboard().HotKeys();
    const HotKey* const key = hotKeys.Resolve(inHotKey);
    const HotKey shown = key == nullptr ? HotKey{} : *key;
    give(outVirtualKey, shown.virtualKey);
    give(outFlags, shown.flags);
    headless::giveText(outDescription, kDescriptionSize, shown.description);
    give(outPlugin, key == nullptr ? XPLM_NO_PLUGIN_ID : hotKeys.OwnerOf(*key));
}

void XPLMSetHotKeyCombination(XPLMHotKeyID inHotKey, char inVirtualKey, XPLMKeyFlags inFlags) {
    if (HotKey* key = here().Keyboard().HotKeys().Resolve(inHotKey)) {
        key->virtualKey = inVirtualKey;
        key->flags = inFlags;
    }
}
