#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "graphics/Kernels.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

// Bilinear samples four at a time, in two vectors whose lanes hold one each; internal linkage for
// the reason given in PixelMath.h. A position is a lane's x and y, each in 32.32 fixed point.

static inline __m256i roundedLanes(__m256i sums) {
    return _mm256_srli_epi16(_mm256_add_epi16(sums, _mm256_set1_epi16(128)), 8);
}

/// Words 256 - weight (of 256, for the second neighbour) in the lower and weight in the upper half
/// of each 32 bits of x and of y.
static inline __m256i weightPairs(__m256i positions) {
    const __m256i fractions = _mm256_and_si256(positions, _mm256_set1_epi64x(0xFFFFFFFF));
    const __m256i weights =
        _mm256_srli_epi64(_mm256_add_epi64(fractions, _mm256_set1_epi64x(1 << 23)), 24);
    return _mm256_or_si256(_mm256_sub_epi64(_mm256_set1_epi64x(256), weights),
                           _mm256_slli_epi64(weights, 16));
}

/// Repeats the pair of a lane's `axis` (0 or 1): the first word four times, then the second.
template <int axis>
static inline __m256i spreadPair(__m256i pairs) {
    constexpr char kA = 8 * axis;
    constexpr char kB = kA + 2;
    const __m128i order = _mm_setr_epi8(kA, kA + 1, kA, kA + 1, kA, kA + 1, kA, kA + 1, kB, kB + 1,
                                        kB, kB + 1, kB, kB + 1, kB, kB + 1);
    return _mm256_shuffle_epi8(pairs, _mm256_broadcastsi128_si256(order));
}

/// The samples of two positions, as four words in the lower half of each lane.
static inline __m256i sampledPair(const SampleSource<uint32_t>& source, __m256i positions,
                                  __m256i strides) {
    const __m256i places = _mm256_mul_epu32(_mm256_srli_epi64(positions, 32), strides);
    const __m256i offsets = _mm256_add_epi64(places, _mm256_shuffle_epi32(places, 0x4E));
    const uint32_t* first = source.values + _mm_cvtsi128_si64(_mm256_castsi256_si128(offsets));
    const uint32_t* second =
        source.values + _mm_cvtsi128_si64(_mm256_extracti128_si256(offsets, 1));
    const __m256i upper = _mm256_cvtepu8_epi16(loadPairs(first, second));
    const __m256i lower =
        _mm256_cvtepu8_epi16(loadPairs(first + source.stride, second + source.stride));
    const __m256i pairs = weightPairs(positions);
    const __m256i across = spreadPair<0>(pairs);
    const __m256i above = _mm256_mullo_epi16(upper, across);
    const __m256i below = _mm256_mullo_epi16(lower, across);
    const __m256i columns = roundedLanes(
        _mm256_add_epi16(_mm256_unpacklo_epi64(above, below), _mm256_unpackhi_epi64(above, below)));
    const __m256i mixed = _mm256_mullo_epi16(columns, spreadPair<1>(pairs));
    return roundedLanes(_mm256_add_epi16(mixed, _mm256_unpackhi_epi64(mixed, mixed)));
}

/// As many of the samples as are a multiple of four, whose neighbours must all lie inside; how
/// many.
static inline size_t sampleInFours(uint32_t* destination, const SampleSource<uint32_t>& source,
                                   const SampleSteps& steps, size_t count) {
    const __m128i start = _mm_set_epi64x(steps.y, steps.x);
    const __m128i step = _mm_set_epi64x(steps.stepY, steps.stepX);
    const __m128i third = _mm_add_epi64(start, _mm_add_epi64(step, step));
    __m256i even = _mm256_setr_m128i(start, third);
    __m256i odd = _mm256_setr_m128i(_mm_add_epi64(start, step), _mm_add_epi64(third, step));
    const __m256i four = _mm256_slli_epi64(_mm256_broadcastsi128_si256(step), 2);
    const __m256i strides = _mm256_setr_epi64x(1, static_cast<long long>(source.stride), 1,
                                               static_cast<long long>(source.stride));
    size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const __m256i words = _mm256_unpacklo_epi64(sampledPair(source, even, strides),
                                                    sampledPair(source, odd, strides));
        const __m256i bytes = _mm256_packus_epi16(words, words);
        const __m256i pixels = _mm256_permute4x64_epi64(bytes, 0x08);  // quarters 0 and 2
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i),
                         _mm256_castsi256_si128(pixels));
        even = _mm256_add_epi64(even, four);
        odd = _mm256_add_epi64(odd, four);
    }
    return i;
}

}  // namespace quiravent::desktop
