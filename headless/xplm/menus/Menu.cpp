#include "headless/xplm/menus/Menu.h"

namespace headless {

namespace {

constexpr const char* kAppend = "XPLMAppendMenuItem";

} // namespace

XPLMMenuID Menu::FindPluginsMenu() {
    recorder.Record("XPLMFindPluginsMenu", this);
    return this;
}

int Menu::Append(XPLMMenuID menu, const char* text, void* reference) {
    if (menu != this) {
        recorder.Refuse(menu == nullptr ? Refusal::NullHandle : Refusal::UnknownHandle, kAppend,
                        "menu");
        return -1;
    }
    if (text == nullptr) {
        recorder.Refuse(Refusal::NullText, kAppend, "item name");
        return -1;
    }
    recorder.Record(kAppend, menu, text);
    items.push_back({text, reference});
    return static_cast<int>(items.size()) - 1;
}

} // namespace headless
