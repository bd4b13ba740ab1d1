#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/FetchAhead.h"
#include "graphics/Kernels.h"
#include "graphics/PixelBlend.h"

namespace quiravent::desktop {

// The row operations, written once for all vector units. Each unit's source includes this header
// and gives a class V of its own anonymous namespace, so that what is instantiated here belongs to
// that source alone: compiled for a better processor, it must never be taken for anyone else's.
//
// V has: kPixels pixels in one V::Pixels; load, store, loadPart and storePart (1 to kPixels - 1
// pixels); splat (a pixel, repeated), weight (a byte, repeated); coverage and coveragePart (mask
// bytes, each repeated for the channels of its pixel); shares and sharesPart (mask bytes as the
// class Paint takes them, whose over() mixes an opaque colour in); alphas (of each pixel, repeated
// for its channels); inverted (255 - x); sum, saturatedSum; scaled (a * w / 255), mixed ((a * u + b
// * v) / 255), both rounded to nearest; isTransparent and isOpaque (all of them). For a weight that
// is the same for all pixels, a V::Ratio: ratio (of a byte), scaledBy (a * w / 255), interpolated
// ((a * (255 - w) + b * w) / 255). For scaling, classes CoarseSums and FineSums of weighted pixels:
// weights (of two pixels), add, rounded.

template <class V>
using PixelsOf = typename V::Pixels;

template <class V, Factor factor>
static inline PixelsOf<V> weightsOf(PixelsOf<V> source, PixelsOf<V> destination) {
    if constexpr (factor == Factor::sourceAlpha) return V::alphas(source);
    if constexpr (factor == Factor::destinationAlpha) return V::alphas(destination);
    if constexpr (factor == Factor::inverseSourceAlpha) return V::inverted(V::alphas(source));
    return V::inverted(V::alphas(destination));
}

/// blend<mode> of PixelBlend.h for as many pixels as V holds; where a factor is 0 or 1, what is
/// left out changes no rounding.
template <class V, uint32_t mode>
static inline PixelsOf<V> blendPixels(PixelsOf<V> source, PixelsOf<V> destination) {
    constexpr PorterDuff kMode = kPorterDuff[mode];
    if constexpr (mode == kAdd) {
        return V::saturatedSum(source, destination);
    } else if constexpr (mode == kSource) {
        return source;
    } else if constexpr (kMode.source == Factor::one) {
        const auto keep = weightsOf<V, kMode.destination>(source, destination);
        return V::sum(source, V::scaled(destination, keep));
    } else if constexpr (kMode.source == Factor::zero) {
        return V::scaled(destination, weightsOf<V, kMode.destination>(source, destination));
    } else if constexpr (kMode.destination == Factor::zero) {
        return V::scaled(source, weightsOf<V, kMode.source>(source, destination));
    } else if constexpr (kMode.destination == Factor::one) {
        const auto take = weightsOf<V, kMode.source>(source, destination);
        return V::sum(destination, V::scaled(source, take));
    } else {
        const auto take = weightsOf<V, kMode.source>(source, destination);
        return V::mixed(source, take, destination,
                        weightsOf<V, kMode.destination>(source, destination));
    }
}

template <class V>
static inline PixelsOf<V> interpolatePixels(PixelsOf<V> from, PixelsOf<V> to, PixelsOf<V> weight) {
    return V::mixed(to, weight, from, V::inverted(weight));
}

/// Whether a fill stores its colour, whatever was there.
template <uint32_t mode>
static inline bool storesColor(uint32_t color) {
    const bool over = kPorterDuff[mode].source == Factor::one &&
                      kPorterDuff[mode].destination == Factor::inverseSourceAlpha;
    return mode == kSource || (over && alphaOf(color) == 255);
}

// The last vector of a row ends with the row, and overlaps the one before it: it is worked out from
// the pixels as they were and stored last, so that those that both hold get the same value twice.
// Rows of less than a vector go through parts of one.

template <class V>
static inline void storeRow(uint32_t* row, size_t count, PixelsOf<V> pixels) {
    if (count < V::kPixels) {
        V::storePart(row, pixels, count);
        return;
    }
    uint32_t* const last = row + count - V::kPixels;
    for (; row < last; row += V::kPixels) V::store(row, pixels);
    V::store(last, pixels);
}

template <class V>
void storeColor(const PixelBlock& block, uint32_t color) {
    const auto pixels = V::splat(color);
    uint32_t* row = block.pixels;
    for (size_t y = 0; y < block.height; ++y, row += block.stride) {
        storeRow<V>(row, block.width, pixels);
    }
}

/// Blends one colour with pixels. Where only the colour says how much of them is kept, that is
/// worked out once.
template <class V, uint32_t mode>
class ColorBlend {
  public:
    explicit ColorBlend(uint32_t color)
        : m_source(V::splat(color)), m_keep(V::ratio(keptBy(alphaOf(color)))) {}

    PixelsOf<V> operator()(PixelsOf<V> destination) const {
        if constexpr (!kKeepsByColor) {
            return blendPixels<V, mode>(m_source, destination);
        } else if constexpr (kMode.source == Factor::one) {
            return V::sum(m_source, V::scaledBy(destination, m_keep));
        } else {
            return V::scaledBy(destination, m_keep);
        }
    }

  private:
    static constexpr PorterDuff kMode = kPorterDuff[mode];
    static constexpr bool kKeepsByColor =
        (kMode.source == Factor::one || kMode.source == Factor::zero) &&
        (kMode.destination == Factor::sourceAlpha ||
         kMode.destination == Factor::inverseSourceAlpha);

    static uint32_t keptBy(uint32_t alpha) {
        return kKeepsByColor ? factorOf(kMode.destination, alpha, 0, 255) : 0;
    }

    PixelsOf<V> m_source;
    typename V::Ratio m_keep;
};

/// Replaces each pixel of a row by combine(pixel).
template <class V, class Combine>
static inline void changeRow(uint32_t* row, size_t count, const Combine& combine) {
    if (count < V::kPixels) {
        V::storePart(row, combine(V::loadPart(row, count)), count);
        return;
    }
    uint32_t* const last = row + count - V::kPixels;
    const auto end = combine(V::load(last));
    for (; row < last; row += V::kPixels) V::store(row, combine(V::load(row)));
    V::store(last, end);
}

template <class V, uint32_t mode>
void fill(const PixelBlock& block, uint32_t color) {
    const ColorBlend<V, mode> blend(color);
    const size_t fetched = fetchedRows(block.width, block.height);
    uint32_t* row = block.pixels;
    for (size_t y = 0; y < block.height; ++y, row += block.stride) {
        if (y < fetched) fetchAhead(row + kRowsAhead * block.stride, block.width);
        changeRow<V>(row, block.width, blend);
    }
}

/// Calls combine(source, destination) for the pixels of two rows and stores what it gives.
template <class V, class Combine>
static inline void combineRows(uint32_t* destination, const uint32_t* source, size_t count,
                               Combine combine) {
    if (count < V::kPixels) {
        const auto before = V::loadPart(destination, count);
        V::storePart(destination, combine(V::loadPart(source, count), before), count);
        return;
    }
    uint32_t* const last = destination + count - V::kPixels;
    const auto end = combine(V::load(source + count - V::kPixels), V::load(last));
    for (; destination < last; destination += V::kPixels, source += V::kPixels) {
        V::store(destination, combine(V::load(source), V::load(destination)));
    }
    V::store(last, end);
}

template <class V, uint32_t mode>
void composeRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t opacity) {
    using Pixels = PixelsOf<V>;
    if (opacity == 255) {
        combineRows<V>(destination, source, count,
                       [](Pixels s, Pixels d) { return blendPixels<V, mode>(s, d); });
        return;
    }
    const auto ratio = V::ratio(opacity);
    combineRows<V>(destination, source, count, [ratio](Pixels s, Pixels d) {
        return blendPixels<V, mode>(V::scaledBy(s, ratio), d);
    });
}

template <class V, uint32_t mode>
void composeMaskRow(uint32_t* destination, const uint32_t* source, const uint8_t* mask,
                    size_t count, uint32_t opacity) {
    using Pixels = PixelsOf<V>;
    const auto ratio = V::ratio(opacity);
    const auto combine = [ratio](Pixels s, Pixels d, Pixels coverage) {
        const auto blended = blendPixels<V, mode>(V::scaledBy(s, ratio), d);
        return interpolatePixels<V>(d, blended, coverage);
    };
    for (; count >= V::kPixels; count -= V::kPixels) {
        const auto before = V::load(destination);
        V::store(destination, combine(V::load(source), before, V::coverage(mask)));
        destination += V::kPixels;
        source += V::kPixels;
        mask += V::kPixels;
    }
    if (count == 0) return;
    const auto before = V::loadPart(destination, count);
    const auto coverage = V::coveragePart(mask, count);
    V::storePart(destination, combine(V::loadPart(source, count), before, coverage), count);
}

/// Has an opaque colour replace pixels in the proportion of their coverage: of as many mask bytes
/// as V holds pixels, or of `count`.
template <class V>
struct CoveringPaint {
    using Pixels = PixelsOf<V>;
    typename V::Paint paint;

    explicit CoveringPaint(uint32_t color) : paint(color) {}
    Pixels operator()(Pixels before, const uint8_t* mask) const {
        return paint.over(before, V::shares(mask));
    }
    Pixels operator()(Pixels before, const uint8_t* mask, size_t count) const {
        return paint.over(before, V::sharesPart(mask, count));
    }
};

/// The same with any colour in any mode.
template <class V, uint32_t mode>
struct BlendingPaint {
    using Pixels = PixelsOf<V>;
    Pixels source;

    explicit BlendingPaint(uint32_t color) : source(V::splat(color)) {}
    Pixels covered(Pixels before, Pixels coverage) const {
        return interpolatePixels<V>(before, blendPixels<V, mode>(source, before), coverage);
    }
    Pixels operator()(Pixels before, const uint8_t* mask) const {
        return covered(before, V::coverage(mask));
    }
    Pixels operator()(Pixels before, const uint8_t* mask, size_t count) const {
        return covered(before, V::coveragePart(mask, count));
    }
};

template <class V, class Paint>
static inline void fillMaskRow(uint32_t* row, const uint8_t* mask, size_t count, Paint paint) {
    if (count < V::kPixels) {
        V::storePart(row, paint(V::loadPart(row, count), mask, count), count);
        return;
    }
    uint32_t* const last = row + count - V::kPixels;
    const auto end = paint(V::load(last), mask + count - V::kPixels);
    for (; row < last; row += V::kPixels, mask += V::kPixels) {
        V::store(row, paint(V::load(row), mask));
    }
    V::store(last, end);
}

template <class V, class Paint>
static inline void fillMaskWith(const PixelBlock& block, const uint8_t* mask, size_t maskStride,
                                Paint paint) {
    uint32_t* row = block.pixels;
    for (size_t y = 0; y < block.height; ++y, row += block.stride, mask += maskStride) {
        fillMaskRow<V>(row, mask, block.width, paint);
    }
}

template <class V, uint32_t mode>
void fillMask(const PixelBlock& block, const uint8_t* mask, size_t maskStride, uint32_t color) {
    if (storesColor<mode>(color)) {
        fillMaskWith<V>(block, mask, maskStride, CoveringPaint<V>(color));
    } else {
        fillMaskWith<V>(block, mask, maskStride, BlendingPaint<V, mode>(color));
    }
}

template <class V, class Paint>
static inline void fillBlocksWith(uint32_t* corner, size_t stride, const CoverageBlock* blocks,
                                  size_t count, Paint paint) {
    for (const CoverageBlock* block = blocks; block != blocks + count; ++block) {
        uint32_t* pixels = corner + block->y * stride + block->x;
        for (size_t i = 0; i < CoverageBlock::kPixels; i += V::kPixels) {
            V::store(pixels + i, paint(V::load(pixels + i), block->coverage + i));
        }
    }
}

template <class V, uint32_t mode>
void fillBlocks(uint32_t* corner, size_t stride, const CoverageBlock* blocks, size_t count,
                uint32_t color) {
    if (storesColor<mode>(color)) {
        fillBlocksWith<V>(corner, stride, blocks, count, CoveringPaint<V>(color));
    } else {
        fillBlocksWith<V>(corner, stride, blocks, count, BlendingPaint<V, mode>(color));
    }
}

template <class V>
void overRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t /*opacity*/) {
    for (; count >= V::kPixels; count -= V::kPixels) {
        const auto pixels = V::load(source);
        if (V::isOpaque(pixels)) {
            V::store(destination, pixels);
        } else if (!V::isTransparent(pixels)) {
            V::store(destination, blendPixels<V, kSourceOver>(pixels, V::load(destination)));
        }
        destination += V::kPixels;
        source += V::kPixels;
    }
    if (count == 0) return;
    const auto before = V::loadPart(destination, count);
    const auto pixels = V::loadPart(source, count);
    V::storePart(destination, blendPixels<V, kSourceOver>(pixels, before), count);
}

template <class V>
void fadeRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t opacity) {
    using Pixels = PixelsOf<V>;
    const auto ratio = V::ratio(opacity);
    combineRows<V>(destination, source, count,
                   [ratio](Pixels s, Pixels d) { return V::interpolated(d, s, ratio); });
}

template <class V, class Sums>
static inline PixelsOf<V> mixColumn(const uint32_t* const* rows, size_t x, const int16_t* weights,
                                    uint32_t taps) {
    Sums sums;
    uint32_t tap = 0;
    for (; tap + 1 < taps; tap += 2) {
        sums.add(V::load(rows[tap] + x), V::load(rows[tap + 1] + x),
                 Sums::weights(weights[tap], weights[tap + 1]));
    }
    if (tap < taps) {
        const auto pixels = V::load(rows[tap] + x);
        sums.add(pixels, pixels, Sums::weights(weights[tap], 0));
    }
    return sums.rounded();
}

template <class V, class Sums>
static inline void mixRowsWith(uint32_t* destination, const uint32_t* const* rows,
                               const int16_t* weights, uint32_t taps, size_t count) {
    size_t x = 0;
    for (; x + V::kPixels <= count; x += V::kPixels) {
        V::store(destination + x, mixColumn<V, Sums>(rows, x, weights, taps));
    }
    if (x == count) return;
    V::storePart(destination + x, mixColumn<V, Sums>(rows, x, weights, taps), count - x);
}

template <class V>
void mixRows(uint32_t* destination, const uint32_t* const* rows, const int16_t* weights,
             uint32_t taps, uint32_t shift, size_t count) {
    if (shift == 7) {
        mixRowsWith<V, typename V::CoarseSums>(destination, rows, weights, taps, count);
    } else {
        mixRowsWith<V, typename V::FineSums>(destination, rows, weights, taps, count);
    }
}

template <class V, uint32_t mode>
static inline ModeKernels modeRows() {
    return {mode == kSource ? storeColor<V> : fill<V, mode>, composeRow<V, mode>, fillMask<V, mode>,
            composeMaskRow<V, mode>, fillBlocks<V, mode>};
}

/// `base` with the rows that V does faster.
template <class V>
static inline Kernels vectorRows(const Kernels& base) {
    Kernels rows = base;
    const ModeKernels modes[kPorterDuffModes] = {
        modeRows<V, 0>(), modeRows<V, 1>(), modeRows<V, 2>(),  modeRows<V, 3>(),
        modeRows<V, 4>(), modeRows<V, 5>(), modeRows<V, 6>(),  modeRows<V, 7>(),
        modeRows<V, 8>(), modeRows<V, 9>(), modeRows<V, 10>(), modeRows<V, 11>()};
    for (size_t mode = 0; mode < kPorterDuffModes; ++mode) rows.modes[mode] = modes[mode];
    rows.fill = storeColor<V>;
    rows.over = overRow<V>;
    rows.fade = fadeRow<V>;
    rows.mixRows = mixRows<V>;
    return rows;
}

}  // namespace quiravent::desktop
