#pragma once

#include <map>
#include <string>
#include <vector>

#include "XPLMDisplay.h"
#include "XPWidgetDefs.h"
#include "headless/xplm/display/Screen.h"

namespace headless {

// One widget; its address is the handle that plugins hold.
struct Widget {
    Rectangle geometry;
    bool visible = false;
    std::string descriptor;
    Widget* parent = nullptr;
    // From back to front.
    std::vector<Widget*> children;
    // The newest is called first.
    std::vector<XPWidgetFunc_t> callbacks;
    std::map<XPWidgetPropertyID, intptr_t> properties;
    // Only for a root; null for others.
    XPLMWindowID window = nullptr;
};

} // namespace headless
