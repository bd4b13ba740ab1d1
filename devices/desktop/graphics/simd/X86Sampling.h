#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "graphics/Kernels.h"
#include "graphics/simd/InnerSamples.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

// Bilinear samples with 128-bit vectors; internal linkage for the reason given in PixelMath.h.
// Positions are those of InnerSamples.h. A weight is of 128; the one that doesn't fit a signed byte
// is mended as told in X86Scaling.h.

static inline uint32_t sampleWeight(int64_t position) {
    return static_cast<uint32_t>(position >> 25) & 127;
}

/// The columns of one sample mixed: four words of the upper row, then four of the lower.
static inline __m128i mixedColumns(const SampleSource<uint32_t>& source, int64_t x, int64_t y) {
    const uint32_t* upper =
        source.values + static_cast<size_t>(y >> 32) * source.stride + (x >> 32);
    const uint32_t weight = sampleWeight(x);
    const __m128i pair = _mm_set1_epi16(static_cast<int16_t>((128 - weight) | weight << 8));
    const __m128i pixels = pairedChannels(loadPairs(upper, upper + source.stride));
    return _mm_abs_epi16(_mm_maddubs_epi16(pixels, pair));
}

/// The rows of two samples mixed into words.
static inline __m128i mixedRows(__m128i first, __m128i second, __m128i weights) {
    const __m128i upper = _mm_unpacklo_epi64(first, second);
    const __m128i lower = _mm_unpackhi_epi64(first, second);
    const __m128i sums =
        _mm_add_epi16(upper, _mm_mulhrs_epi16(_mm_sub_epi16(lower, upper), weights));
    return _mm_srli_epi16(_mm_add_epi16(sums, _mm_set1_epi16(64)), 7);
}

/// Two samples, as words.
static inline __m128i sampledPair(const SampleSource<uint32_t>& source, const SampleSteps& steps) {
    const int64_t nextY = steps.y + steps.stepY;
    const __m128i first = mixedColumns(source, steps.x, steps.y);
    const __m128i second = mixedColumns(source, steps.x + steps.stepX, nextY);
    const __m128i weights =
        _mm_unpacklo_epi64(_mm_set1_epi16(static_cast<int16_t>(sampleWeight(steps.y) << 8)),
                           _mm_set1_epi16(static_cast<int16_t>(sampleWeight(nextY) << 8)));
    return mixedRows(first, second, weights);
}

static inline void sampleInner(uint32_t* destination, const SampleSource<uint32_t>& source,
                               const SampleSteps& steps, size_t count) {
    SampleSteps at = steps;
    size_t i = 0;
    for (; i + 4 <= count; i += 4, at = stepsFrom(at, 4)) {
        const __m128i words = sampledPair(source, at);
        const __m128i pixels = _mm_packus_epi16(words, sampledPair(source, stepsFrom(at, 2)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), pixels);
    }
    for (; i < count; ++i, at = stepsFrom(at, 1)) {
        const __m128i sample = sampledPair(source, {at.x, at.y, 0, 0});
        destination[i] = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(sample, sample)));
    }
}

}  // namespace quiravent::desktop
