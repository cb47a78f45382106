#pragma once

#include "XPWidgetDefs.h"

namespace headless {

// The function of one of the SDK's own widget classes; null for an unknown class. Buttons can be
// pressed and text fields typed into; the others do nothing.
XPWidgetFunc_t standardWidgetFunction(XPWidgetClass widgetClass);

} // namespace headless
