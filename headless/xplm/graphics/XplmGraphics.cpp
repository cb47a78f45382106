#include "XPLMGraphics.h"

#include <algorithm>
#include <cstring>

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/graphics/LocalFrame.h"

using headless::give;
using headless::here;

namespace {

// Every font has the size of the basic one.
constexpr int kCharacterWidth = 6;
constexpr int kCharacterHeight = 10;

} // namespace

void XPLMSetGraphicsState(int /*inEnableFog*/, int /*inNumberTexUnits*/, int /*inEnableLighting*/,
                          int /*inEnableAlphaTesting*/, int /*inEnableAlphaBlending*/,
                          int /*inEnableDepthTesting*/, int /*inEnableDepthWriting*/) {
    here();
}

void XPLMBindTexture2d(int /*inTextureNum*/, int /*inTextureUnit*/) {
    here();
}

void XPLMGenerateTextureNumbers(int* outTextureIDs, int inCount) {
    headless::Simulator& simulator = here();
    for (int i = 0; i < inCount && outTextureIDs != nullptr; ++i) {
        outTextureIDs[i] = simulator.NextTexture();
    }
}

int XPLMGetTexture(XPLMTextureID /*inTexture*/) {
    here().NotSimulated();
    return 0;
}

void XPLMWorldToLocal(double inLatitude, double inLongitude, double inAltitude, double* outX,
                      double* outY, double* outZ) {
    here();
    const auto local = headless::toLocal({inLatitude, inLongitude, inAltitude});
    give(outX, local.x);
    give(outY, local.y);
    give(outZ, local.z);
}

void XPLMLocalToWorld(double inX, double inY, double inZ, double* outLatitude, double* outLongitude,
                      double* outAltitude) {
    here();
    const auto world = headless::toWorld({inX, inY, inZ});
    give(outLatitude, world.latitude);
    give(outLongitude, world.longitude);
    give(outAltitude, world.altitude);
}

void XPLMDrawTranslucentDarkBox(int /*inLeft*/, int /*inTop*/, int /*inRight*/, int /*inBottom*/) {
    here().Draw();
}

void XPLMDrawString(float* /*inColorRGB*/, int /*inXOffset*/, int /*inYOffset*/,
                    const char* /*inChar*/, int* /*inWordWrapWidth*/, XPLMFontID /*inFontID*/) {
    here().Draw();
}

void XPLMDrawNumber(float* /*inColorRGB*/, int /*inXOffset*/, int /*inYOffset*/, double /*inValue*/,
                    int /*inDigits*/, int /*inDecimals*/, int /*inShowSign*/,
                    XPLMFontID /*inFontID*/) {
    here().Draw();
}

void XPLMGetFontDimensions(XPLMFontID /*inFontID*/, int* outCharWidth, int* outCharHeight,
                           int* outDigitsOnly) {
    here();
    give(outCharWidth, kCharacterWidth);
    give(outCharHeight, kCharacterHeight);
    give(outDigitsOnly, 0);
}

float XPLMMeasureString(XPLMFontID /*inFontID*/, const char* inChar, int inNumChars) {
    here();
    const auto most = static_cast<std::size_t>(std::max(0, inNumChars));
    const std::size_t length = inChar == nullptr ? 0 : ::strnlen(inChar, most);
    return static_cast<float>(length) * static_cast<float>(kCharacterWidth);
}
