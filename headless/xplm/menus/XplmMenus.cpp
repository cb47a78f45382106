#include "XPLMMenus.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/menus/MenuTable.h"

using headless::here;

XPLMMenuID XPLMFindPluginsMenu(void) {
    return here().Menus().FindPluginsMenu();
}

// No plugin here belongs to the user's aircraft.
XPLMMenuID XPLMFindAircraftMenu(void) {
    here();
    return nullptr;
}

XPLMMenuID XPLMCreateMenu(const char* inName, XPLMMenuID inParentMenu, int inParentItem,
                          XPLMMenuHandler_f inHandler, void* inMenuRef) {
    return here().Menus().Create(inName, inParentMenu, inParentItem, inHandler, inMenuRef);
}

void XPLMDestroyMenu(XPLMMenuID inMenuID) {
    here().Menus().Destroy(inMenuID);
}

void XPLMClearAllMenuItems(XPLMMenuID inMenuID) {
    here().Menus().Clear(inMenuID);
}

int XPLMAppendMenuItem(XPLMMenuID inMenu, const char* inItemName, void* inItemRef,
                       int /*inDeprecatedAndIgnored*/) {
    return here().Menus().Append(inMenu, inItemName, inItemRef);
}

int XPLMAppendMenuItemWithCommand(XPLMMenuID inMenu, const char* inItemName,
                                  XPLMCommandRef inCommandToExecute) {
    return here().Menus().AppendWithCommand(inMenu, inItemName, inCommandToExecute);
}

void XPLMAppendMenuSeparator(XPLMMenuID inMenu) {
    here().Menus().AppendSeparator(inMenu);
}

void XPLMSetMenuItemName(XPLMMenuID inMenu, int inIndex, const char* inItemName,
                         int /*inDeprecatedAndIgnored*/) {
    headless::MenuTable& menus = here().Menus();
    if (headless::isGiven(inItemName, "item name")) {
        menus.SetName(inMenu, inIndex, inItemName);
    }
}

void XPLMCheckMenuItem(XPLMMenuID inMenu, int index, XPLMMenuCheck inCheck) {
    here().Menus().Check(inMenu, index, inCheck);
}

void XPLMCheckMenuItemState(XPLMMenuID inMenu, int index, XPLMMenuCheck* outCheck) {
    headless::give(outCheck, here().Menus().CheckState(inMenu, index));
}

void XPLMEnableMenuItem(XPLMMenuID inMenu, int index, int enabled) {
    here().Menus().Enable(inMenu, index, enabled != 0);
}

void XPLMRemoveMenuItem(XPLMMenuID inMenu, int inIndex) {
    here().Menus().Remove(inMenu, inIndex);
}
