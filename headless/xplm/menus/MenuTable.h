#pragma once

#include <string>

#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/menus/Menu.h"
#include "headless/xplm/utilities/CommandTable.h"

namespace headless {

// The plugins menu and the menus that plugins make.
//
// Each plugin counts only the items that it appended to a menu, separators included, so its indices
// stay the same while other plugins come and go. A plugin's menus and items are removed with it.
class MenuTable final {
public:
    MenuTable(PluginContext& pluginContext, CommandTable& commandTable, CallRecorder& callRecorder);
    MenuTable(const MenuTable&) = delete;
    MenuTable& operator=(const MenuTable&) = delete;

    // Host side.
    const Menu& PluginsMenu() const { return *pluginsMenu; }
    // The menu that opens from an item; null for none.
    const Menu* Below(const MenuItem& item) const { return menus.Find(item.submenu); }
    // Chooses an item of the plugins menu by the texts of the items that lead to it, "A > B".
    // Throws std::invalid_argument if there is no such item or it is not enabled.
    void Click(const std::string& path);
    std::size_t DropOf(XPLMPluginID plugin);

    // Plugin side. Indices that do not exist are refused.
    XPLMMenuID FindPluginsMenu();
    XPLMMenuID Create(const char* name, XPLMMenuID parent, int parentItem,
                      XPLMMenuHandler_f handler, void* reference);
    void Destroy(XPLMMenuID handle);
    void Clear(XPLMMenuID handle);
    // The new item's index, or -1 if there is no such menu or the text is null.
    int Append(XPLMMenuID handle, const char* text, void* reference);
    int AppendWithCommand(XPLMMenuID handle, const char* text, XPLMCommandRef command);
    void AppendSeparator(XPLMMenuID handle);
    void SetName(XPLMMenuID handle, int index, const char* text);
    void Check(XPLMMenuID handle, int index, XPLMMenuCheck check);
    XPLMMenuCheck CheckState(XPLMMenuID handle, int index);
    void Enable(XPLMMenuID handle, int index, bool enabled);
    void Remove(XPLMMenuID handle, int index);

private:
    int append(Menu& menu, MenuItem item);
    // Null if the menu or the item does not exist.
    MenuItem* itemAt(XPLMMenuID handle, int index);
    void choose(const Menu& menu, const MenuItem& item);

    PluginContext& context;
    CommandTable& commands;
    CallRecorder& recorder;
    OwnedObjects<Menu> menus;
    Menu* pluginsMenu = nullptr;
};

} // namespace headless
