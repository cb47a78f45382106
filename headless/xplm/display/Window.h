#pragma once

#include <array>
#include <string>

#include "XPLMDisplay.h"
#include "headless/xplm/display/Screen.h"

namespace headless {

// A plugin's window, as the plugin set it up.
struct Window {
    // Callbacks, refcon and layer as given; its rectangle is not kept up to date.
    XPLMCreateWindow_t parameters{};
    Rectangle geometry;
    // In virtual reality, in boxels.
    int vrWidth = 0;
    int vrHeight = 0;
    bool visible = false;
    std::string title;
    XPLMWindowPositioningMode mode = xplm_WindowPositionFree;
    std::array<float, 4> gravity{0.0F, 1.0F, 0.0F, 1.0F};
    // Smallest width and height, largest width and height; 0 means no limit.
    std::array<int, 4> limits{};
};

} // namespace headless
