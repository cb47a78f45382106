#pragma once

#include "headless/xplm/OwnedObjects.h"
#include "headless/xplm/display/Windows.h"
#include "headless/xplm/widgets/Widget.h"

namespace headless {

// All widgets, which contain which, and the messages that they get.
//
// A root has a window. A click or a key in that window becomes messages to the widget under the
// mouse or with the keyboard. Functions that take a handle refuse null and foreign ones, and record
// that.
class WidgetTree final {
public:
    WidgetTree(Windows& allWindows, PluginContext& pluginContext, CallRecorder& callRecorder)
        : windows(allWindows),
          context(pluginContext),
          widgets(pluginContext, callRecorder, "widget") {}
    WidgetTree(const WidgetTree&) = delete;
    WidgetTree& operator=(const WidgetTree&) = delete;

    // The function and `container` may be null.
    Widget* Create(const Rectangle& geometry, bool visible, const char* descriptor, bool isRoot,
                   XPWidgetID container, XPWidgetFunc_t function);
    void Destroy(XPWidgetID handle, bool withChildren);
    // Null if there is no such widget; records the refusal.
    Widget* Resolve(XPWidgetID handle) { return widgets.Resolve(handle); }

    bool Send(XPWidgetID handle, XPWidgetMessage message, XPDispatchMode mode, intptr_t first,
              intptr_t second);
    void Place(XPWidgetID child, XPWidgetID container);
    void SetVisible(XPWidgetID handle, bool visible);
    void SetGeometry(XPWidgetID handle, const Rectangle& geometry);
    void SetDescriptor(XPWidgetID handle, const char* descriptor);
    void SetProperty(XPWidgetID handle, XPWidgetPropertyID property, intptr_t value);
    void AddCallback(XPWidgetID handle, XPWidgetFunc_t callback);

    // Null if the place is not in the container.
    Widget* At(XPWidgetID container, int x, int y, bool recursive, bool visibleOnly);
    Widget* RootOf(XPWidgetID handle);
    bool IsVisible(XPWidgetID handle);
    // The part that no container cuts off.
    Rectangle Exposed(XPWidgetID handle);

    // The widget that has the keyboard after the call. Null gives it back to the simulator.
    Widget* TakeFocus(XPWidgetID handle);
    void LoseFocus(XPWidgetID handle);
    Widget* Focused() const { return focused; }

    std::size_t DropOf(XPLMPluginID plugin);

private:
    // The window's callbacks; the refcon is the root widget.
    static int onClick(XPLMWindowID window, int x, int y, XPLMMouseStatus status, void* refcon);
    static void onKey(XPLMWindowID window, char key, XPLMKeyFlags flags, char virtualKey,
                      void* refcon, int losingFocus);

    bool call(Widget& widget, XPWidgetMessage message, intptr_t first, intptr_t second, bool all);
    bool click(Widget& root, int x, int y, XPLMMouseStatus status);
    void makeWindow(Widget& widget);
    // Null if it has none, or no longer.
    Window* windowOf(const Widget& widget) {
        return widget.window == nullptr ? nullptr : windows.Resolve(widget.window);
    }
    void detach(Widget& widget);
    // Give it a copy, because they leave their container.
    void destroyAll(const std::vector<Widget*>& siblings);
    void forgetMissing();

    Windows& windows;
    PluginContext& context;
    OwnedObjects<Widget> widgets;
    Widget* focused = nullptr;
    // The widget that took the mouse press and gets the drag and the release.
    Widget* grabbing = nullptr;
};

} // namespace headless
