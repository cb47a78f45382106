#pragma once

#include <functional>
#include <string>

#include "XPLMPlugin.h"
#include "headless/host/ImportedFunction.h"
#include "headless/host/PluginError.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// The functions through which the simulator calls a plugin.
struct PluginEntryPoints {
    int (*start)(char*, char*, char*) = nullptr;
    void (*stop)() = nullptr;
    int (*enable)() = nullptr;
    void (*disable)() = nullptr;
    void (*receiveMessage)(XPLMPluginID, int, void*) = nullptr;
};

// Loads one plugin and takes it through its life cycle, as the simulator does.
//
// The simulator does not call a plugin that is not enabled.
//
// The order is: load on construction, Start, Enable, messages and flight loops, Disable, Stop,
// Unload. A stopped plugin may be started again. Stop drops what the plugin left registered. The
// destructor takes any missing steps. The simulator outlives the host.
class PluginHost final {
public:
    // Throws PluginError if the file needs names that cannot be found, cannot be loaded or lacks an
    // entry point; with `strict` also if it uses functions that only answer 0.
    PluginHost(Simulator& hostingSimulator, const std::string& path, bool strict = false);
    // For a plugin that is linked into the process and stays there; the name stands for its file.
    PluginHost(Simulator& hostingSimulator, std::string name, const PluginEntryPoints& linked);
    ~PluginHost();
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    // These throw PluginError if the plugin refuses or the step is out of order.
    void Start();
    void Enable();
    // These do nothing if the step is out of order.
    void Disable();
    void Stop();

    // From the simulator to the plugin; dropped unless it is enabled.
    void SendMessage(int message, void* parameter);
    // The messages that the aircraft, airport and scenery are loaded.
    void SendLoadedMessages();

    // Disables and stops if needed, then unloads. Returns false if the library nevertheless stays
    // mapped in the process.
    bool Unload();

    // Replaces a function of the SDK for this plugin while it is loaded. A linked plugin keeps its
    // own, since it has no imports apart from those of the whole program.
    void Redirect(const std::string& function, const void* target) {
        if (library != nullptr) {
            redirectImport(library, function, target);
        }
    }

    // XPLM_NO_PLUGIN_ID before the first start and after a stop.
    XPLMPluginID Id() const { return id; }
    bool IsStarted() const { return started; }
    bool IsEnabled() const { return enabled; }

    // As the plugin gave them at its last start.
    const PluginTexts& Texts() const { return texts; }

private:
    // enroll() gives the plugin an id; dismiss() removes the id and all that was registered under
    // it.
    void enroll();
    void dismiss();
    // Stops it and drops what it registered; it keeps its id.
    void leave();
    bool callStart();
    void receive(XPLMPluginID from, int message, void* parameter) const noexcept;
    // The steps themselves; plugins may ask for them too.
    bool enablePlugin();
    void requireNames(bool strict) const;
    void load();
    // A plugin may use the SDK from its start to its stop; this reports calls outside of that.
    void withCallsRefused(const char* callback, const std::function<void()>& action);
    void resolveEntryPoints();
    void requireLoaded() const;

    Simulator& simulator;
    std::string file;
    // Null for a linked plugin, and after unloading.
    void* library = nullptr;
    PluginEntryPoints entryPoints;
    bool started = false;
    bool enabled = false;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    PluginTexts texts;
};

} // namespace headless
