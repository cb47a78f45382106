#include "headless/xplm/plugin/PluginRegistry.h"

#include <iterator>
#include <utility>
#include <vector>

namespace headless {

XPLMPluginID PluginRegistry::AddPlugin(const std::string& signature, PluginHooks hooks) {
    const XPLMPluginID id = add({{signature, signature, {}, {}}, std::move(hooks), true});
    context.SetActive(id, true);
    return id;
}

XPLMPluginID PluginRegistry::AddLoaded(const std::string& path, PluginHooks hooks) {
    const XPLMPluginID id = add({{{}, {}, {}, path}, std::move(hooks), false});
    context.SetActive(id, false);
    return id;
}

void PluginRegistry::RemovePlugin(XPLMPluginID plugin) {
    plugins.erase(plugin);
    context.SetActive(plugin, false);
}

void PluginRegistry::Describe(XPLMPluginID plugin, const PluginTexts& texts) {
    plugins.at(plugin).texts = texts;
}

void PluginRegistry::MarkEnabled(XPLMPluginID plugin, bool enabled) {
    const auto found = plugins.find(plugin);
    if (found != plugins.end()) {
        found->second.enabled = enabled;
        context.SetActive(plugin, enabled);
    }
}

const PluginTexts* PluginRegistry::TextsOf(XPLMPluginID plugin) const {
    const auto found = plugins.find(plugin);
    return found == plugins.end() ? nullptr : &found->second.texts;
}

bool PluginRegistry::TakeReloadRequest() {
    return std::exchange(reloadRequested, false);
}

XPLMPluginID PluginRegistry::FindBySignature(const char* signature) {
    if (signature == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMFindPluginBySignature", "signature");
        return XPLM_NO_PLUGIN_ID;
    }
    recorder.Record("XPLMFindPluginBySignature", nullptr, signature);
    for (const auto& [id, plugin] : plugins) {
        if (plugin.texts.signature == signature) {
            return id;
        }
    }
    return XPLM_NO_PLUGIN_ID;
}

XPLMPluginID PluginRegistry::FindByPath(const char* path) {
    if (path == nullptr) {
        recorder.Refuse(Refusal::NullText, "XPLMFindPluginByPath", "path");
        return XPLM_NO_PLUGIN_ID;
    }
    for (const auto& [id, plugin] : plugins) {
        if (plugin.texts.path == path) {
            return id;
        }
    }
    return XPLM_NO_PLUGIN_ID;
}

XPLMPluginID PluginRegistry::Nth(int index) const {
    return index < 0 || index >= Count() ? XPLM_NO_PLUGIN_ID
                                         : std::next(plugins.begin(), index)->first;
}

bool PluginRegistry::IsEnabled(XPLMPluginID plugin) const {
    const auto found = plugins.find(plugin);
    return found != plugins.end() && found->second.enabled;
}

bool PluginRegistry::Enable(XPLMPluginID plugin) {
    const auto found = plugins.find(plugin);
    if (found == plugins.end()) {
        recorder.Refuse(Refusal::UnknownPlugin, "XPLMEnablePlugin", "plugin id");
        return false;
    }
    if (!found->second.enabled) {
        // The hook may remove the plugin.
        const auto enable = found->second.hooks.enable;
        MarkEnabled(plugin, !enable || enable());
    }
    return IsEnabled(plugin);
}

void PluginRegistry::Disable(XPLMPluginID plugin) {
    const auto found = plugins.find(plugin);
    if (found == plugins.end()) {
        recorder.Refuse(Refusal::UnknownPlugin, "XPLMDisablePlugin", "plugin id");
    } else if (found->second.enabled) {
        if (const auto disable = found->second.hooks.disable) {
            disable();
        }
        MarkEnabled(plugin, false);
    }
}

void PluginRegistry::SendMessage(XPLMPluginID plugin, int message, void* parameter) {
    const XPLMPluginID from = context.Plugin();
    if (plugin != XPLM_NO_PLUGIN_ID) {
        if (plugins.count(plugin) == 0) {
            recorder.Refuse(Refusal::UnknownPlugin, "XPLMSendMessageToPlugin", "plugin id");
            return;
        }
        remember(plugin, message, parameter);
        deliver(from, plugin, message, parameter);
        return;
    }
    remember(plugin, message, parameter);
    deliverToAll(from, message, parameter);
}

void PluginRegistry::SendFromSimulator(XPLMPluginID plugin, int message, void* parameter) {
    deliver(XPLM_PLUGIN_XPLANE, plugin, message, parameter);
}

void PluginRegistry::Broadcast(int message, void* parameter) {
    deliverToAll(XPLM_PLUGIN_XPLANE, message, parameter);
}

XPLMPluginID PluginRegistry::add(Plugin plugin) {
    const XPLMPluginID id = nextId++;
    plugins[id] = std::move(plugin);
    return id;
}

void PluginRegistry::deliverToAll(XPLMPluginID from, int message, void* parameter) {
    // Receivers may add and remove plugins.
    std::vector<XPLMPluginID> all;
    for (const auto& [id, known] : plugins) {
        all.push_back(id);
    }
    for (const XPLMPluginID id : all) {
        deliver(from, id, message, parameter);
    }
}

void PluginRegistry::deliver(XPLMPluginID from, XPLMPluginID plugin, int message, void* parameter) {
    const auto found = plugins.find(plugin);
    if (found == plugins.end() || !found->second.enabled) {
        return;
    }
    // The receiver may remove its plugin, so call a copy.
    if (const auto receive = found->second.hooks.receive) {
        const PluginContext::Call call(context, plugin, "XPluginReceiveMessage");
        receive(from, message, parameter);
    }
}

void PluginRegistry::remember(XPLMPluginID plugin, int message, void* parameter) {
    PluginMessage sent{context.Plugin(), plugin, message, parameter, {}};
    if (message == kMessageAddDataref && parameter != nullptr) {
        sent.text = static_cast<const char*>(parameter);
    }
    recorder.Record("XPLMSendMessageToPlugin", nullptr, plugin, message, sent.text);
    if (messages.size() == kMaxMessages) {
        messages.pop_front();
    }
    messages.push_back(std::move(sent));
}

} // namespace headless
