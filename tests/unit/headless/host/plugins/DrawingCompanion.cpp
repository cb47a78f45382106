// The library that DrawingPlugin brings along.

#include "XPLMProcessing.h"

extern "C" int glHeadlessCompanionInteger();

extern "C" __attribute__((visibility("default"))) int companionInteger() {
    return glHeadlessCompanionInteger() + XPLMGetCycleNumber();
}
