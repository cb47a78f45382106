#include "XPUIGraphics.h"

#include <algorithm>

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"

using headless::give;
using headless::here;

namespace {

// Sizes that all styles share, because nothing is drawn.
constexpr int kWindowSize = 100;
constexpr int kElementSize = 16;
constexpr int kTrackWidth = 16;
constexpr int kTrackButton = 16;

} // namespace

void XPDrawWindow(int /*inX1*/, int /*inY1*/, int /*inX2*/, int /*inY2*/,
                  XPWindowStyle /*inStyle*/) {
    here().Draw();
}

void XPGetWindowDefaultDimensions(XPWindowStyle /*inStyle*/, int* outWidth, int* outHeight) {
    here();
    give(outWidth, kWindowSize);
    give(outHeight, kWindowSize);
}

void XPDrawElement(int /*inX1*/, int /*inY1*/, int /*inX2*/, int /*inY2*/,
                   XPElementStyle /*inStyle*/, int /*inLit*/) {
    here().Draw();
}

void XPGetElementDefaultDimensions(XPElementStyle /*inStyle*/, int* outWidth, int* outHeight,
                                   int* outCanBeLit) {
    here();
    give(outWidth, kElementSize);
    give(outHeight, kElementSize);
    give(outCanBeLit, 1);
}

void XPDrawTrack(int /*inX1*/, int /*inY1*/, int /*inX2*/, int /*inY2*/, int /*inMin*/,
                 int /*inMax*/, int /*inValue*/, XPTrackStyle /*inTrackStyle*/, int /*inLit*/) {
    here().Draw();
}

void XPGetTrackDefaultDimensions(XPTrackStyle /*inStyle*/, int* outWidth, int* outCanBeLit) {
    here();
    give(outWidth, kTrackWidth);
    give(outCanBeLit, 1);
}

void XPGetTrackMetrics(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue,
                       XPTrackStyle inTrackStyle, int* outIsVertical, int* outDownBtnSize,
                       int* outDownPageSize, int* outThumbSize, int* outUpPageSize,
                       int* outUpBtnSize) {
    here();
    const bool vertical = inY2 - inY1 > inX2 - inX1;
    const int length = std::max(0, vertical ? inY2 - inY1 : inX2 - inX1);
    const bool hasButtons = inTrackStyle == xpTrack_ScrollBar && length > 2 * kTrackButton;
    const int button = hasButtons ? kTrackButton : 0;
    const int thumb = std::min(kTrackButton, length - 2 * button);
    const int way = length - 2 * button - thumb;
    const double place = inMax > inMin ? std::clamp((static_cast<double>(inValue) - inMin) /
                                                        (static_cast<double>(inMax) - inMin),
                                                    0.0, 1.0)
                                       : 0.0;
    const int below = static_cast<int>(place * way);
    give(outIsVertical, vertical ? 1 : 0);
    give(outDownBtnSize, button);
    give(outDownPageSize, below);
    give(outThumbSize, thumb);
    give(outUpPageSize, way - below);
    give(outUpBtnSize, button);
}
