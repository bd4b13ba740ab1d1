#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// Vertical measures of a font at its size, in whole pixels, each rounded up.
struct FontMetrics {
    uint32_t ascent;      ///< from the baseline up
    uint32_t descent;     ///< from the baseline down
    uint32_t lineHeight;  ///< recommended distance between two baselines

    uint32_t height() const { return ascent + descent; }
};

struct TextSize {
    uint32_t width;
    uint32_t height;
};

/// How a text lies about its point, as the codes of the porting layer. Unknown codes act as 0.
struct TextAlignment {
    uint32_t horizontal = 0;  ///< the point is at 0 the left, 1 the centre, 2 the right
    uint32_t vertical = 0;    ///< ... and on 0 the baseline, 1 the top, 2 the middle, 3 the bottom
};

/// A point for a text: where its pen starts, and its baseline.
struct TextOrigin {
    int64_t x = 0;         ///< in 64ths of a pixel
    int32_t baseline = 0;  ///< in whole pixels
};

/// Part of a surface, right and bottom exclusive.
struct PixelArea {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

/// Where the pen starts for a text of that advance (in 64ths of a pixel) drawn at (x, y). The box
/// that is aligned spans the advance and ascent + descent, whatever ink the glyphs have; a centred
/// text keeps its fraction of a pixel.
TextOrigin alignedOrigin(const FontMetrics& metrics, int64_t advance, int32_t x, int32_t y,
                         TextAlignment alignment);

}  // namespace quiravent::desktop
