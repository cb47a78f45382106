#pragma once

#include <functional>
#include <string>

#include "XPLMPlugin.h"
#include "headless/host/ImportedFunction.h"
#include "headless/host/PluginError.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// What the simulator calls a plugin by.
struct PluginEntryPoints {
    int (*start)(char*, char*, char*) = nullptr;
    void (*stop)() = nullptr;
    int (*enable)() = nullptr;
    void (*disable)() = nullptr;
    void (*receiveMessage)(XPLMPluginID, int, void*) = nullptr;
};

// Loads one plugin and takes it through its life, as the simulator does.
//
// While a plugin is not enabled the simulator does not call it.
//
// Load on construction, then Start, Enable, messages and flight loops, Disable, Stop, Unload; a
// stopped plugin may be started again. What the plugin left registered is dropped at Stop. The
// destructor takes the steps that are missing. The simulator outlives the host.
class PluginHost final {
public:
    // Throws PluginError when the file needs names that nobody has, cannot be loaded or lacks an
    // entry point. `strict`: also when it uses functions that only answer 0.
    PluginHost(Simulator& hostingSimulator, const std::string& path, bool strict = false);
    // A plugin that is in the process already and stays there; the name stands for its file.
    PluginHost(Simulator& hostingSimulator, std::string name, const PluginEntryPoints& linked);
    ~PluginHost();
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    // Throw PluginError when the plugin refuses or it is not the time for the step.
    void Start();
    void Enable();
    // Ignored when it is not the time for the step.
    void Disable();
    void Stop();

    // From the simulator to the plugin; dropped unless it is enabled.
    void SendMessage(int message, void* parameter);

    // Disables and stops if needed, then unloads. Returns false when the library stays mapped in
    // the process all the same.
    bool Unload();

    // While it is loaded, what it calls by the name of a function of the SDK is another one.
    void Redirect(const std::string& function, const void* target) {
        redirectImport(library, function, target);
    }

    // XPLM_NO_PLUGIN_ID before the first start and once it is stopped.
    XPLMPluginID Id() const { return id; }
    bool IsStarted() const { return started; }
    bool IsEnabled() const { return enabled; }

    // As the plugin gave them at its last start.
    const PluginTexts& Texts() const { return texts; }

private:
    // Gives the plugin an id, and takes it and all that was registered under it.
    void enroll();
    void dismiss();
    // Stops it and drops what it registered; it keeps its id.
    void leave();
    bool callStart();
    void receive(XPLMPluginID from, int message, void* parameter) const noexcept;
    // The steps themselves, which plugins may ask for as well.
    bool enablePlugin();
    void disablePlugin();
    void requireNames(bool strict) const;
    void load();
    // A plugin may use the SDK from its start to its stop; calls outside of that are told.
    void withCallsRefused(const char* callback, const std::function<void()>& action);
    void resolveEntryPoints();
    void requireLoaded() const;

    Simulator& simulator;
    std::string file;
    // Null for a plugin that was linked, and after unloading.
    void* library = nullptr;
    PluginEntryPoints entryPoints;
    bool started = false;
    bool enabled = false;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    PluginTexts texts;
};

} // namespace headless
