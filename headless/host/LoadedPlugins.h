#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "headless/host/PluginFinder.h"
#include "headless/host/PluginHost.h"

namespace headless {

// The plugins of a session, in loading order. All are started before the first is enabled, and they
// are unloaded in reverse order. The simulator outlives them.
//
// A plugin's name is its folder or file, its path, or its signature; an empty name means the only
// plugin. Throws PluginError if no plugin, or more than one, has the name.
class LoadedPlugins final {
public:
    // Throws PluginError if a plugin is given twice.
    LoadedPlugins(Simulator& hostingSimulator, std::vector<PluginPlace> pluginPlaces, bool strict);
    ~LoadedPlugins();
    LoadedPlugins(const LoadedPlugins&) = delete;
    LoadedPlugins& operator=(const LoadedPlugins&) = delete;

    // Loads, starts and enables all. Throws PluginError if one of them fails.
    void Start();
    // Unloads a plugin, then loads, starts and enables it. Also throws PluginError if its library
    // stays in the process.
    PluginHost& Reload(const std::string& name);
    // Disables, stops and unloads all. Returns the files of those that stay in the process.
    std::vector<std::string> Unload();

    // Also throws PluginError if the plugin is not loaded.
    PluginHost& Find(const std::string& name) const;
    // Replaces a function of the SDK for all plugins, including those loaded later.
    void Redirect(const std::string& function, const void* target);
    // One line for people: "1 one enabled; 2 other disabled; third stopped".
    std::string Describe() const;

private:
    struct Entry {
        PluginPlace place;
        // Null while the plugin is not loaded.
        std::unique_ptr<PluginHost> host{};

        bool IsCalled(const std::string& name) const;
    };

    std::size_t indexOf(const std::string& name) const;
    void load(Entry& entry) const;

    Simulator& simulator;
    std::vector<Entry> entries;
    std::vector<std::pair<std::string, const void*>> redirected;
    bool isStrict;
};

} // namespace headless
