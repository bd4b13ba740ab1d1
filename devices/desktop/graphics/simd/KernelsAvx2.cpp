#include <immintrin.h>

#include "graphics/simd/Avx2Sampling.h"
#include "graphics/simd/PartBytes.h"
#include "graphics/simd/VectorKernels.h"
#include "graphics/simd/VectorRows.h"
#include "graphics/simd/X86Ratios.h"
#include "graphics/simd/X86Sampling.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

namespace {

__m256i load256(const void* from) { return _mm256_loadu_si256(static_cast<const __m256i*>(from)); }

/// 255 in all bytes of the first `count` of 8 pixels.
__m256i firstPixels(size_t count) {
    static constexpr int32_t kOnesThenZeros[16] = {-1, -1, -1, -1, -1, -1, -1, -1};
    return load256(kOnesThenZeros + 8 - count);
}

/// value / 255 of each word, rounded to nearest: (value + 128) * 257 >> 16.
__m256i wordsBy255(__m256i words) {
    return _mm256_mulhi_epu16(_mm256_add_epi16(words, _mm256_set1_epi16(128)),
                              _mm256_set1_epi16(257));
}

__m256i lowWords(__m256i bytes) { return _mm256_unpacklo_epi8(bytes, _mm256_setzero_si256()); }
__m256i highWords(__m256i bytes) { return _mm256_unpackhi_epi8(bytes, _mm256_setzero_si256()); }

__m256i wordsBetween(__m256i from, __m256i to, __m256i ratio) {
    return _mm256_add_epi16(from, _mm256_mulhrs_epi16(_mm256_sub_epi16(to, from), ratio));
}

__m256i spreadBytes(__m128i eightBytes) {
    const __m256i order = _mm256_setr_epi8(0, 0, 0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12, 0, 0,
                                           0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12);
    return _mm256_shuffle_epi8(_mm256_cvtepu8_epi32(eightBytes), order);
}

/// See VectorRows.h. Words are made from bytes within each 128-bit lane, and packed likewise, so
/// that pixels end in their order.
struct Avx2 {
    static constexpr size_t kPixels = 8;
    using Pixels = __m256i;

    static Pixels load(const uint32_t* from) { return load256(from); }
    static void store(uint32_t* to, Pixels pixels) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), pixels);
    }
    static Pixels loadPart(const uint32_t* from, size_t count) {
        return _mm256_maskload_epi32(reinterpret_cast<const int*>(from), firstPixels(count));
    }
    static void storePart(uint32_t* to, Pixels pixels, size_t count) {
        _mm256_maskstore_epi32(reinterpret_cast<int*>(to), firstPixels(count), pixels);
    }
    static Pixels splat(uint32_t pixel) { return _mm256_set1_epi32(static_cast<int>(pixel)); }
    static Pixels weight(uint32_t byte) { return _mm256_set1_epi8(static_cast<char>(byte)); }
    static Pixels coverage(const uint8_t* mask) { return spreadBytes(load64(mask)); }
    static Pixels coveragePart(const uint8_t* mask, size_t count) {
        return spreadBytes(_mm_cvtsi64_si128(static_cast<long long>(loadUpTo7Bytes(mask, count))));
    }
    /// In each lane 8 mask bytes, then what each lacks to 255.
    static Pixels shares(const uint8_t* mask) { return sharesOf(load64(mask)); }
    static Pixels sharesPart(const uint8_t* mask, size_t count) {
        return sharesOf(_mm_cvtsi64_si128(static_cast<long long>(loadUpTo7Bytes(mask, count))));
    }
    static Pixels sharesOf(__m128i eightBytes) {
        return _mm256_xor_si256(_mm256_broadcastq_epi64(eightBytes),
                                _mm256_setr_epi64x(0, -1, 0, -1));
    }

    /// As told in KernelsSse41.cpp.
    struct Paint {
        Pixels source;

        explicit Paint(uint32_t color) : source(signedBytes(splat(color))) {}
        static Pixels signedBytes(Pixels pixels) {
            return _mm256_xor_si256(pixels, _mm256_set1_epi8(-128));
        }
        static __m256i mean(Pixels shares, Pixels bytes) {
            const __m256i sums = _mm256_maddubs_epi16(shares, bytes);
            return _mm256_mulhi_epu16(_mm256_xor_si256(sums, _mm256_set1_epi16(-0x8000)),
                                      _mm256_set1_epi16(257));
        }
        Pixels over(Pixels before, Pixels shares) const {
            const __m256i low =
                _mm256_setr_epi8(8, 0, 8, 0, 8, 0, 8, 0, 9, 1, 9, 1, 9, 1, 9, 1, 12, 4, 12, 4, 12,
                                 4, 12, 4, 13, 5, 13, 5, 13, 5, 13, 5);
            const __m256i high = _mm256_add_epi8(low, _mm256_set1_epi8(2));
            const Pixels bytes = signedBytes(before);
            return _mm256_packus_epi16(
                mean(_mm256_shuffle_epi8(shares, low), _mm256_unpacklo_epi8(bytes, source)),
                mean(_mm256_shuffle_epi8(shares, high), _mm256_unpackhi_epi8(bytes, source)));
        }
    };

    static Pixels alphas(Pixels pixels) {
        const __m256i order =
            _mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15, 3, 3, 3, 3, 7,
                             7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
        return _mm256_shuffle_epi8(pixels, order);
    }
    static Pixels inverted(Pixels bytes) { return _mm256_xor_si256(bytes, _mm256_set1_epi8(-1)); }
    static Pixels sum(Pixels a, Pixels b) { return _mm256_add_epi8(a, b); }
    static Pixels saturatedSum(Pixels a, Pixels b) { return _mm256_adds_epu8(a, b); }
    static Pixels scaled(Pixels a, Pixels weights) {
        const __m256i low = _mm256_mullo_epi16(lowWords(a), lowWords(weights));
        const __m256i high = _mm256_mullo_epi16(highWords(a), highWords(weights));
        return _mm256_packus_epi16(wordsBy255(low), wordsBy255(high));
    }
    static Pixels mixed(Pixels a, Pixels u, Pixels b, Pixels v) {
        const __m256i low = _mm256_add_epi16(_mm256_mullo_epi16(lowWords(a), lowWords(u)),
                                             _mm256_mullo_epi16(lowWords(b), lowWords(v)));
        const __m256i high = _mm256_add_epi16(_mm256_mullo_epi16(highWords(a), highWords(u)),
                                              _mm256_mullo_epi16(highWords(b), highWords(v)));
        return _mm256_packus_epi16(wordsBy255(low), wordsBy255(high));
    }
    /// Words, see X86Ratios.h.
    using Ratio = __m256i;
    static Ratio ratio(uint32_t weight) { return _mm256_set1_epi16(kExactRatios.of[weight]); }
    static Pixels scaledBy(Pixels a, Ratio ratio) {
        return _mm256_packus_epi16(_mm256_mulhrs_epi16(lowWords(a), ratio),
                                   _mm256_mulhrs_epi16(highWords(a), ratio));
    }
    static Pixels interpolated(Pixels from, Pixels to, Ratio ratio) {
        return _mm256_packus_epi16(wordsBetween(lowWords(from), lowWords(to), ratio),
                                   wordsBetween(highWords(from), highWords(to), ratio));
    }
    static bool isTransparent(Pixels pixels) { return _mm256_testz_si256(pixels, pixels) != 0; }
    static bool isOpaque(Pixels pixels) {
        return _mm256_testc_si256(pixels, _mm256_set1_epi32(static_cast<int>(0xFF000000))) != 0;
    }

    /// Weights of 7 bits; 128 is mended as told in X86Scaling.h.
    struct CoarseSums {
        __m256i low = _mm256_setzero_si256();
        __m256i high = _mm256_setzero_si256();

        static __m256i weights(int first, int second) {
            return _mm256_set1_epi16(static_cast<int16_t>(first | second << 8));
        }
        void add(Pixels a, Pixels b, __m256i pair) {
            low = _mm256_add_epi16(low, _mm256_maddubs_epi16(_mm256_unpacklo_epi8(a, b), pair));
            high = _mm256_add_epi16(high, _mm256_maddubs_epi16(_mm256_unpackhi_epi8(a, b), pair));
        }
        static __m256i rounded(__m256i sums) {
            return _mm256_srli_epi16(
                _mm256_add_epi16(_mm256_abs_epi16(sums), _mm256_set1_epi16(64)), 7);
        }
        Pixels rounded() const { return _mm256_packus_epi16(rounded(low), rounded(high)); }
    };

    struct FineSums {
        __m256i sums[4] = {_mm256_set1_epi32(1 << 13), _mm256_set1_epi32(1 << 13),
                           _mm256_set1_epi32(1 << 13), _mm256_set1_epi32(1 << 13)};

        static __m256i weights(int first, int second) {
            return _mm256_set1_epi32(first | second << 16);
        }
        void add(Pixels a, Pixels b, __m256i pair) {
            const __m256i low = _mm256_unpacklo_epi8(a, b);
            const __m256i high = _mm256_unpackhi_epi8(a, b);
            const __m256i words[4] = {lowWords(low), highWords(low), lowWords(high),
                                      highWords(high)};
            for (int i = 0; i < 4; ++i) {
                sums[i] = _mm256_add_epi32(sums[i], _mm256_madd_epi16(words[i], pair));
            }
        }
        Pixels rounded() const {
            const __m256i low =
                _mm256_packus_epi32(_mm256_srli_epi32(sums[0], 14), _mm256_srli_epi32(sums[1], 14));
            const __m256i high =
                _mm256_packus_epi32(_mm256_srli_epi32(sums[2], 14), _mm256_srli_epi32(sums[3], 14));
            return _mm256_packus_epi16(low, high);
        }
    };
};

/// Four output pixels of eight pixels each of two rows, as words: those of the lower lane first.
__m256i halved(const uint32_t* upper, const uint32_t* lower) {
    const __m256i ones = _mm256_set1_epi8(1);
    const __m256i above = load256(upper);
    const __m256i below = load256(lower);
    const __m256i low = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(above, below), ones);
    const __m256i high = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(above, below), ones);
    const __m256i sums =
        _mm256_add_epi16(_mm256_unpacklo_epi64(low, high), _mm256_unpackhi_epi64(low, high));
    return _mm256_srli_epi16(_mm256_add_epi16(sums, _mm256_set1_epi16(2)), 2);
}

void halveRows(uint32_t* destination, const uint32_t* upper, const uint32_t* lower, size_t count) {
    size_t x = 0;
    const auto eight = [&] {
        const __m256i pixels = _mm256_packus_epi16(halved(upper + 2 * x, lower + 2 * x),
                                                   halved(upper + 2 * x + 8, lower + 2 * x + 8));
        return _mm256_permute4x64_epi64(pixels, 0xD8);  // quarters 0, 2, 1, 3
    };
    for (; x + Avx2::kPixels <= count; x += Avx2::kPixels) Avx2::store(destination + x, eight());
    if (x < count) Avx2::storePart(destination + x, eight(), count - x);
}

SamplePixels carefulSamples;

void sampleInside(uint32_t* destination, const SampleSource<uint32_t>& source,
                  const SampleSteps& steps, size_t count) {
    if (count < 8) {
        sampleInner(destination, source, steps, count);
    } else {
        sampleInEights(destination, source, steps, count);
    }
}

void samplePixels(uint32_t* destination, const SampleSource<uint32_t>& source,
                  const SampleSteps& steps, size_t count) {
    sampleBothWays(destination, source, steps, count, carefulSamples, sampleInside);
}

}  // namespace

Kernels avx2Kernels(const Kernels& base) {
    Kernels rows = vectorRows<Avx2>(base);
    rows.halveRows = halveRows;
    rows.filterRow = filterRowX86;
    carefulSamples = base.samplePixels;
    rows.samplePixels = samplePixels;
    return rows;
}

}  // namespace quiravent::desktop
