#pragma once

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

// The one monitor that there would be, and the mouse in the middle of it.
constexpr Rectangle kScreen{0, 1080, 1920, 0};
constexpr int kMouseX = kScreen.right / 2;
constexpr int kMouseY = kScreen.top / 2;

} // namespace headless
