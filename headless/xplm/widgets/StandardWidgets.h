#pragma once

#include "XPWidgetDefs.h"

namespace headless {

// The function of one of the SDK's own widget classes; null for a class that does not exist.
// Buttons are pressed and text fields typed into; the others only are there.
XPWidgetFunc_t standardWidgetFunction(XPWidgetClass widgetClass);

} // namespace headless
