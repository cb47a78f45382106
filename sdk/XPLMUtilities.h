#pragma once

// The simulator's log, and its commands: named actions that keys, buttons and plugins trigger.

#include "XPLMDefs.h"

// Appends the text to the simulator's log as it stands; no newline is added.
XPLM_API void XPLMDebugString(const char* inString);

typedef int XPLMCommandPhase;

enum { xplm_CommandBegin = 0, xplm_CommandContinue = 1, xplm_CommandEnd = 2 };

typedef void* XPLMCommandRef;

// Returns 1 to let the command go on to other handlers and the simulator, 0 to swallow it.
typedef int (*XPLMCommandCallback_f)(XPLMCommandRef inCommand, XPLMCommandPhase inPhase,
                                     void* inRefcon);

// Returns null for an unknown name.
XPLM_API XPLMCommandRef XPLMFindCommand(const char* inName);
XPLM_API void XPLMCommandBegin(XPLMCommandRef inCommand);
XPLM_API void XPLMCommandEnd(XPLMCommandRef inCommand);
XPLM_API void XPLMCommandOnce(XPLMCommandRef inCommand);
// Returns the existing command if the name is known.
XPLM_API XPLMCommandRef XPLMCreateCommand(const char* inName, const char* inDescription);
// `inBefore` is 1 for a handler that runs before the simulator's own.
XPLM_API void XPLMRegisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                         int inBefore, void* inRefcon);
XPLM_API void XPLMUnregisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                           int inBefore, void* inRefcon);
