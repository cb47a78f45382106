#pragma once

// Objects that stand in the scenery.

#include "XPLMDefs.h"
#include "XPLMScenery.h"

typedef void* XPLMInstanceRef;

// `datarefs` ends with a null.
XPLM_API XPLMInstanceRef XPLMCreateInstance(XPLMObjectRef obj, const char** datarefs);
XPLM_API void XPLMDestroyInstance(XPLMInstanceRef instance);
// `data` has a value for each of the datarefs.
XPLM_API void XPLMInstanceSetPosition(XPLMInstanceRef instance, const XPLMDrawInfo_t* new_position,
                                      const float* data);
XPLM_API void XPLMInstanceSetPositionDouble(XPLMInstanceRef instance,
                                            const XPLMDrawInfoDouble_t* new_position,
                                            const float* data);
XPLM_API void XPLMInstanceSetAutoShift(XPLMInstanceRef instance);
