#include "XPWidgets.h"

#include <algorithm>

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/widgets/StandardWidgets.h"
#include "headless/xplm/widgets/WidgetTree.h"

using headless::give;
using headless::giveRectangle;
using headless::here;
using headless::Widget;

XPWidgetID XPCreateWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible,
                          const char* inDescriptor, int inIsRoot, XPWidgetID inContainer,
                          XPWidgetClass inClass) {
    return here().Widgets().Create({inLeft, inTop, inRight, inBottom}, inVisible != 0, inDescriptor,
                                   inIsRoot != 0, inContainer,
                                   headless::standardWidgetFunction(inClass));
}

XPWidgetID XPCreateCustomWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible,
                                const char* inDescriptor, int inIsRoot, XPWidgetID inContainer,
                                XPWidgetFunc_t inCallback) {
    return here().Widgets().Create({inLeft, inTop, inRight, inBottom}, inVisible != 0, inDescriptor,
                                   inIsRoot != 0, inContainer, inCallback);
}

void XPDestroyWidget(XPWidgetID inWidget, int inDestroyChildren) {
    here().Widgets().Destroy(inWidget, inDestroyChildren != 0);
}

int XPSendMessageToWidget(XPWidgetID inWidget, XPWidgetMessage inMessage, XPDispatchMode inMode,
                          intptr_t inParam1, intptr_t inParam2) {
    return here().Widgets().Send(inWidget, inMessage, inMode, inParam1, inParam2) ? 1 : 0;
}

void XPPlaceWidgetWithin(XPWidgetID inSubWidget, XPWidgetID inContainer) {
    here().Widgets().Place(inSubWidget, inContainer);
}

int XPCountChildWidgets(XPWidgetID inWidget) {
    const Widget* const widget = here().Widgets().Resolve(inWidget);
    return widget == nullptr ? 0 : static_cast<int>(widget->children.size());
}

XPWidgetID XPGetNthChildWidget(XPWidgetID inWidget, int inIndex) {
    const Widget* const widget = here().Widgets().Resolve(inWidget);
    const bool exists = widget != nullptr && inIndex >= 0 &&
                        static_cast<std::size_t>(inIndex) < widget->children.size();
    return exists ? widget->children[static_cast<std::size_t>(inIndex)] : nullptr;
}

XPWidgetID XPGetParentWidget(XPWidgetID inWidget) {
    const Widget* const widget = here().Widgets().Resolve(inWidget);
    return widget == nullptr ? nullptr : widget->parent;
}

void XPShowWidget(XPWidgetID inWidget) {
    here().Widgets().SetVisible(inWidget, true);
}

void XPHideWidget(XPWidgetID inWidget) {
    here().Widgets().SetVisible(inWidget, false);
}

int XPIsWidgetVisible(XPWidgetID inWidget) {
    return here().Widgets().IsVisible(inWidget) ? 1 : 0;
}

XPWidgetID XPFindRootWidget(XPWidgetID inWidget) {
    return here().Widgets().RootOf(inWidget);
}

void XPBringRootWidgetToFront(XPWidgetID inWidget) {
    headless::Simulator& simulator = here();
    if (const Widget* root = simulator.Widgets().RootOf(inWidget)) {
        simulator.Windows().BringToFront(root->window);
    }
}

int XPIsWidgetInFront(XPWidgetID inWidget) {
    headless::Simulator& simulator = here();
    const Widget* const root = simulator.Widgets().RootOf(inWidget);
    return root != nullptr && simulator.Windows().IsInFront(root->window) ? 1 : 0;
}

void XPGetWidgetGeometry(XPWidgetID inWidget, int* outLeft, int* outTop, int* outRight,
                         int* outBottom) {
    headless::giveGeometry(here().Widgets().Resolve(inWidget), outLeft, outTop, outRight,
                           outBottom);
}

void XPSetWidgetGeometry(XPWidgetID inWidget, int inLeft, int inTop, int inRight, int inBottom) {
    here().Widgets().SetGeometry(inWidget, {inLeft, inTop, inRight, inBottom});
}

XPWidgetID XPGetWidgetForLocation(XPWidgetID inContainer, int inXOffset, int inYOffset,
                                  int inRecursive, int inVisibleOnly) {
    return here().Widgets().At(inContainer, inXOffset, inYOffset, inRecursive != 0,
                               inVisibleOnly != 0);
}

void XPGetWidgetExposedGeometry(XPWidgetID inWidgetID, int* outLeft, int* outTop, int* outRight,
                                int* outBottom) {
    giveRectangle(here().Widgets().Exposed(inWidgetID), outLeft, outTop, outRight, outBottom);
}

void XPSetWidgetDescriptor(XPWidgetID inWidget, const char* inDescriptor) {
    here().Widgets().SetDescriptor(inWidget, inDescriptor);
}

int XPGetWidgetDescriptor(XPWidgetID inWidget, char* outDescriptor, int inMaxDescLength) {
    const Widget* const widget = here().Widgets().Resolve(inWidget);
    const std::string text = widget == nullptr ? std::string() : widget->descriptor;
    headless::giveText(outDescriptor, static_cast<std::size_t>(std::max(0, inMaxDescLength)), text);
    return static_cast<int>(text.size());
}

XPLMWindowID XPGetWidgetUnderlyingWindow(XPWidgetID inWidget) {
    const Widget* const root = here().Widgets().RootOf(inWidget);
    return root == nullptr ? nullptr : root->window;
}

void XPSetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, intptr_t inValue) {
    here().Widgets().SetProperty(inWidget, inProperty, inValue);
}

intptr_t XPGetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, int* inExists) {
    const Widget* const widget = here().Widgets().Resolve(inWidget);
    const bool exists = widget != nullptr && widget->properties.count(inProperty) != 0;
    give(inExists, exists ? 1 : 0);
    return exists ? widget->properties.at(inProperty) : 0;
}

XPWidgetID XPSetKeyboardFocus(XPWidgetID inWidget) {
    return here().Widgets().TakeFocus(inWidget);
}

void XPLoseKeyboardFocus(XPWidgetID inWidget) {
    here().Widgets().LoseFocus(inWidget);
}

XPWidgetID XPGetWidgetWithFocus(void) {
    return here().Widgets().Focused();
}

void XPAddWidgetCallback(XPWidgetID inWidget, XPWidgetFunc_t inNewCallback) {
    here().Widgets().AddCallback(inWidget, inNewCallback);
}

XPWidgetFunc_t XPGetWidgetClassFunc(XPWidgetClass inWidgetClass) {
    here();
    return headless::standardWidgetFunction(inWidgetClass);
}
