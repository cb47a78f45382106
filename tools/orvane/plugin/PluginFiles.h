#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvane::tool::plugin {

// Paths below a simulator's folder.
inline constexpr const char* kPluginFolder = "Resources/plugins/XPlaneOrvane";
inline constexpr const char* kConfiguration = "Resources/plugins/xplaneorvane_datarefs.cfg";
// Below the plugin's folder.
inline constexpr const char* kPluginFile = "64/lin.xpl";

// "7.0.1", without loading it. None if the file is not our plugin, or cannot be read.
std::optional<std::string> pluginVersionOf(const std::filesystem::path& file);

// The folder XPlaneOrvane to copy: the one given, or in the one given, or else the one that was
// installed or built with the tool. Failure: has no plugin.
std::filesystem::path findPluginToCopy(const std::string& given);

} // namespace orvane::tool::plugin
