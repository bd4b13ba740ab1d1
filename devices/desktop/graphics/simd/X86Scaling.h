#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "graphics/Kernels.h"

namespace quiravent::desktop {

// Weighted means along a row and bilinear samples with 128-bit vectors, for the sources of both
// SSE4.1 and AVX2; internal linkage for the reason given in PixelMath.h.

static inline __m128i load128(const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

static inline __m128i load64(const void* bytes) {
    return _mm_loadl_epi64(static_cast<const __m128i*>(bytes));
}

/// Two pixels from one place in the lower half and two from another in the upper.
static inline __m128i loadPairs(const uint32_t* low, const uint32_t* high) {
    const __m128d lower = _mm_castsi128_pd(load64(low));
    return _mm_castpd_si128(_mm_loadh_pd(lower, reinterpret_cast<const double*>(high)));
}

/// Puts the same channels of each pair of pixels side by side.
static inline __m128i pairedChannels(__m128i pixels) {
    const __m128i order = _mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15);
    return _mm_shuffle_epi8(pixels, order);
}

/// Of 8 weights as bytes, the pair of lower index in `pair` for the lower half and the next one
/// for the upper, each four times.
template <int pair>
static inline __m128i spreadWeights(__m128i bytes) {
    constexpr char kLow = 2 * pair;
    constexpr char kHigh = kLow + 2;
    return _mm_shuffle_epi8(
        bytes, _mm_setr_epi8(kLow, kLow + 1, kLow, kLow + 1, kLow, kLow + 1, kLow, kLow + 1, kHigh,
                             kHigh + 1, kHigh, kHigh + 1, kHigh, kHigh + 1, kHigh, kHigh + 1));
}

static inline __m128i weightBytes(const int16_t* weights) {
    const __m128i words = load128(weights);
    return _mm_packus_epi16(words, words);
}

/// Sums of two pixels' four channels each, out of the sums of their halves in two vectors.
static inline __m128i addHalves(__m128i first, __m128i second) {
    return _mm_add_epi16(_mm_unpacklo_epi64(first, second), _mm_unpackhi_epi64(first, second));
}

// Weights of 7 bits: products of bytes add up to 32640 at most. The one weight that doesn't fit a
// signed byte is 128, which stands alone and counts as -128; taking the sum's absolute value
// mends that.

/// Sums of the output pixels i and i + 1.
static inline __m128i coarseSums2Taps(const uint32_t* source, const uint32_t* first,
                                      const int16_t* weights) {
    const __m128i pixels = loadPairs(source + first[0], source + first[1]);
    const __m128i bytes = _mm_packus_epi16(load64(weights), _mm_setzero_si128());
    return _mm_maddubs_epi16(pairedChannels(pixels), spreadWeights<0>(bytes));
}

static inline __m128i coarseSums4Taps(const uint32_t* source, const uint32_t* first,
                                      const int16_t* weights) {
    const __m128i bytes = weightBytes(weights);
    const __m128i left =
        _mm_maddubs_epi16(pairedChannels(load128(source + first[0])), spreadWeights<0>(bytes));
    const __m128i right =
        _mm_maddubs_epi16(pairedChannels(load128(source + first[1])), spreadWeights<2>(bytes));
    return addHalves(left, right);
}

static inline __m128i coarseSumOf8Taps(const uint32_t* pixels, const int16_t* weights) {
    const __m128i bytes = weightBytes(weights);
    return _mm_add_epi16(
        _mm_maddubs_epi16(pairedChannels(load128(pixels)), spreadWeights<0>(bytes)),
        _mm_maddubs_epi16(pairedChannels(load128(pixels + 4)), spreadWeights<2>(bytes)));
}

static inline __m128i coarseSums8Taps(const uint32_t* source, const uint32_t* first,
                                      const int16_t* weights) {
    return addHalves(coarseSumOf8Taps(source + first[0], weights),
                     coarseSumOf8Taps(source + first[1], weights + 8));
}

static inline __m128i roundedCoarse(__m128i sums) {
    return _mm_srli_epi16(_mm_add_epi16(_mm_abs_epi16(sums), _mm_set1_epi16(64)), 7);
}

using CoarseSumsOf2 = __m128i (*)(const uint32_t*, const uint32_t*, const int16_t*);

template <uint32_t stride, CoarseSumsOf2 sumsOf2>
static inline void filterCoarse(uint32_t* destination, const uint32_t* source,
                                const FilterRow& filter, size_t count) {
    const uint32_t* first = filter.first;
    const int16_t* weights = filter.weights;
    size_t i = 0;
    for (; i + 4 <= count; i += 4, first += 4, weights += size_t{4} * stride) {
        const __m128i low = roundedCoarse(sumsOf2(source, first, weights));
        const __m128i high =
            roundedCoarse(sumsOf2(source, first + 2, weights + size_t{2} * stride));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), _mm_packus_epi16(low, high));
    }
    for (; i < count; ++i, ++first, weights += stride) {
        // Alone, so that neither positions nor weights past the last are read.
        const uint32_t twice[2] = {*first, *first};
        int16_t both[size_t{2} * stride] = {};
        std::memcpy(both, weights, stride * sizeof(int16_t));
        const __m128i sum = roundedCoarse(sumsOf2(source, twice, both));
        destination[i] = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(sum, sum)));
    }
}

/// Weights of 14 bits and any number of them, two at a time into sums of 32 bits.
static inline void filterFine(uint32_t* destination, const uint32_t* source,
                              const FilterRow& filter, size_t count) {
    const __m128i half = _mm_set1_epi32(1 << 13);
    const int16_t* weights = filter.weights;
    for (size_t i = 0; i < count; ++i, weights += filter.stride) {
        const uint32_t* pixels = source + filter.first[i];
        __m128i sums = half;
        for (uint32_t tap = 0; tap < filter.taps; tap += 2) {
            const __m128i pair = _mm_cvtepu8_epi16(pairedChannels(load64(pixels + tap)));
            int32_t both = 0;
            std::memcpy(&both, weights + tap, sizeof both);
            sums = _mm_add_epi32(sums, _mm_madd_epi16(pair, _mm_set1_epi32(both)));
        }
        const __m128i words = _mm_packus_epi32(_mm_srli_epi32(sums, 14), sums);
        destination[i] = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
    }
}

static void filterRowX86(uint32_t* destination, const uint32_t* source, const FilterRow& filter,
                         size_t count) {
    if (filter.shift != 7) {
        filterFine(destination, source, filter, count);
    } else if (filter.stride == 2) {
        filterCoarse<2, coarseSums2Taps>(destination, source, filter, count);
    } else if (filter.stride == 4) {
        filterCoarse<4, coarseSums4Taps>(destination, source, filter, count);
    } else {
        filterCoarse<8, coarseSums8Taps>(destination, source, filter, count);
    }
}

}  // namespace quiravent::desktop
