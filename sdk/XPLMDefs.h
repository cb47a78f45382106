#pragma once

// The simulator's plugin SDK: basic types, keys and linkage.
//
// These headers carry the SDK's own file names and exact C signatures, so that the same sources
// build against the simulator vendor's headers as well (see XPLANE_SDK_DIR in the build).
// None of the functions is implemented here: the simulator provides them to a loaded plugin.

#include <stdint.h>

#define XPLM_API extern "C" __attribute__((visibility("default")))
#define PLUGIN_API extern "C" __attribute__((visibility("default")))

// The version of the SDK that these headers describe, 4.2.0.
#define kXPLM_Version (420)

// Identifies a loaded plugin for as long as it stays loaded.
typedef int XPLMPluginID;

// The result of a plugin look-up that found nothing.
#define XPLM_NO_PLUGIN_ID (-1)

// The simulator itself, as the sender of a message.
#define XPLM_PLUGIN_XPLANE (0)

// Modifiers of a key, and whether it goes down or up.
typedef int XPLMKeyFlags;

enum {
    xplm_ShiftFlag = 1,
    xplm_OptionAltFlag = 2,
    xplm_ControlFlag = 4,
    xplm_DownFlag = 8,
    xplm_UpFlag = 16
};

// Virtual keys: letters and digits are their ASCII codes.
#define XPLM_VK_BACK 0x08
#define XPLM_VK_TAB 0x09
#define XPLM_VK_CLEAR 0x0C
#define XPLM_VK_RETURN 0x0D
#define XPLM_VK_ESCAPE 0x1B
#define XPLM_VK_SPACE 0x20
#define XPLM_VK_PRIOR 0x21
#define XPLM_VK_NEXT 0x22
#define XPLM_VK_END 0x23
#define XPLM_VK_HOME 0x24
#define XPLM_VK_LEFT 0x25
#define XPLM_VK_UP 0x26
#define XPLM_VK_RIGHT 0x27
#define XPLM_VK_DOWN 0x28
#define XPLM_VK_INSERT 0x2D
#define XPLM_VK_DELETE 0x2E
#define XPLM_VK_NUMPAD0 0x60
#define XPLM_VK_NUMPAD9 0x69
#define XPLM_VK_MULTIPLY 0x6A
#define XPLM_VK_ADD 0x6B
#define XPLM_VK_SEPARATOR 0x6C
#define XPLM_VK_SUBTRACT 0x6D
#define XPLM_VK_DECIMAL 0x6E
#define XPLM_VK_DIVIDE 0x6F
#define XPLM_VK_F1 0x70
#define XPLM_VK_F12 0x7B
#define XPLM_VK_F24 0x87
#define XPLM_VK_EQUAL 0xB0
#define XPLM_VK_MINUS 0xB1
#define XPLM_VK_RBRACE 0xB2
#define XPLM_VK_LBRACE 0xB3
#define XPLM_VK_QUOTE 0xB4
#define XPLM_VK_SEMICOLON 0xB5
#define XPLM_VK_BACKSLASH 0xB6
#define XPLM_VK_COMMA 0xB7
#define XPLM_VK_SLASH 0xB8
#define XPLM_VK_PERIOD 0xB9
#define XPLM_VK_BACKQUOTE 0xBA
#define XPLM_VK_ENTER 0xBB
#define XPLM_VK_NUMPAD_ENT 0xBC
#define XPLM_VK_NUMPAD_EQ 0xBD

typedef struct {
    char buffer[150];
} XPLMFixedString150_t;

typedef int XPLMCursorStatus;

enum { xplm_CursorDefault = 0, xplm_CursorHidden = 1, xplm_CursorArrow = 2, xplm_CursorCustom = 3 };

typedef int XPLMMouseStatus;

enum { xplm_MouseDown = 1, xplm_MouseDrag = 2, xplm_MouseUp = 3 };
