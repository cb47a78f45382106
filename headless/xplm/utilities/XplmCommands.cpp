// The commands of XPLMUtilities.h.

#include "XPLMUtilities.h"
#include "headless/xplm/Here.h"

using headless::here;

XPLMCommandRef XPLMFindCommand(const char* inName) {
    return here().Commands().Find(inName);
}

void XPLMCommandBegin(XPLMCommandRef inCommand) {
    here().Commands().Begin(inCommand);
}

void XPLMCommandEnd(XPLMCommandRef inCommand) {
    here().Commands().End(inCommand);
}

void XPLMCommandOnce(XPLMCommandRef inCommand) {
    here().Commands().Once(inCommand);
}

XPLMCommandRef XPLMCreateCommand(const char* inName, const char* inDescription) {
    return here().Commands().Create(inName, inDescription);
}

void XPLMRegisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                int inBefore, void* inRefcon) {
    here().Commands().RegisterHandler(inComand, inHandler, inBefore != 0, inRefcon);
}

void XPLMUnregisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                  int inBefore, void* inRefcon) {
    here().Commands().UnregisterHandler(inComand, inHandler, inBefore != 0, inRefcon);
}
