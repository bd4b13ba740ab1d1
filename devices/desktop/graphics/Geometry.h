#pragma once

#include <algorithm>
#include <cstdint>

namespace quiravent::desktop {

/// A rectangle as a script gives it: x and y are two's-complement signed (a script's -10 arrives
/// as 4294967286), width and height are unsigned.
struct Rect {
    uint32_t x;
    uint32_t y;
    uint32_t width;
    uint32_t height;
};

/// A rectangle in pixels with its right and bottom edges excluded. 64 bits hold every Rect and
/// every sum of two coordinates.
struct Box {
    int64_t left;
    int64_t top;
    int64_t right;
    int64_t bottom;

    int64_t width() const { return right - left; }
    int64_t height() const { return bottom - top; }
    bool empty() const { return left >= right || top >= bottom; }
    bool operator==(const Box& other) const {
        return left == other.left && top == other.top && right == other.right &&
               bottom == other.bottom;
    }
    Box shifted(int64_t dx, int64_t dy) const {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }
};

/// The coordinate that a script's unsigned number stands for.
inline int64_t signedCoordinate(uint32_t value) { return static_cast<int32_t>(value); }

inline Box boxAt(int64_t x, int64_t y, int64_t width, int64_t height) {
    return {x, y, x + width, y + height};
}

inline Box toBox(const Rect& rect) {
    return boxAt(signedCoordinate(rect.x), signedCoordinate(rect.y), rect.width, rect.height);
}

/// May be empty() with its edges crossed.
inline Box intersection(const Box& a, const Box& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

}  // namespace quiravent::desktop
