#pragma once

#include "XPLMMenus.h"
#include "headless/xplm/CallRecorder.h"

#include <string>
#include <vector>

namespace headless {

struct MenuItem {
    std::string text;
    void* reference = nullptr;
};

// The simulator's plugins menu: a flat list of items that nobody can click.
class Menu final {
public:
    explicit Menu(CallRecorder& callRecorder) : recorder(callRecorder) {}
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    XPLMMenuID FindPluginsMenu();
    // Returns the new item's index, or -1 for a menu that is not the plugins menu.
    int Append(XPLMMenuID menu, const char* text, void* reference);

    const std::vector<MenuItem>& Items() const { return items; }

private:
    CallRecorder& recorder;
    std::vector<MenuItem> items;
};

} // namespace headless
