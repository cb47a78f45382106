#pragma once

#include <string>
#include <vector>

namespace headless {

// A plugin on disk.
struct PluginPlace {
    // The plugin's name: that of its folder, or of its file if it has no folder.
    std::string name;
    // The library.
    std::string file;
};

// Finds the plugin at a path: a library, or a plugin folder as the simulator knows it, with
// 64/lin.xpl, lin_x64/NAME.xpl, lin.xpl or NAME.xpl in it. Throws PluginError if there is no
// plugin.
PluginPlace findPlugin(const std::string& path);

// Finds the plugins of a folder laid out like the simulator's: those in Resources/plugins, in
// alphabetical order of their folders and files. Skips folders without a plugin for this system.
// Throws PluginError if no plugin is found.
std::vector<PluginPlace> findPluginsOfSystem(const std::string& system);

} // namespace headless
