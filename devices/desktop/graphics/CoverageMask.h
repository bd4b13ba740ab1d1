#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

/// One rectangle of 8-bit coverage to be painted in the current colour: 0 leaves a pixel alone,
/// 255 covers it whole. The bytes belong to whoever made the mask (a font's glyph cache, say).
struct CoverageMask {
    int32_t x;  ///< left edge on the surface, in pixels; may lie outside of it
    int32_t y;  ///< top edge
    uint32_t width;
    uint32_t height;
    size_t stride;  ///< bytes between rows
    const uint8_t* coverage;
};

}  // namespace quiravent::desktop
