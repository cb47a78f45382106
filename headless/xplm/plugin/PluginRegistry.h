#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>

#include "XPLMPlugin.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// A message from one plugin to another. For a name sent to a dataref editor (kMessageAddDataref)
// the text is copied, because the sender's memory is gone when a test looks.
struct PluginMessage {
    XPLMPluginID from = XPLM_PLUGIN_XPLANE;
    XPLMPluginID plugin = XPLM_NO_PLUGIN_ID;
    int message = 0;
    const void* parameter = nullptr;
    std::string text;
};

// What a plugin says about itself, and the file that it came from.
struct PluginTexts {
    std::string name;
    std::string signature;
    std::string description;
    std::string path;
};

// How to call a loaded plugin; empty functions do nothing.
struct PluginHooks {
    std::function<void(XPLMPluginID from, int message, void* parameter)> receive{};
    // False if the plugin refuses.
    std::function<bool()> enable{};
    std::function<void()> disable{};
};

// The plugins that the simulator knows. Enables and disables them, and delivers messages to them.
//
// Tests add fakes of other plugins, which are enabled at once. The host adds the plugins that it
// loads, which are enabled when the host says so. Ids are never reused.
class PluginRegistry final {
public:
    // Asks the dataref editor to list the dataref whose name the parameter points to.
    static constexpr int kMessageAddDataref = 0x01000000;
    static constexpr std::size_t kMaxMessages = 4096;

    PluginRegistry(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), recorder(callRecorder) {}
    PluginRegistry(const PluginRegistry&) = delete;
    PluginRegistry& operator=(const PluginRegistry&) = delete;

    // Host side.
    XPLMPluginID AddPlugin(const std::string& signature, PluginHooks hooks = {});
    XPLMPluginID AddLoaded(const std::string& path, PluginHooks hooks);
    void RemovePlugin(XPLMPluginID plugin);
    // What a plugin said about itself at its start.
    void Describe(XPLMPluginID plugin, const PluginTexts& texts);
    // From now on the simulator calls the plugin, or does not.
    void MarkEnabled(XPLMPluginID plugin, bool enabled);
    // Null for a plugin that does not exist.
    const PluginTexts* TextsOf(XPLMPluginID plugin) const;
    // Sends the simulator's own message to one plugin or to all. Disabled ones receive nothing.
    void SendFromSimulator(XPLMPluginID plugin, int message, void* parameter);
    void Broadcast(int message, void* parameter);
    // Whether a reload of all plugins was requested since the last call.
    bool TakeReloadRequest();
    // The last kMaxMessages that plugins sent.
    const std::deque<PluginMessage>& Messages() const { return messages; }

    // Plugin side. XPLM_NO_PLUGIN_ID if no plugin has the signature, path or index.
    XPLMPluginID FindBySignature(const char* signature);
    XPLMPluginID FindByPath(const char* path);
    int Count() const { return static_cast<int>(plugins.size()); }
    XPLMPluginID Nth(int index) const;
    bool IsEnabled(XPLMPluginID plugin) const;
    bool Enable(XPLMPluginID plugin);
    void Disable(XPLMPluginID plugin);
    void RequestReload() { reloadRequested = true; }
    // The sender is the running plugin. XPLM_NO_PLUGIN_ID means all plugins; disabled and unknown
    // ones receive nothing.
    void SendMessage(XPLMPluginID plugin, int message, void* parameter);

private:
    struct Plugin {
        PluginTexts texts;
        PluginHooks hooks;
        bool enabled = false;
    };

    XPLMPluginID add(Plugin plugin);
    void deliverToAll(XPLMPluginID from, int message, void* parameter);
    void deliver(XPLMPluginID from, XPLMPluginID plugin, int message, void* parameter);
    void remember(XPLMPluginID plugin, int message, void* parameter);

    PluginContext& context;
    CallRecorder& recorder;
    std::map<XPLMPluginID, Plugin> plugins;
    XPLMPluginID nextId = XPLM_PLUGIN_XPLANE + 1;
    std::deque<PluginMessage> messages;
    bool reloadRequested = false;
};

} // namespace headless
