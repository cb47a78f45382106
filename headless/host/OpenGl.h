#pragma once

#include <string_view>

#include "headless/host/PluginFile.h"

namespace headless {

// Provides OpenGL for plugins that leave its names undefined, as the simulator's process does: the
// system's library if it is installed, and functions that do nothing and answer 0 for what is
// missing. There is no display, so nothing is ever drawn.

// gl..., glX... and glu... functions.
bool isOpenGlName(std::string_view name);
bool isOpenGlLibrary(std::string_view name);

// Makes the names that the plugin and its own libraries need available to the process for its whole
// life. Does nothing for a plugin that does not use OpenGL.
void provideOpenGl(const PluginFile& plugin);

} // namespace headless
