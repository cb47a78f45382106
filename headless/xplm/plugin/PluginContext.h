#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "XPLMDefs.h"
#include "headless/xplm/IPluginObserver.h"

namespace headless {

// Which plugin's code runs, and which plugins are active.
//
// Make a Call for as long as a plugin is called, so that what it registers is recorded as its own.
// Without a Call the simulator itself runs (XPLM_PLUGIN_XPLANE), as in a test that plays the
// plugin. A plugin is active unless it is set inactive; the simulator does not call an inactive
// one.
class PluginContext final {
public:
    class Call final {
    public:
        // The pointer `callbackName` is kept.
        Call(PluginContext& pluginContext, XPLMPluginID called, const char* callbackName)
            : context(pluginContext), plugin(context.plugin), callback(context.callback) {
            ++context.calls;
            context.plugin = called;
            context.callback = callbackName;
            context.notifyObserver();
        }
        ~Call() {
            context.plugin = plugin;
            context.callback = callback;
            context.notifyObserver();
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        // Calls the plugin. An exception that leaves it ends the process while the plugin is still
        // known.
        template <class Result, class... Parameters, class... Arguments>
        Result Into(Result (*function)(Parameters...), Arguments... arguments) const noexcept {
            return function(arguments...);
        }

    private:
        PluginContext& context;
        // What ran before.
        XPLMPluginID plugin;
        const char* callback;
    };

    XPLMPluginID Plugin() const { return plugin; }
    // For display: "flight loop", "XPluginStart"; "none" outside of calls.
    const char* Callback() const { return callback; }

    // Calls are counted from 1.
    std::uint64_t CallNumber() const { return calls; }

    // A running plugin may reach itself, even while it stops.
    bool IsActive(XPLMPluginID asked) const {
        if (asked == plugin) {
            return true;
        }
        const auto index = static_cast<std::size_t>(asked < 0 ? 0 : asked);
        return index >= inactive.size() || !inactive[index];
    }
    void SetActive(XPLMPluginID changed, bool active) {
        const auto index = static_cast<std::size_t>(changed);
        if (index >= inactive.size()) {
            inactive.resize(index + 1, false);
        }
        inactive[index] = !active;
    }

    // Notified whenever the running plugin changes; null for none. Borrowed.
    void Observe(IPluginObserver* pluginObserver) { observer = pluginObserver; }

private:
    void notifyObserver() const {
        if (observer != nullptr) {
            observer->Switched(plugin);
        }
    }

    XPLMPluginID plugin = XPLM_PLUGIN_XPLANE;
    const char* callback = "none";
    std::uint64_t calls = 0;
    IPluginObserver* observer = nullptr;
    // By plugin id; ids past the end are active.
    std::vector<bool> inactive;
};

} // namespace headless
