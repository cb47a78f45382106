#include "XPLMPlugin.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/plugin/Features.h"

using headless::here;

XPLMPluginID XPLMGetMyID(void) {
    return here().Context().Plugin();
}

void XPLMGetPluginInfo(XPLMPluginID inPlugin, char* outName, char* outFilePath, char* outSignature,
                       char* outDescription) {
    constexpr std::size_t kSize = 256;
    static const headless::PluginTexts kSimulator{"X-Plane", "xplane", "The simulator", {}};
    static const headless::PluginTexts kNobody;
    const headless::PluginTexts* texts = here().Plugins().TextsOf(inPlugin);
    if (texts == nullptr) {
        texts = inPlugin == XPLM_PLUGIN_XPLANE ? &kSimulator : &kNobody;
    }
    headless::giveText(outName, kSize, texts->name);
    headless::giveText(outFilePath, kSize, texts->path);
    headless::giveText(outSignature, kSize, texts->signature);
    headless::giveText(outDescription, kSize, texts->description);
}

int XPLMCountPlugins(void) {
    return here().Plugins().Count();
}

XPLMPluginID XPLMGetNthPlugin(int inIndex) {
    return here().Plugins().Nth(inIndex);
}

XPLMPluginID XPLMFindPluginByPath(const char* inPath) {
    return here().Plugins().FindByPath(inPath);
}

XPLMPluginID XPLMFindPluginBySignature(const char* inSignature) {
    return here().Plugins().FindBySignature(inSignature);
}

int XPLMIsPluginEnabled(XPLMPluginID inPluginID) {
    return here().Plugins().IsEnabled(inPluginID) ? 1 : 0;
}

int XPLMEnablePlugin(XPLMPluginID inPluginID) {
    return here().Plugins().Enable(inPluginID) ? 1 : 0;
}

void XPLMDisablePlugin(XPLMPluginID inPluginID) {
    here().Plugins().Disable(inPluginID);
}

void XPLMReloadPlugins(void) {
    here().Plugins().RequestReload();
}

void XPLMSendMessageToPlugin(XPLMPluginID inPlugin, int inMessage, void* inParam) {
    here().Plugins().SendMessage(inPlugin, inMessage, inParam);
}

int XPLMHasFeature(const char* inFeature) {
    return here().Features().Has(inFeature) ? 1 : 0;
}

int XPLMIsFeatureEnabled(const char* inFeature) {
    return here().Features().IsEnabled(inFeature) ? 1 : 0;
}

void XPLMEnableFeature(const char* inFeature, int inEnable) {
    here().Features().Enable(inFeature, inEnable != 0);
}

void XPLMEnumerateFeatures(XPLMFeatureEnumerator_f inEnumerator, void* inRef) {
    here();
    if (headless::isGiven(inEnumerator, "enumerator")) {
        headless::Features::Enumerate(inEnumerator, inRef);
    }
}
