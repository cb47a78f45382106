#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "headless/host/PluginFinder.h"
#include "headless/host/PluginHost.h"

namespace headless {

// The plugins of a session, in the order of loading. All are started before the first one is
// enabled, and leave in the reverse order. The simulator outlives them.
//
// People name a plugin by its folder or file, its path or its signature; an empty name is the only
// one. Throws PluginError for a name that nobody has or that several have.
class LoadedPlugins final {
public:
    // Throws PluginError for a plugin that is there twice.
    LoadedPlugins(Simulator& hostingSimulator, std::vector<PluginPlace> pluginPlaces, bool strict);
    ~LoadedPlugins();
    LoadedPlugins(const LoadedPlugins&) = delete;
    LoadedPlugins& operator=(const LoadedPlugins&) = delete;

    // Loads, starts and enables all. Throws PluginError when one of them cannot be.
    void Start();
    // Unloads one and does that again. Throws PluginError also when its library stays.
    PluginHost& Reload(const std::string& name);
    // Disables, stops and unloads all. Returns the files of those that stay in the process.
    std::vector<std::string> Unload();

    // Throws PluginError also when it is not loaded.
    PluginHost& Find(const std::string& name) const;
    // From now on a function of the SDK is another one for all of them, also for those that come.
    void Redirect(const std::string& function, const void* target);
    // A line for people: "1 one enabled; 2 other disabled; third stopped".
    std::string Describe() const;

private:
    struct Entry {
        PluginPlace place;
        // Null while it is not loaded.
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
