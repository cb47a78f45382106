#pragma once

#include "headless/xplm/Outputs.h"

namespace headless {

// A rectangle of boxels; y counts upward.
struct Rectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return top - bottom; }
    bool Contains(int x, int y) const { return x >= left && x <= right && y >= bottom && y <= top; }
    bool operator==(const Rectangle&) const = default;
};

// Any output may be null.
inline void giveRectangle(const Rectangle& rectangle, int* left, int* top, int* right,
                          int* bottom) {
    give(left, rectangle.left);
    give(top, rectangle.top);
    give(right, rectangle.right);
    give(bottom, rectangle.bottom);
}

// The geometry of a window, a widget or a device. Null has no extent, and takes none.
template <class Shape>
void giveGeometry(const Shape* shape, int* left, int* top, int* right, int* bottom) {
    giveRectangle(shape == nullptr ? Rectangle{} : shape->geometry, left, top, right, bottom);
}

template <class Shape>
void takeGeometry(Shape* shape, const Rectangle& geometry) {
    if (shape != nullptr) {
        shape->geometry = geometry;
    }
}

// The only monitor, and the mouse in the middle of it.
constexpr Rectangle kScreen{0, 1080, 1920, 0};
constexpr int kMouseX = kScreen.right / 2;
constexpr int kMouseY = kScreen.top / 2;

} // namespace headless
