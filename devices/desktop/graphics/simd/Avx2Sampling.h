#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "graphics/Kernels.h"
#include "graphics/simd/InnerSamples.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

// Bilinear samples eight at a time: of the vectors of bytes and words, each holds one of the first
// four samples in its lower lane and one of the last four in the upper. Internal linkage for the
// reason given in PixelMath.h.

namespace {

/// One axis of eight positions, in 32.32 fixed point.
class EightPositions {
  public:
    EightPositions(int64_t start, int64_t step)
        : m_first(_mm256_setr_epi64x(start, start + step, start + 4 * step, start + 5 * step)),
          m_second(_mm256_add_epi64(m_first, _mm256_set1_epi64x(2 * step))),
          m_eight(_mm256_set1_epi64x(8 * step)) {}

    __m256i whole() const { return halves<0xDD>(); }
    /// Bits below the point, as far as 32 hold them.
    __m256i fractions() const { return halves<0x88>(); }
    void advance() {
        m_first = _mm256_add_epi64(m_first, m_eight);
        m_second = _mm256_add_epi64(m_second, m_eight);
    }

  private:
    template <int order>
    __m256i halves() const {
        return _mm256_castps_si256(
            _mm256_shuffle_ps(_mm256_castsi256_ps(m_first), _mm256_castsi256_ps(m_second), order));
    }

    __m256i m_first;   // of the samples 0, 1, 4 and 5
    __m256i m_second;  // of the others
    __m256i m_eight;
};

/// The word that is the lower half of the index-th 32 bits of each lane, eight times.
template <int index>
static inline __m256i repeatedWord(__m256i words) {
    constexpr int16_t kOrder = 4 * index | (4 * index + 1) << 8;
    return _mm256_shuffle_epi8(words, _mm256_set1_epi16(kOrder));
}

/// The words of two indices, four times each.
template <int first>
static inline __m256i repeatedWords(__m256i words) {
    constexpr int16_t kFirst = 4 * first | (4 * first + 1) << 8;
    constexpr int16_t kSecond = kFirst + 0x0404;
    const __m128i order =
        _mm_setr_epi16(kFirst, kFirst, kFirst, kFirst, kSecond, kSecond, kSecond, kSecond);
    return _mm256_shuffle_epi8(words, _mm256_broadcastsi128_si256(order));
}

/// What eight samples are made of: the places of their upper left neighbours, and their weights.
struct EightSamples {
    const uint32_t* upper;
    const uint32_t* lower;
    int32_t offsets[8];
    __m256i across;  ///< in each 32 bits the bytes 128 - weight and weight
    __m256i down;    ///< in each 32 bits the weight times 256

    /// The columns of the samples `index` and index + 4 mixed: four words of the upper row, then
    /// four of the lower.
    template <int index>
    __m256i mixedColumns() const {
        const int32_t first = offsets[index];
        const int32_t second = offsets[index + 4];
        const __m256i pixels = _mm256_setr_m128i(loadPairs(upper + first, lower + first),
                                                 loadPairs(upper + second, lower + second));
        const __m256i order = _mm256_broadcastsi128_si256(
            _mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
        return _mm256_abs_epi16(
            _mm256_maddubs_epi16(_mm256_shuffle_epi8(pixels, order), repeatedWord<index>(across)));
    }

    /// Two samples of each half, as words.
    template <int index>
    __m256i mixedRows() const {
        const __m256i first = mixedColumns<index>();
        const __m256i second = mixedColumns<index + 1>();
        const __m256i above = _mm256_unpacklo_epi64(first, second);
        const __m256i way = _mm256_sub_epi16(_mm256_unpackhi_epi64(first, second), above);
        const __m256i sums =
            _mm256_add_epi16(above, _mm256_mulhrs_epi16(way, repeatedWords<index>(down)));
        return _mm256_srli_epi16(_mm256_add_epi16(sums, _mm256_set1_epi16(64)), 7);
    }
};

}  // namespace

[[gnu::always_inline]] static inline void storeEightSamples(uint32_t* destination,
                                                            const SampleSource<uint32_t>& source,
                                                            const EightPositions& x,
                                                            const EightPositions& y) {
    EightSamples samples{source.values, source.values + source.stride, {}, {}, {}};
    const __m256i stride = _mm256_set1_epi32(static_cast<int>(source.stride));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(samples.offsets),
                        _mm256_add_epi32(x.whole(), _mm256_mullo_epi32(y.whole(), stride)));
    const __m256i weight = _mm256_srli_epi32(x.fractions(), 25);
    samples.across = _mm256_add_epi16(_mm256_mullo_epi16(weight, _mm256_set1_epi16(255)),
                                      _mm256_set1_epi16(128));
    samples.down = _mm256_slli_epi32(_mm256_srli_epi32(y.fractions(), 25), 8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination),
                        _mm256_packus_epi16(samples.mixedRows<0>(), samples.mixedRows<2>()));
}

/// Samples whose neighbours all lie inside; at least eight.
static inline void sampleInEights(uint32_t* destination, const SampleSource<uint32_t>& source,
                                  const SampleSteps& steps, size_t count) {
    const size_t last = count - 8;
    EightPositions x(steps.x, steps.stepX);
    EightPositions y(steps.y, steps.stepY);
    for (size_t i = 0; i < last; i += 8) {
        storeEightSamples(destination + i, source, x, y);
        x.advance();
        y.advance();
    }
    const SampleSteps end = stepsFrom(steps, last);
    x = EightPositions(end.x, end.stepX);
    y = EightPositions(end.y, end.stepY);
    storeEightSamples(destination + last, source, x, y);
}

}  // namespace quiravent::desktop
