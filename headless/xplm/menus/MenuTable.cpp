#include "headless/xplm/menus/MenuTable.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace headless {

MenuTable::MenuTable(PluginContext& pluginContext, CommandTable& commandTable,
                     CallRecorder& callRecorder)
    : context(pluginContext),
      commands(commandTable),
      recorder(callRecorder),
      menus(pluginContext, callRecorder, "menu") {
    // Owned by no plugin, so that it is not removed with one.
    const PluginContext::Call nobody(context, XPLM_NO_PLUGIN_ID, "none");
    pluginsMenu = menus.Add(Menu("Plugins", nullptr, nullptr));
}

void MenuTable::Click(const std::string& path) {
    constexpr std::string_view kSeparator = " > ";
    const Menu* menu = pluginsMenu;
    for (std::size_t begin = 0;;) {
        const std::size_t end = path.find(kSeparator, begin);
        const std::string text = path.substr(begin, end - begin);
        const auto item =
            std::find_if(menu->items.begin(), menu->items.end(), [&](const MenuItem& candidate) {
                return !candidate.separator && candidate.text == text;
            });
        if (item == menu->items.end()) {
            throw std::invalid_argument("no such menu item: " + path);
        }
        if (end == std::string::npos) {
            choose(*menu, *item);
            return;
        }
        menu = menus.Find(item->submenu);
        if (menu == nullptr) {
            throw std::invalid_argument("no such menu: " + path.substr(0, end));
        }
        begin = end + kSeparator.size();
    }
}

std::size_t MenuTable::DropOf(XPLMPluginID plugin) {
    std::size_t dropped = menus.DropOf(plugin);
    for (Menu* menu : menus.All()) {
        dropped +=
            std::erase_if(menu->items, [&](const MenuItem& item) { return item.owner == plugin; });
    }
    return dropped;
}

XPLMMenuID MenuTable::FindPluginsMenu() {
    recorder.Record("XPLMFindPluginsMenu", pluginsMenu);
    return pluginsMenu;
}

XPLMMenuID MenuTable::Create(const char* name, XPLMMenuID parent, int parentItem,
                             XPLMMenuHandler_f handler, void* reference) {
    MenuItem* const item = parent == nullptr ? nullptr : itemAt(parent, parentItem);
    if (parent != nullptr && item == nullptr) {
        return nullptr;
    }
    Menu* const menu = menus.Add(Menu(name == nullptr ? "" : name, handler, reference));
    if (item != nullptr) {
        item->submenu = menu;
    }
    return menu;
}

void MenuTable::Destroy(XPLMMenuID handle) {
    if (handle == pluginsMenu) {
        recorder.Refuse(Refusal::NotRegistered, "the plugins menu");
    } else {
        menus.Remove(handle);
    }
}

void MenuTable::Clear(XPLMMenuID handle) {
    if (Menu* menu = menus.Resolve(handle)) {
        std::erase_if(menu->items,
                      [&](const MenuItem& item) { return item.owner == context.Plugin(); });
    }
}

int MenuTable::Append(XPLMMenuID handle, const char* text, void* reference) {
    Menu* const menu = menus.Resolve(handle);
    if (menu == nullptr) {
        return -1;
    }
    if (text == nullptr) {
        recorder.Refuse(Refusal::NullText, "item name");
        return -1;
    }
    recorder.Record("XPLMAppendMenuItem", handle, text);
    return append(*menu, {.text = text, .reference = reference});
}

int MenuTable::AppendWithCommand(XPLMMenuID handle, const char* text, XPLMCommandRef command) {
    const int index = Append(handle, text, nullptr);
    if (MenuItem* item = index < 0 ? nullptr : itemAt(handle, index)) {
        item->command = command;
    }
    return index;
}

void MenuTable::AppendSeparator(XPLMMenuID handle) {
    if (Menu* menu = menus.Resolve(handle)) {
        append(*menu, {.separator = true});
    }
}

void MenuTable::SetName(XPLMMenuID handle, int index, const char* text) {
    MenuItem* const item = itemAt(handle, index);
    if (item != nullptr && text != nullptr) {
        item->text = text;
    }
}

void MenuTable::Check(XPLMMenuID handle, int index, XPLMMenuCheck check) {
    if (MenuItem* item = itemAt(handle, index)) {
        item->check = check;
    }
}

XPLMMenuCheck MenuTable::CheckState(XPLMMenuID handle, int index) {
    const MenuItem* const item = itemAt(handle, index);
    return item == nullptr ? xplm_Menu_NoCheck : item->check;
}

void MenuTable::Enable(XPLMMenuID handle, int index, bool enabled) {
    if (MenuItem* item = itemAt(handle, index)) {
        item->enabled = enabled;
    }
}

void MenuTable::Remove(XPLMMenuID handle, int index) {
    if (MenuItem* item = itemAt(handle, index)) {
        auto& items = menus.Resolve(handle)->items;
        items.erase(items.begin() + (item - items.data()));
    }
}

int MenuTable::append(Menu& menu, MenuItem item) {
    item.owner = context.Plugin();
    menu.items.push_back(std::move(item));
    const auto own = std::count_if(menu.items.begin(), menu.items.end(), [&](const MenuItem& one) {
        return one.owner == context.Plugin();
    });
    return static_cast<int>(own) - 1;
}

MenuItem* MenuTable::itemAt(XPLMMenuID handle, int index) {
    Menu* const menu = menus.Resolve(handle);
    if (menu == nullptr) {
        return nullptr;
    }
    int own = 0;
    for (MenuItem& item : menu->items) {
        if (item.owner == context.Plugin() && own++ == index) {
            return &item;
        }
    }
    recorder.Refuse(Refusal::UnknownHandle, "menu item");
    return nullptr;
}

void MenuTable::choose(const Menu& menu, const MenuItem& item) {
    if (!item.enabled) {
        throw std::invalid_argument("the menu item is not enabled: " + item.text);
    }
    if (item.command != nullptr) {
        commands.Once(item.command);
    } else if (menu.handler != nullptr && menus.IsActive(menu)) {
        // A copy, because the handler may change the menu.
        void* const itemReference = item.reference;
        const PluginContext::Call call(context, menus.OwnerOf(menu), "menu handler");
        call.Into(menu.handler, menu.reference, itemReference);
    }
}

} // namespace headless
