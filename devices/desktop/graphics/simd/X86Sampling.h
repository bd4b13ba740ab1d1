#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "graphics/Kernels.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

// Bilinear samples with 128-bit vectors; internal linkage for the reason given in PixelMath.h.

/// The part of a run of samples whose four neighbours all lie within the source, so that no
/// position needs to be held to an edge.
struct InnerSamples {
    size_t first;
    size_t last;
};

/// Narrows the range to those i for which 0 <= start + i * step < limit.
static inline void narrowSamples(InnerSamples& inner, int64_t start, int64_t step, int64_t limit) {
    const int64_t stride = step < 0 ? -step : step;
    const int64_t toEntry = step < 0 ? start - (limit - 1) : -start;
    const int64_t toExit = step < 0 ? start : limit - 1 - start;
    const bool neverInside = toExit < 0 || (stride == 0 && toEntry > 0);
    if (neverInside) inner.last = inner.first;
    if (stride == 0 || neverInside) return;
    const auto entry = static_cast<size_t>(toEntry > 0 ? (toEntry + stride - 1) / stride : 0);
    const auto exit = static_cast<size_t>(toExit / stride + 1);
    if (entry > inner.first) inner.first = entry;
    if (exit < inner.last) inner.last = exit;
}

/// Weight (0 to 256) of the second neighbour, at a position of 32.32 fixed point.
static inline uint32_t sampleWeight(int64_t position) {
    return static_cast<uint32_t>(((position & 0xFFFFFFFF) + (1 << 23)) >> 24);
}

/// Words 256 - weight four times, then weight four times.
static inline __m128i bothWeights(uint32_t weight) {
    const __m128i pair = _mm_cvtsi32_si128(static_cast<int>((256 - weight) | weight << 16));
    const __m128i four = _mm_shufflelo_epi16(pair, 0x50);  // words 0, 0, 1, 1
    return _mm_shuffle_epi32(four, 0x50);
}

static inline __m128i rounded256(__m128i sums) {
    return _mm_srli_epi16(_mm_add_epi16(sums, _mm_set1_epi16(128)), 8);
}

/// One sample as four words in the lower half; the position's neighbours must lie inside.
static inline __m128i innerSample(const SampleSource<uint32_t>& source, int64_t x, int64_t y) {
    const uint32_t* upper =
        source.values + static_cast<size_t>(y >> 32) * source.stride + (x >> 32);
    const __m128i across = bothWeights(sampleWeight(x));
    const __m128i above = _mm_mullo_epi16(_mm_cvtepu8_epi16(load64(upper)), across);
    const __m128i below = _mm_mullo_epi16(_mm_cvtepu8_epi16(load64(upper + source.stride)), across);
    const __m128i columns = rounded256(addHalves(above, below));
    const __m128i mixed = _mm_mullo_epi16(columns, bothWeights(sampleWeight(y)));
    return rounded256(_mm_add_epi16(mixed, _mm_unpackhi_epi64(mixed, mixed)));
}

static inline void sampleInner(uint32_t* destination, const SampleSource<uint32_t>& source,
                               const SampleSteps& steps, size_t count) {
    int64_t x = steps.x;
    int64_t y = steps.y;
    size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        __m128i samples[4];
        for (__m128i& sample : samples) {
            sample = innerSample(source, x, y);
            x += steps.stepX;
            y += steps.stepY;
        }
        const __m128i low = _mm_unpacklo_epi64(samples[0], samples[1]);
        const __m128i high = _mm_unpacklo_epi64(samples[2], samples[3]);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), _mm_packus_epi16(low, high));
    }
    for (; i < count; ++i, x += steps.stepX, y += steps.stepY) {
        const __m128i sample = innerSample(source, x, y);
        destination[i] = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(sample, sample)));
    }
}

using SamplePixels = void (*)(uint32_t*, const SampleSource<uint32_t>&, const SampleSteps&, size_t);

static inline SampleSteps stepsFrom(const SampleSteps& steps, size_t index) {
    const auto by = static_cast<int64_t>(index);
    return {steps.x + by * steps.stepX, steps.y + by * steps.stepY, steps.stepX, steps.stepY};
}

/// Samples what needs care at the source's edges by `careful`.
static inline void samplePixelsX86(uint32_t* destination, const SampleSource<uint32_t>& source,
                                   const SampleSteps& steps, size_t count, SamplePixels careful) {
    InnerSamples inner{0, count};
    narrowSamples(inner, steps.x, steps.stepX, int64_t{source.width - 1} << 32);
    narrowSamples(inner, steps.y, steps.stepY, int64_t{source.height - 1} << 32);
    if (inner.first >= inner.last) {
        careful(destination, source, steps, count);
        return;
    }
    if (inner.first > 0) careful(destination, source, steps, inner.first);
    sampleInner(destination + inner.first, source, stepsFrom(steps, inner.first),
                inner.last - inner.first);
    if (inner.last < count) {
        careful(destination + inner.last, source, stepsFrom(steps, inner.last), count - inner.last);
    }
}

}  // namespace quiravent::desktop
