#pragma once

#include <string>
#include <vector>

namespace headless {

// A plugin as it lies on the disk.
struct PluginPlace {
    // What people call it: the name of its folder, or of its file when it has no folder.
    std::string name;
    // The library.
    std::string file;
};

// The plugin that a path means: a library, or a plugin's folder as the simulator knows it, with
// 64/lin.xpl, lin_x64/NAME.xpl, lin.xpl or NAME.xpl in it. Throws PluginError when there is none.
PluginPlace findPlugin(const std::string& path);

// The plugins of a folder laid out as the simulator's: those in Resources/plugins, in alphabetical
// order of their folders and files. Folders without a plugin for this system are left out. Throws
// PluginError when there is none at all.
std::vector<PluginPlace> findPluginsOfSystem(const std::string& system);

} // namespace headless
