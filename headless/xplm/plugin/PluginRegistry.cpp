#include "headless/xplm/plugin/PluginRegistry.h"

#include <utility>

namespace headless {

XPLMPluginID PluginRegistry::AddPlugin(const std::string& signature, Receiver receiver) {
    const XPLMPluginID id = nextId++;
    plugins[id] = {signature, std::move(receiver)};
    return id;
}

void PluginRegistry::RemovePlugin(XPLMPluginID plugin) {
    plugins.erase(plugin);
}

XPLMPluginID PluginRegistry::FindBySignature(const char* signature) {
    if (signature == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMFindPluginBySignature", "signature");
        return XPLM_NO_PLUGIN_ID;
    }
    recorder.Record("XPLMFindPluginBySignature", nullptr, signature);
    for (const auto& [id, plugin] : plugins) {
        if (plugin.signature == signature) {
            return id;
        }
    }
    return XPLM_NO_PLUGIN_ID;
}

void PluginRegistry::SendMessage(XPLMPluginID plugin, int message, void* parameter) {
    const auto found = plugins.find(plugin);
    if (found == plugins.end()) {
        recorder.Refuse(Refusal::UnknownPlugin, "XPLMSendMessageToPlugin", "plugin id");
        return;
    }
    PluginMessage sent{plugin, message, parameter, {}};
    if (message == kMessageAddDataref && parameter != nullptr) {
        sent.text = static_cast<const char*>(parameter);
    }
    recorder.Record("XPLMSendMessageToPlugin", nullptr, plugin, message, sent.text);
    messages.push_back(std::move(sent));
    // The receiver may add or remove plugins, so a copy of it is called.
    if (const Receiver receiver = found->second.receiver) {
        receiver(message, parameter);
    }
}

} // namespace headless
