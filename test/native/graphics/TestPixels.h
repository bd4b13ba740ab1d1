#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "graphics/Surface.h"

namespace quiravent::desktop::test {

inline std::shared_ptr<Surface> newSurface(uint32_t width, uint32_t height, uint32_t pixel = 0) {
    static SurfacePool pool(size_t{64} << 20);
    std::shared_ptr<Surface> surface = pool.create(width, height);
    for (uint32_t y = 0; y < height; ++y) {
        std::fill(surface->row(y), surface->row(y) + width, pixel);
    }
    surface->setOpaque(pixel >> 24 == 255);
    return surface;
}

inline int channel(uint32_t pixel, int index) {
    return static_cast<int>(pixel >> (8 * index) & 255);
}

/// Premultiplied pixels, with the alphas 0 and 255 as frequent as in real pictures.
class RandomPixels {
  public:
    uint32_t next() {
        const uint32_t kind = m_engine() % 4;
        const uint32_t alpha = kind == 0 ? 0 : kind == 1 ? 255 : m_engine() % 256;
        return withAlpha(alpha);
    }
    uint32_t withAlpha(uint32_t alpha) {
        const auto color = [&] { return static_cast<uint32_t>(m_engine() % (alpha + 1)); };
        return alpha << 24 | color() << 16 | color() << 8 | color();
    }
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(m_engine() % limit); }

    void fill(Surface& surface, bool opaque) {
        for (uint32_t y = 0; y < surface.height(); ++y) {
            for (uint32_t x = 0; x < surface.width(); ++x) {
                surface.row(y)[x] = opaque ? withAlpha(255) : next();
            }
        }
        surface.setOpaque(opaque);
    }

  private:
    std::mt19937 m_engine{12345};
};

inline std::shared_ptr<Surface> randomSurface(uint32_t width, uint32_t height,
                                              bool opaque = false) {
    std::shared_ptr<Surface> surface = newSurface(width, height);
    RandomPixels().fill(*surface, opaque);
    return surface;
}

/// A surface's pixels row by row, without the padding of rows.
inline std::vector<uint32_t> pixelsOf(const Surface& surface) {
    std::vector<uint32_t> pixels;
    for (uint32_t y = 0; y < surface.height(); ++y) {
        pixels.insert(pixels.end(), surface.row(y), surface.row(y) + surface.width());
    }
    return pixels;
}

/// Largest difference of a channel.
inline int distance(uint32_t a, uint32_t b) {
    int most = 0;
    for (int i = 0; i < 4; ++i) most = std::max(most, std::abs(channel(a, i) - channel(b, i)));
    return most;
}

inline int distance(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b) {
    int most = a.size() == b.size() ? 0 : 256;
    for (size_t i = 0; i < a.size() && most < 256; ++i) most = std::max(most, distance(a[i], b[i]));
    return most;
}

inline bool isPremultiplied(uint32_t pixel) {
    const int alpha = channel(pixel, 3);
    return channel(pixel, 0) <= alpha && channel(pixel, 1) <= alpha && channel(pixel, 2) <= alpha;
}

}  // namespace quiravent::desktop::test
