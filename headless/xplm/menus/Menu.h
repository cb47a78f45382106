#pragma once

#include <string>
#include <vector>

#include "XPLMMenus.h"

namespace headless {

struct MenuItem {
    std::string text{};
    void* reference = nullptr;
    // Runs instead of the menu's handler; null for none.
    XPLMCommandRef command = nullptr;
    XPLMMenuCheck check = xplm_Menu_NoCheck;
    bool enabled = true;
    bool separator = false;
    // The plugin that appended it.
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;
    // The menu that opens from it; null for none.
    XPLMMenuID submenu = nullptr;
};

// One menu, as it would be shown.
class Menu final {
public:
    Menu() = default;
    Menu(std::string menuName, XPLMMenuHandler_f menuHandler, void* menuReference)
        : name(std::move(menuName)), handler(menuHandler), reference(menuReference) {}

    const std::string& Name() const { return name; }
    const std::vector<MenuItem>& Items() const { return items; }

private:
    friend class MenuTable;

    std::string name;
    XPLMMenuHandler_f handler = nullptr;
    void* reference = nullptr;
    std::vector<MenuItem> items;
};

} // namespace headless
