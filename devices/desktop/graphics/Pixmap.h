#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "graphics/Geometry.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// Pixels to read, in the format of a Surface; owns nothing.
struct PixelView {
    const uint32_t* pixels;
    size_t stride;  ///< pixels between rows
    uint32_t width;
    uint32_t height;
    bool opaque;  ///< every pixel is known to have alpha 255

    const uint32_t* row(int64_t y) const { return pixels + static_cast<size_t>(y) * stride; }
    Box bounds() const { return {0, 0, width, height}; }

    /// A box within the bounds, as a view of its own.
    PixelView part(const Box& box) const {
        return {row(box.top) + box.left, stride, static_cast<uint32_t>(box.width()),
                static_cast<uint32_t>(box.height()), opaque};
    }
};

inline PixelView viewOf(const Surface& surface) {
    return {surface.row(0), surface.stride(), surface.width(), surface.height(),
            surface.isOpaque()};
}

/// Working memory of one operation; like a Surface it may be read a little past its end.
class Pixmap {
  public:
    Pixmap(uint32_t width, uint32_t height)
        : m_width(width), m_height(height), m_pixels(size_t{width} * height + kSlack) {}

    explicit Pixmap(const PixelView& copied) : Pixmap(copied.width, copied.height) {
        for (uint32_t y = 0; y < m_height; ++y) {
            const uint32_t* from = copied.row(y);
            std::copy(from, from + m_width, row(y));
        }
    }

    uint32_t* row(uint32_t y) { return m_pixels.data() + size_t{y} * m_width; }
    PixelView view(bool opaque) const {
        return {m_pixels.data(), m_width, m_width, m_height, opaque};
    }

  private:
    static constexpr size_t kSlack = 16;

    uint32_t m_width;
    uint32_t m_height;
    std::vector<uint32_t> m_pixels;
};

}  // namespace quiravent::desktop
