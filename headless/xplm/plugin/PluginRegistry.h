#pragma once

#include "XPLMPlugin.h"
#include "headless/xplm/CallRecorder.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace headless {

// A message from one plugin to another. Of a name sent to a dataref editor (kMessageAddDataref)
// the text is copied, since the sender's memory is gone when a test looks.
struct PluginMessage {
    XPLMPluginID plugin = XPLM_NO_PLUGIN_ID;
    int message = 0;
    const void* parameter = nullptr;
    std::string text;
};

// The plugins that the simulator knows by signature, and the messages sent to them.
//
// Tests add fakes of other plugins here; a loaded plugin is added with a receiver.
class PluginRegistry final {
public:
    // Asks the dataref editor to list the dataref whose name the parameter points to.
    static constexpr int kMessageAddDataref = 0x01000000;

    using Receiver = std::function<void(int message, void* parameter)>;

    explicit PluginRegistry(CallRecorder& callRecorder) : recorder(callRecorder) {}
    PluginRegistry(const PluginRegistry&) = delete;
    PluginRegistry& operator=(const PluginRegistry&) = delete;

    XPLMPluginID AddPlugin(const std::string& signature, Receiver receiver = {});
    void RemovePlugin(XPLMPluginID plugin);

    // XPLM_NO_PLUGIN_ID when nobody has the signature.
    XPLMPluginID FindBySignature(const char* signature);
    // Ignored for a plugin that does not exist.
    void SendMessage(XPLMPluginID plugin, int message, void* parameter);

    const std::vector<PluginMessage>& Messages() const { return messages; }

private:
    struct Plugin {
        std::string signature;
        Receiver receiver;
    };

    CallRecorder& recorder;
    std::map<XPLMPluginID, Plugin> plugins;
    XPLMPluginID nextId = XPLM_PLUGIN_XPLANE + 1;
    std::vector<PluginMessage> messages;
};

} // namespace headless
