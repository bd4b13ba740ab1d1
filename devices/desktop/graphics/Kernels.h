#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/PorterDuff.h"

namespace quiravent::desktop {

/// Neighbouring pixels of a row, each with what a shape covers of it: 0 to 255. What has no
/// coverage stays as it is, and is there only because pixels are painted by the block.
struct CoverageBlock {
    static constexpr uint32_t kPixels = 8;

    uint16_t x;  ///< of the first pixel, from the shape's left edge
    uint16_t y;  ///< from its top edge
    uint8_t coverage[kPixels];
};

/// Pixels (ARGB32) or coverage (bytes) that a bilinear sampler reads; sides are at least 1.
template <typename Value>
struct SampleSource {
    const Value* values;
    size_t stride;  ///< values between rows
    uint32_t width;
    uint32_t height;
};

/// Where a row is sampled, in 32.32 fixed point: the position of its first value, 0 being the
/// centre of the source's first, and the step from each to the next.
struct SampleSteps {
    int64_t x;
    int64_t y;
    int64_t stepX;
    int64_t stepY;
};

/// Added to a position, rounds it to a weight of 1/128: its bits 25 to 31.
static constexpr int64_t kHalfSampleWeight = int64_t{1} << 24;

/// Filter weights of one axis of a scaled picture: each sum of `taps` weights is 1 << shift.
struct FilterRow {
    const uint32_t* first;   ///< per output pixel, the input pixel of its first weight
    const int16_t* weights;  ///< `stride` per output pixel: `taps`, none negative, then zeros
    uint32_t taps;
    uint32_t stride;  ///< strideForTaps(taps)
    uint32_t shift;   ///< 7, then taps are at most 8, or 14
};

/// Weights are padded to full vectors: by 2, 4 or 8 pixels at a time, whatever holds the taps.
static constexpr uint32_t strideForTaps(uint32_t taps) {
    return taps <= 2 ? 2 : taps <= 4 ? 4 : (taps + 7) / 8 * 8;
}

/// Pixels to paint: `height` rows of `width`, `stride` pixels apart.
struct PixelBlock {
    uint32_t* pixels;
    size_t stride;
    size_t width;
    size_t height;
};

/// What works on rows of pixels, all premultiplied ARGB32. Destination and source rows must not
/// overlap. Source pixels, but not masks, may be read up to 16 pixels past their end. `opacity` and
/// mask bytes run from 0 to 255 and are applied as follows: opacity multiplies the source, then the
/// mode is applied, then the result replaces the destination in the proportion of the coverage.
/// Each of those steps is rounded once, to nearest, so that every implementation agrees bit for
/// bit.
using Fill = void (*)(const PixelBlock& block, uint32_t color);
using ComposeRow = void (*)(uint32_t* destination, const uint32_t* source, size_t count,
                            uint32_t opacity);
using FillMask = void (*)(const PixelBlock& block, const uint8_t* mask, size_t maskStride,
                          uint32_t color);
using ComposeMaskRow = void (*)(uint32_t* destination, const uint32_t* source, const uint8_t* mask,
                                size_t count, uint32_t opacity);

/// Paints `count` blocks in turn, counted from the pixel `corner` on. All pixels of the blocks
/// belong to the surface, though the portable implementation touches those with coverage only.
using FillBlocks = void (*)(uint32_t* corner, size_t stride, const CoverageBlock* blocks,
                            size_t count, uint32_t color);

/// The row operations of one Porter-Duff mode.
struct ModeKernels {
    Fill fill;
    ComposeRow compose;
    FillMask fillMask;
    ComposeMaskRow composeMask;
    FillBlocks fillBlocks;
};

/// One implementation of all row operations, for one level of processor.
struct Kernels {
    ModeKernels modes[kPorterDuffModes];  ///< by mode code

    Fill fill;        ///< stores the colour, whatever its alpha
    ComposeRow copy;  ///< stores the source; ignores opacity
    ComposeRow over;  ///< source-over; ignores opacity
    ComposeRow fade;  ///< source-over of an opaque source by opacity, rounded once

    /// Weighted mean of `taps` rows: one weight per row, their sum 1 << shift.
    void (*mixRows)(uint32_t* destination, const uint32_t* const* rows, const int16_t* weights,
                    uint32_t taps, uint32_t shift, size_t count);
    /// Weighted means along one row.
    void (*filterRow)(uint32_t* destination, const uint32_t* source, const FilterRow& filter,
                      size_t count);
    /// Mean of 2 by 2 pixels, halves rounded up: reads 2 * count pixels of both rows.
    void (*halveRows)(uint32_t* destination, const uint32_t* upper, const uint32_t* lower,
                      size_t count);

    /// Bilinear samples; positions outside read the nearest edge. Positions are rounded to 1/128.
    /// Columns are mixed first, exactly; then the way from the upper row to the lower is added, and
    /// the sum made a byte, each rounded to nearest, halves upwards.
    void (*samplePixels)(uint32_t* destination, const SampleSource<uint32_t>& source,
                         const SampleSteps& steps, size_t count);
    void (*sampleCoverage)(uint8_t* destination, const SampleSource<uint8_t>& source,
                           const SampleSteps& steps, size_t count);
};

/// The implementation in use: the fastest that this machine can run, unless selectKernels() has
/// named another.
const Kernels& kernels();

}  // namespace quiravent::desktop
