#include "headless/xplm/widgets/StandardWidgets.h"

#include <bit>
#include <string>

#include "XPStandardWidgets.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/widgets/WidgetTree.h"

namespace headless {

namespace {

WidgetTree& tree() {
    return Simulator::Current().Widgets();
}

intptr_t propertyOf(const Widget& widget, XPWidgetPropertyID property) {
    const auto found = widget.properties.find(property);
    return found == widget.properties.end() ? 0 : found->second;
}

void pressButton(Widget& button) {
    const auto self = std::bit_cast<intptr_t>(&button);
    const intptr_t behaviour = propertyOf(button, xpProperty_ButtonBehavior);
    if (behaviour == xpButtonBehaviorPushButton) {
        tree().Send(&button, xpMsg_PushButtonPressed, xpMode_UpChain, self, 0);
        return;
    }
    const intptr_t state = propertyOf(button, xpProperty_ButtonState);
    const intptr_t next = behaviour == xpButtonBehaviorCheckBox && state != 0 ? 0 : 1;
    tree().SetProperty(&button, xpProperty_ButtonState, next);
    tree().Send(&button, xpMsg_ButtonStateChanged, xpMode_UpChain, self, next);
}

int plain(XPWidgetMessage /*message*/, XPWidgetID /*widget*/, intptr_t /*first*/,
          intptr_t /*second*/) {
    return 0;
}

int button(XPWidgetMessage message, XPWidgetID handle, intptr_t first, intptr_t /*second*/) {
    Widget* const widget = tree().Resolve(handle);
    if (widget == nullptr || (message != xpMsg_MouseDown && message != xpMsg_MouseUp)) {
        return 0;
    }
    const auto* const mouse = std::bit_cast<const XPMouseState_t*>(first);
    if (message == xpMsg_MouseUp && widget->geometry.Contains(mouse->x, mouse->y)) {
        pressButton(*widget);
    }
    return 1;
}

void typeInto(Widget& field, const XPKeyState_t& key) {
    constexpr char kFirstPrintable = 32;
    constexpr char kDelete = 127;
    std::string text = field.descriptor;
    if (static_cast<unsigned char>(key.vkey) == XPLM_VK_BACK) {
        text = text.substr(0, text.empty() ? 0 : text.size() - 1);
    } else if (key.key >= kFirstPrintable && key.key != kDelete) {
        text += key.key;
    }
    tree().SetDescriptor(&field, text.c_str());
    tree().Send(&field, xpMsg_TextFieldChanged, xpMode_UpChain, std::bit_cast<intptr_t>(&field), 0);
}

int textField(XPWidgetMessage message, XPWidgetID handle, intptr_t first, intptr_t /*second*/) {
    Widget* const widget = tree().Resolve(handle);
    if (widget == nullptr) {
        return 0;
    }
    if (message == xpMsg_MouseDown) {
        tree().TakeFocus(handle);
        return 1;
    }
    if (message == xpMsg_KeyPress) {
        const auto* const key = std::bit_cast<const XPKeyState_t*>(first);
        if ((key->flags & xplm_UpFlag) == 0) {
            typeInto(*widget, *key);
        }
        return 1;
    }
    return message == xpMsg_KeyTakeFocus || message == xpMsg_KeyLoseFocus ? 1 : 0;
}

} // namespace

XPWidgetFunc_t standardWidgetFunction(XPWidgetClass widgetClass) {
    switch (widgetClass) {
    case xpWidgetClass_Button:
        return &button;
    case xpWidgetClass_TextField:
        return &textField;
    default:
        return widgetClass >= xpWidgetClass_MainWindow && widgetClass <= xpWidgetClass_Progress
                   ? &plain
                   : nullptr;
    }
}

} // namespace headless
