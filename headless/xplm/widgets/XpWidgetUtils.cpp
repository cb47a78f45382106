#include "XPWidgetUtils.h"

#include <bit>

#include "headless/xplm/Here.h"
#include "headless/xplm/display/Windows.h"
#include "headless/xplm/widgets/StandardWidgets.h"
#include "headless/xplm/widgets/WidgetTree.h"

using headless::here;
using headless::Rectangle;
using headless::Widget;
using headless::WidgetTree;

namespace {

void moveBy(WidgetTree& widgets, XPWidgetID handle, int dx, int dy) {
    if (const Widget* widget = widgets.Resolve(handle)) {
        const Rectangle& at = widget->geometry;
        widgets.SetGeometry(handle, {at.left + dx, at.top + dy, at.right + dx, at.bottom + dy});
    }
}

const XPMouseState_t& mouseOf(intptr_t parameter) {
    return *std::bit_cast<const XPMouseState_t*>(parameter);
}

} // namespace

void XPUCreateWidgets(const XPWidgetCreate_t* inWidgetDefs, int inCount, XPWidgetID inParamParent,
                      XPWidgetID* ioWidgets) {
    WidgetTree& widgets = here().Widgets();
    for (int i = 0; i < inCount && inWidgetDefs != nullptr && ioWidgets != nullptr; ++i) {
        const XPWidgetCreate_t& wanted = inWidgetDefs[i];
        XPWidgetID container = nullptr;
        if (wanted.containerIndex == PARAM_PARENT) {
            container = inParamParent;
        } else if (wanted.containerIndex >= 0 && wanted.containerIndex < i) {
            container = ioWidgets[wanted.containerIndex];
        }
        ioWidgets[i] =
            widgets.Create({wanted.left, wanted.top, wanted.right, wanted.bottom},
                           wanted.visible != 0, wanted.descriptor, wanted.isRoot != 0, container,
                           headless::standardWidgetFunction(wanted.widgetClass));
    }
}

void XPUMoveWidgetBy(XPWidgetID inWidget, int inDeltaX, int inDeltaY) {
    moveBy(here().Widgets(), inWidget, inDeltaX, inDeltaY);
}

// Children keep their place in a container that moves.
int XPUFixedLayout(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                   intptr_t inParam2) {
    WidgetTree& widgets = here().Widgets();
    const bool isOwn = std::bit_cast<XPWidgetID>(inParam1) == inWidget;
    const Widget* const widget =
        inMessage == xpMsg_Reshape && isOwn ? widgets.Resolve(inWidget) : nullptr;
    if (widget == nullptr) {
        return 0;
    }
    const auto& change = *std::bit_cast<const XPWidgetGeometryChange_t*>(inParam2);
    for (Widget* child : std::vector<Widget*>(widget->children)) {
        moveBy(widgets, child, change.dx, change.dy);
    }
    return 1;
}

int XPUSelectIfNeeded(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t /*inParam1*/,
                      intptr_t /*inParam2*/, int inEatClick) {
    headless::Simulator& simulator = here();
    const Widget* const root =
        inMessage == xpMsg_MouseDown ? simulator.Widgets().RootOf(inWidget) : nullptr;
    if (root == nullptr || simulator.Windows().IsInFront(root->window)) {
        return 0;
    }
    simulator.Windows().BringToFront(root->window);
    return inEatClick;
}

int XPUDefocusKeyboard(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t /*inParam1*/,
                       intptr_t /*inParam2*/, int inEatClick) {
    WidgetTree& widgets = here().Widgets();
    if (inMessage != xpMsg_MouseDown || widgets.Focused() == nullptr ||
        widgets.Focused() == inWidget) {
        return 0;
    }
    widgets.TakeFocus(nullptr);
    return inEatClick;
}

int XPUDragWidget(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                  intptr_t /*inParam2*/, int inLeft, int inTop, int inRight, int inBottom) {
    WidgetTree& widgets = here().Widgets();
    const bool isMouse =
        inMessage == xpMsg_MouseDown || inMessage == xpMsg_MouseDrag || inMessage == xpMsg_MouseUp;
    Widget* const widget = isMouse ? widgets.Resolve(inWidget) : nullptr;
    if (widget == nullptr) {
        return 0;
    }
    const XPMouseState_t& mouse = mouseOf(inParam1);
    auto& properties = widget->properties;
    if (inMessage == xpMsg_MouseDown) {
        if (!Rectangle{inLeft, inTop, inRight, inBottom}.Contains(mouse.x, mouse.y)) {
            return 0;
        }
        properties[xpProperty_Dragging] = 1;
        properties[xpProperty_DragXOff] = mouse.x - widget->geometry.left;
        properties[xpProperty_DragYOff] = mouse.y - widget->geometry.bottom;
        return 1;
    }
    if (properties[xpProperty_Dragging] == 0) {
        return 0;
    }
    const auto dx = mouse.x - properties[xpProperty_DragXOff] - widget->geometry.left;
    const auto dy = mouse.y - properties[xpProperty_DragYOff] - widget->geometry.bottom;
    moveBy(widgets, inWidget, static_cast<int>(dx), static_cast<int>(dy));
    if (inMessage == xpMsg_MouseUp) {
        properties[xpProperty_Dragging] = 0;
    }
    return 1;
}
