#pragma once

// The simulator's plugins menu.

#include "XPLMDefs.h"

typedef void* XPLMMenuID;

XPLM_API XPLMMenuID XPLMFindPluginsMenu(void);

// Returns the new item's index. The last argument is ignored by the simulator.
XPLM_API int XPLMAppendMenuItem(XPLMMenuID inMenu, const char* inItemName, void* inItemRef,
                                int inDeprecatedAndIgnored);
