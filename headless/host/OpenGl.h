#pragma once

#include <string_view>

#include "headless/host/PluginFile.h"

namespace headless {

// OpenGL for plugins that leave its names open, as the simulator's process has them: the system's
// library, where it is installed, and functions that do nothing and answer 0 for what it lacks.
// There is no display, so nothing is ever drawn.

// gl..., glX... and glu... functions.
bool isOpenGlName(std::string_view name);
bool isOpenGlLibrary(std::string_view name);

// Makes the names that the plugin needs known to the process, for its whole life. Does nothing
// for a plugin that has nothing to do with OpenGL.
void provideOpenGl(const PluginFile& plugin);

} // namespace headless
