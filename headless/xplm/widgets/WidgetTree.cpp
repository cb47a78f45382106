#include "headless/xplm/widgets/WidgetTree.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "headless/xplm/Simulator.h"

namespace headless {

namespace {

intptr_t parameterOf(const void* pointer) {
    return std::bit_cast<intptr_t>(pointer);
}

} // namespace

Widget* WidgetTree::Create(const Rectangle& geometry, bool visible, const char* descriptor,
                           bool isRoot, XPWidgetID container, XPWidgetFunc_t function) {
    Widget widget;
    widget.geometry = geometry;
    widget.visible = visible;
    widget.descriptor = descriptor == nullptr ? "" : descriptor;
    Widget* const added = widgets.Add(std::move(widget));
    if (isRoot) {
        makeWindow(*added);
    }
    if (function != nullptr) {
        added->callbacks.push_back(function);
        call(*added, xpMsg_Create, 0, 0, false);
    }
    if (!isRoot && container != nullptr) {
        Place(added, container);
    }
    return added;
}

void WidgetTree::Destroy(XPWidgetID handle, bool withChildren) {
    Widget* const widget = Resolve(handle);
    if (widget == nullptr) {
        return;
    }
    call(*widget, xpMsg_Destroy, 1, 0, true);
    // Here and below, a callback may have destroyed it.
    if (withChildren && widgets.Find(widget) != nullptr) {
        destroyAll(std::vector<Widget*>(widget->children));
    }
    if (widgets.Find(widget) != nullptr) {
        for (Widget* child : widget->children) {
            child->parent = nullptr;
        }
        detach(*widget);
    }
    if (widgets.Find(widget) != nullptr) {
        if (widget->window != nullptr) {
            windows.Destroy(widget->window);
        }
        widgets.Remove(handle);
    }
    forgetMissing();
}

void WidgetTree::destroyAll(const std::vector<Widget*>& siblings) {
    for (Widget* widget : siblings) {
        if (widgets.Find(widget) != nullptr) {
            Destroy(widget, true);
        }
    }
}

bool WidgetTree::Send(XPWidgetID handle, XPWidgetMessage message, XPDispatchMode mode,
                      intptr_t first, intptr_t second) {
    Widget* widget = Resolve(handle);
    if (widget == nullptr) {
        return false;
    }
    if (mode == xpMode_UpChain) {
        while (widget != nullptr && !call(*widget, message, first, second, false)) {
            // The callback may have destroyed its widget.
            widget = widgets.Find(widget) == nullptr ? nullptr : widget->parent;
        }
        return widget != nullptr;
    }
    bool handled = call(*widget, message, first, second, mode == xpMode_DirectAllCallbacks);
    if (mode == xpMode_Recursive && widgets.Find(widget) != nullptr) {
        for (Widget* child : std::vector<Widget*>(widget->children)) {
            handled =
                (widgets.Find(child) != nullptr && Send(child, message, mode, first, second)) ||
                handled;
        }
    }
    return handled;
}

void WidgetTree::Place(XPWidgetID childHandle, XPWidgetID containerHandle) {
    Widget* const child = Resolve(childHandle);
    Widget* const container = containerHandle == nullptr ? nullptr : Resolve(containerHandle);
    // Not into itself or into a widget that it contains.
    for (const Widget* above = container; child != nullptr && above != nullptr;
         above = above->parent) {
        if (above == child) {
            return;
        }
    }
    if (child == nullptr) {
        return;
    }
    detach(*child);
    // The former container may have destroyed them.
    if (widgets.Find(child) == nullptr ||
        (container != nullptr && widgets.Find(container) == nullptr)) {
        return;
    }
    child->parent = container;
    if (container != nullptr) {
        container->children.push_back(child);
        call(*container, xpMsg_AcceptChild, parameterOf(child), 0, false);
    }
    call(*child, xpMsg_AcceptParent, parameterOf(container), 0, false);
}

void WidgetTree::SetVisible(XPWidgetID handle, bool visible) {
    Widget* const widget = Resolve(handle);
    if (widget == nullptr || widget->visible == visible) {
        return;
    }
    widget->visible = visible;
    if (Window* const window = windowOf(*widget)) {
        window->visible = visible;
    }
    Send(handle, visible ? xpMsg_Shown : xpMsg_Hidden, xpMode_UpChain, parameterOf(widget), 0);
}

void WidgetTree::SetGeometry(XPWidgetID handle, const Rectangle& geometry) {
    Widget* const widget = Resolve(handle);
    if (widget == nullptr || widget->geometry == geometry) {
        return;
    }
    const Rectangle former = std::exchange(widget->geometry, geometry);
    if (Window* const window = windowOf(*widget)) {
        window->geometry = geometry;
    }
    const XPWidgetGeometryChange_t change{
        geometry.left - former.left, geometry.bottom - former.bottom,
        geometry.Width() - former.Width(), geometry.Height() - former.Height()};
    Send(handle, xpMsg_Reshape, xpMode_UpChain, parameterOf(widget), parameterOf(&change));
}

void WidgetTree::SetDescriptor(XPWidgetID handle, const char* descriptor) {
    if (Widget* widget = Resolve(handle)) {
        widget->descriptor = descriptor == nullptr ? "" : descriptor;
        call(*widget, xpMsg_DescriptorChanged, 0, 0, false);
    }
}

void WidgetTree::SetProperty(XPWidgetID handle, XPWidgetPropertyID property, intptr_t value) {
    if (Widget* widget = Resolve(handle)) {
        widget->properties[property] = value;
        call(*widget, xpMsg_PropertyChanged, property, value, false);
    }
}

void WidgetTree::AddCallback(XPWidgetID handle, XPWidgetFunc_t callback) {
    Widget* const widget = Resolve(handle);
    if (widget == nullptr || callback == nullptr) {
        return;
    }
    widget->callbacks.push_back(callback);
    const PluginContext::Call called(context, widgets.OwnerOf(*widget), "widget callback");
    called.Into(callback, xpMsg_Create, widget, 1, 0);
}

Widget* WidgetTree::At(XPWidgetID container, int x, int y, bool recursive, bool visibleOnly) {
    Widget* const widget = Resolve(container);
    if (widget == nullptr || !widget->geometry.Contains(x, y)) {
        return nullptr;
    }
    const auto child =
        std::find_if(widget->children.rbegin(), widget->children.rend(), [&](const Widget* one) {
            return one->geometry.Contains(x, y) && (one->visible || !visibleOnly);
        });
    if (child == widget->children.rend()) {
        return widget;
    }
    return recursive ? At(*child, x, y, true, visibleOnly) : *child;
}

Widget* WidgetTree::RootOf(XPWidgetID handle) {
    Widget* widget = Resolve(handle);
    while (widget != nullptr && widget->window == nullptr) {
        widget = widget->parent;
    }
    return widget;
}

bool WidgetTree::IsVisible(XPWidgetID handle) {
    const Widget* widget = Resolve(handle);
    bool visible = widget != nullptr;
    for (; widget != nullptr; widget = widget->parent) {
        visible = visible && widget->visible;
    }
    return visible;
}

Rectangle WidgetTree::Exposed(XPWidgetID handle) {
    const Widget* widget = Resolve(handle);
    Rectangle exposed = widget == nullptr ? Rectangle{} : widget->geometry;
    for (; widget != nullptr; widget = widget->parent) {
        const Rectangle& limit = widget->geometry;
        exposed.left = std::max(exposed.left, limit.left);
        exposed.bottom = std::max(exposed.bottom, limit.bottom);
        exposed.right = std::max(exposed.left, std::min(exposed.right, limit.right));
        exposed.top = std::max(exposed.bottom, std::min(exposed.top, limit.top));
    }
    return exposed;
}

Widget* WidgetTree::TakeFocus(XPWidgetID handle) {
    Widget* const next = handle == nullptr ? nullptr : Resolve(handle);
    if (next == focused) {
        return focused;
    }
    if (next != nullptr && !call(*next, xpMsg_KeyTakeFocus, 0, 0, false)) {
        return focused;
    }
    Widget* const former = std::exchange(focused, next);
    if (former != nullptr && widgets.Find(former) != nullptr) {
        call(*former, xpMsg_KeyLoseFocus, next == nullptr ? 0 : 1, 0, false);
    }
    const Widget* const root = next == nullptr ? nullptr : RootOf(next);
    windows.TakeFocus(root == nullptr ? nullptr : root->window);
    return focused;
}

void WidgetTree::LoseFocus(XPWidgetID handle) {
    if (focused != nullptr && focused == handle) {
        TakeFocus(nullptr);
    }
}

std::size_t WidgetTree::DropOf(XPLMPluginID plugin) {
    for (Widget* widget : widgets.All()) {
        if (widgets.OwnerOf(*widget) == plugin) {
            detach(*widget);
            for (Widget* child : widget->children) {
                child->parent = nullptr;
            }
            widget->children.clear();
        }
    }
    const std::size_t dropped = widgets.DropOf(plugin);
    forgetMissing();
    return dropped;
}

int WidgetTree::onClick(XPLMWindowID /*window*/, int x, int y, XPLMMouseStatus status,
                        void* refcon) {
    WidgetTree& tree = Simulator::Current().Widgets();
    Widget* const root = tree.widgets.Find(refcon);
    if (root != nullptr) {
        tree.click(*root, x, y, status);
    }
    return 1;
}

void WidgetTree::onKey(XPLMWindowID /*window*/, char key, XPLMKeyFlags flags, char virtualKey,
                       void* /*refcon*/, int losingFocus) {
    WidgetTree& tree = Simulator::Current().Widgets();
    if (tree.focused == nullptr) {
        return;
    }
    if (losingFocus != 0) {
        tree.TakeFocus(nullptr);
        return;
    }
    const XPKeyState_t state{key, flags, virtualKey};
    tree.Send(tree.focused, xpMsg_KeyPress, xpMode_UpChain, parameterOf(&state), 0);
}

bool WidgetTree::call(Widget& widget, XPWidgetMessage message, intptr_t first, intptr_t second,
                      bool all) {
    if (widgets.Find(&widget) == nullptr || !widgets.IsActive(widget)) {
        return false;
    }
    const PluginContext::Call called(context, widgets.OwnerOf(widget), "widget callback");
    bool handled = false;
    // Callbacks may be added while they are called.
    const std::vector<XPWidgetFunc_t> newestFirst(widget.callbacks.rbegin(),
                                                  widget.callbacks.rend());
    for (const XPWidgetFunc_t callback : newestFirst) {
        handled = called.Into(callback, message, &widget, first, second) != 0 || handled;
        if ((handled && !all) || widgets.Find(&widget) == nullptr) {
            break;
        }
    }
    return handled;
}

bool WidgetTree::click(Widget& root, int x, int y, XPLMMouseStatus status) {
    const XPMouseState_t state{x, y, 0, 0};
    if (status == xplm_MouseDown) {
        Widget* widget = At(&root, x, y, true, true);
        // The widget that handles the press also gets the drag and the release.
        while (widget != nullptr &&
               !call(*widget, xpMsg_MouseDown, parameterOf(&state), 0, false)) {
            widget = widgets.Find(widget) == nullptr ? nullptr : widget->parent;
        }
        grabbing = widget != nullptr && widgets.Find(widget) != nullptr ? widget : nullptr;
        return grabbing != nullptr;
    }
    if (grabbing == nullptr) {
        return false;
    }
    Widget* const held = status == xplm_MouseUp ? std::exchange(grabbing, nullptr) : grabbing;
    return call(*held, status == xplm_MouseUp ? xpMsg_MouseUp : xpMsg_MouseDrag,
                parameterOf(&state), 0, false);
}

void WidgetTree::makeWindow(Widget& widget) {
    XPLMCreateWindow_t window{};
    window.structSize = sizeof window;
    window.left = widget.geometry.left;
    window.top = widget.geometry.top;
    window.right = widget.geometry.right;
    window.bottom = widget.geometry.bottom;
    window.visible = widget.visible ? 1 : 0;
    window.handleMouseClickFunc = &WidgetTree::onClick;
    window.handleKeyFunc = &WidgetTree::onKey;
    window.refcon = &widget;
    widget.window = windows.Create(window);
}

void WidgetTree::detach(Widget& widget) {
    if (Widget* const parent = std::exchange(widget.parent, nullptr)) {
        std::erase(parent->children, &widget);
        call(*parent, xpMsg_LoseChild, parameterOf(&widget), 0, false);
    }
}

void WidgetTree::forgetMissing() {
    if (widgets.Find(focused) == nullptr) {
        focused = nullptr;
    }
    if (widgets.Find(grabbing) == nullptr) {
        grabbing = nullptr;
    }
}

} // namespace headless
