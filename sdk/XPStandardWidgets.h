#pragma once

// The classes of widgets that the simulator has, with their properties and messages.

#include "XPWidgetDefs.h"

#define xpWidgetClass_MainWindow 1
#define xpWidgetClass_SubWindow 2
#define xpWidgetClass_Button 3
#define xpWidgetClass_TextField 4
#define xpWidgetClass_ScrollBar 5
#define xpWidgetClass_Caption 6
#define xpWidgetClass_GeneralGraphics 7
#define xpWidgetClass_Progress 8

enum { xpMainWindowStyle_MainWindow = 0, xpMainWindowStyle_Translucent = 1 };

enum {
    xpProperty_MainWindowType = 1100,
    xpProperty_MainWindowHasCloseBoxes = 1200,
    xpMessage_CloseButtonPushed = 1200
};

enum { xpSubWindowStyle_SubWindow = 0, xpSubWindowStyle_Screen = 2, xpSubWindowStyle_ListView = 3 };

enum { xpProperty_SubWindowType = 1200 };

enum {
    xpPushButton = 0,
    xpRadioButton = 1,
    xpWindowCloseBox = 3,
    xpLittleDownArrow = 5,
    xpLittleUpArrow = 6
};

enum {
    xpButtonBehaviorPushButton = 0,
    xpButtonBehaviorCheckBox = 1,
    xpButtonBehaviorRadioButton = 2
};

enum {
    xpProperty_ButtonType = 1300,
    xpProperty_ButtonBehavior = 1301,
    xpProperty_ButtonState = 1302,
    xpMsg_PushButtonPressed = 1300,
    xpMsg_ButtonStateChanged = 1301
};

enum { xpTextEntryField = 0, xpTextTransparent = 3, xpTextTranslucent = 4 };

enum {
    xpProperty_EditFieldSelStart = 1400,
    xpProperty_EditFieldSelEnd = 1401,
    xpProperty_EditFieldSelDragStart = 1402,
    xpProperty_TextFieldType = 1403,
    xpProperty_PasswordMode = 1404,
    xpProperty_MaxCharacters = 1405,
    xpProperty_ScrollPosition = 1406,
    xpProperty_Font = 1407,
    xpProperty_ActiveEditSide = 1408,
    xpMsg_TextFieldChanged = 1400
};

enum { xpScrollBarTypeScrollBar = 0, xpScrollBarTypeSlider = 1 };

enum {
    xpProperty_ScrollBarSliderPosition = 1500,
    xpProperty_ScrollBarMin = 1501,
    xpProperty_ScrollBarMax = 1502,
    xpProperty_ScrollBarPageAmount = 1503,
    xpProperty_ScrollBarType = 1504,
    xpProperty_ScrollBarSlop = 1505,
    xpMsg_ScrollBarSliderPositionChanged = 1500
};

enum { xpProperty_CaptionLit = 1600 };
enum { xpProperty_GeneralGraphicsType = 1700 };

enum {
    xpProperty_ProgressPosition = 1800,
    xpProperty_ProgressMin = 1801,
    xpProperty_ProgressMax = 1802
};
