#pragma once

// Menus: the plugins menu, submenus and their items.

#include "XPLMDefs.h"
#include "XPLMUtilities.h"

typedef int XPLMMenuCheck;

enum { xplm_Menu_NoCheck = 0, xplm_Menu_Unchecked = 1, xplm_Menu_Checked = 2 };

typedef void* XPLMMenuID;

typedef void (*XPLMMenuHandler_f)(void* inMenuRef, void* inItemRef);

XPLM_API XPLMMenuID XPLMFindPluginsMenu(void);
// Null unless the caller belongs to the user's aircraft.
XPLM_API XPLMMenuID XPLMFindAircraftMenu(void);
XPLM_API XPLMMenuID XPLMCreateMenu(const char* inName, XPLMMenuID inParentMenu, int inParentItem,
                                   XPLMMenuHandler_f inHandler, void* inMenuRef);
XPLM_API void XPLMDestroyMenu(XPLMMenuID inMenuID);
XPLM_API void XPLMClearAllMenuItems(XPLMMenuID inMenuID);

// Returns the new item's index, or -1. The last argument is ignored by the simulator.
XPLM_API int XPLMAppendMenuItem(XPLMMenuID inMenu, const char* inItemName, void* inItemRef,
                                int inDeprecatedAndIgnored);
XPLM_API int XPLMAppendMenuItemWithCommand(XPLMMenuID inMenu, const char* inItemName,
                                           XPLMCommandRef inCommandToExecute);
XPLM_API void XPLMAppendMenuSeparator(XPLMMenuID inMenu);

// Separators count as items.
XPLM_API void XPLMSetMenuItemName(XPLMMenuID inMenu, int inIndex, const char* inItemName,
                                  int inDeprecatedAndIgnored);
XPLM_API void XPLMCheckMenuItem(XPLMMenuID inMenu, int index, XPLMMenuCheck inCheck);
XPLM_API void XPLMCheckMenuItemState(XPLMMenuID inMenu, int index, XPLMMenuCheck* outCheck);
XPLM_API void XPLMEnableMenuItem(XPLMMenuID inMenu, int index, int enabled);
XPLM_API void XPLMRemoveMenuItem(XPLMMenuID inMenu, int inIndex);
