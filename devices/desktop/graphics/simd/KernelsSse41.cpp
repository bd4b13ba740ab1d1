#include <smmintrin.h>

#include "graphics/simd/PartBytes.h"
#include "graphics/simd/VectorKernels.h"
#include "graphics/simd/VectorRows.h"
#include "graphics/simd/X86Ratios.h"
#include "graphics/simd/X86Sampling.h"
#include "graphics/simd/X86Scaling.h"

namespace quiravent::desktop {

namespace {

/// value / 255 of each word, rounded to nearest: (value + 128) * 257 >> 16.
__m128i wordsBy255(__m128i words) {
    return _mm_mulhi_epu16(_mm_add_epi16(words, _mm_set1_epi16(128)), _mm_set1_epi16(257));
}

__m128i lowWords(__m128i bytes) { return _mm_unpacklo_epi8(bytes, _mm_setzero_si128()); }
__m128i highWords(__m128i bytes) { return _mm_unpackhi_epi8(bytes, _mm_setzero_si128()); }

__m128i wordsBetween(__m128i from, __m128i to, __m128i ratio) {
    return _mm_add_epi16(from, _mm_mulhrs_epi16(_mm_sub_epi16(to, from), ratio));
}

__m128i spreadBytes(uint32_t fourBytes) {
    const __m128i order = _mm_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3);
    return _mm_shuffle_epi8(_mm_cvtsi32_si128(static_cast<int>(fourBytes)), order);
}

/// See VectorRows.h.
struct Sse41 {
    static constexpr size_t kPixels = 4;
    using Pixels = __m128i;

    static Pixels load(const uint32_t* from) { return load128(from); }
    static void store(uint32_t* to, Pixels pixels) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), pixels);
    }
    static Pixels loadPart(const uint32_t* from, size_t count) {
        if (count == 1) return _mm_cvtsi32_si128(static_cast<int>(*from));
        const __m128i two = load64(from);
        return count == 2 ? two : _mm_insert_epi32(two, static_cast<int>(from[2]), 2);
    }
    static void storePart(uint32_t* to, Pixels pixels, size_t count) {
        if (count == 1) {
            *to = static_cast<uint32_t>(_mm_cvtsi128_si32(pixels));
            return;
        }
        _mm_storel_epi64(reinterpret_cast<__m128i*>(to), pixels);
        if (count == 3) to[2] = static_cast<uint32_t>(_mm_extract_epi32(pixels, 2));
    }
    static Pixels splat(uint32_t pixel) { return _mm_set1_epi32(static_cast<int>(pixel)); }
    static Pixels weight(uint32_t byte) { return _mm_set1_epi8(static_cast<char>(byte)); }
    static Pixels coverage(const uint8_t* mask) { return spreadBytes(load32(mask)); }
    static Pixels coveragePart(const uint8_t* mask, size_t count) {
        return spreadBytes(loadUpTo3Bytes(mask, count));
    }
    /// 4 mask bytes, twice, then what each lacks to 255.
    static Pixels shares(const uint8_t* mask) { return sharesOf(load32(mask)); }
    static Pixels sharesPart(const uint8_t* mask, size_t count) {
        return sharesOf(loadUpTo3Bytes(mask, count));
    }
    static Pixels sharesOf(uint32_t fourBytes) {
        return _mm_xor_si128(_mm_set1_epi32(static_cast<int>(fourBytes)), _mm_set_epi64x(-1, 0));
    }

    /// Mixes an opaque colour into pixels. In maddubs the shares are the unsigned bytes; pixels,
    /// made signed by taking 128 off, give sums of 16 bits that are never cut: 128 * 255 below what
    /// they would be, of which 128 is left for rounding.
    struct Paint {
        Pixels source;

        explicit Paint(uint32_t color) : source(signedBytes(splat(color))) {}
        static Pixels signedBytes(Pixels pixels) {
            return _mm_xor_si128(pixels, _mm_set1_epi8(-128));
        }
        static __m128i mean(Pixels shares, Pixels bytes) {
            const __m128i sums = _mm_maddubs_epi16(shares, bytes);
            return _mm_mulhi_epu16(_mm_xor_si128(sums, _mm_set1_epi16(-0x8000)),
                                   _mm_set1_epi16(257));
        }
        Pixels over(Pixels before, Pixels shares) const {
            const __m128i low = _mm_setr_epi8(8, 0, 8, 0, 8, 0, 8, 0, 9, 1, 9, 1, 9, 1, 9, 1);
            const __m128i high = _mm_add_epi8(low, _mm_set1_epi8(2));
            const Pixels bytes = signedBytes(before);
            return _mm_packus_epi16(
                mean(_mm_shuffle_epi8(shares, low), _mm_unpacklo_epi8(bytes, source)),
                mean(_mm_shuffle_epi8(shares, high), _mm_unpackhi_epi8(bytes, source)));
        }
    };

    static Pixels alphas(Pixels pixels) {
        const __m128i order = _mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
        return _mm_shuffle_epi8(pixels, order);
    }
    static Pixels inverted(Pixels bytes) { return _mm_xor_si128(bytes, _mm_set1_epi8(-1)); }
    static Pixels sum(Pixels a, Pixels b) { return _mm_add_epi8(a, b); }
    static Pixels saturatedSum(Pixels a, Pixels b) { return _mm_adds_epu8(a, b); }
    static Pixels scaled(Pixels a, Pixels weights) {
        const __m128i low = _mm_mullo_epi16(lowWords(a), lowWords(weights));
        const __m128i high = _mm_mullo_epi16(highWords(a), highWords(weights));
        return _mm_packus_epi16(wordsBy255(low), wordsBy255(high));
    }
    static Pixels mixed(Pixels a, Pixels u, Pixels b, Pixels v) {
        const __m128i low = _mm_add_epi16(_mm_mullo_epi16(lowWords(a), lowWords(u)),
                                          _mm_mullo_epi16(lowWords(b), lowWords(v)));
        const __m128i high = _mm_add_epi16(_mm_mullo_epi16(highWords(a), highWords(u)),
                                           _mm_mullo_epi16(highWords(b), highWords(v)));
        return _mm_packus_epi16(wordsBy255(low), wordsBy255(high));
    }
    /// Words, see X86Ratios.h.
    using Ratio = __m128i;
    static Ratio ratio(uint32_t weight) { return _mm_set1_epi16(kExactRatios.of[weight]); }
    static Pixels scaledBy(Pixels a, Ratio ratio) {
        return _mm_packus_epi16(_mm_mulhrs_epi16(lowWords(a), ratio),
                                _mm_mulhrs_epi16(highWords(a), ratio));
    }
    static Pixels interpolated(Pixels from, Pixels to, Ratio ratio) {
        return _mm_packus_epi16(wordsBetween(lowWords(from), lowWords(to), ratio),
                                wordsBetween(highWords(from), highWords(to), ratio));
    }
    static bool isTransparent(Pixels pixels) { return _mm_testz_si128(pixels, pixels) != 0; }
    static bool isOpaque(Pixels pixels) {
        return _mm_testc_si128(pixels, _mm_set1_epi32(static_cast<int>(0xFF000000))) != 0;
    }

    /// Weights of 7 bits; 128 is mended as told in X86Scaling.h.
    struct CoarseSums {
        __m128i low = _mm_setzero_si128();
        __m128i high = _mm_setzero_si128();

        static __m128i weights(int first, int second) {
            return _mm_set1_epi16(static_cast<int16_t>(first | second << 8));
        }
        void add(Pixels a, Pixels b, __m128i pair) {
            low = _mm_add_epi16(low, _mm_maddubs_epi16(_mm_unpacklo_epi8(a, b), pair));
            high = _mm_add_epi16(high, _mm_maddubs_epi16(_mm_unpackhi_epi8(a, b), pair));
        }
        Pixels rounded() const { return _mm_packus_epi16(roundedCoarse(low), roundedCoarse(high)); }
    };

    struct FineSums {
        __m128i sums[4] = {_mm_set1_epi32(1 << 13), _mm_set1_epi32(1 << 13),
                           _mm_set1_epi32(1 << 13), _mm_set1_epi32(1 << 13)};

        static __m128i weights(int first, int second) {
            return _mm_set1_epi32(first | second << 16);
        }
        void add(Pixels a, Pixels b, __m128i pair) {
            const __m128i low = _mm_unpacklo_epi8(a, b);
            const __m128i high = _mm_unpackhi_epi8(a, b);
            const __m128i words[4] = {lowWords(low), highWords(low), lowWords(high),
                                      highWords(high)};
            for (int i = 0; i < 4; ++i) {
                sums[i] = _mm_add_epi32(sums[i], _mm_madd_epi16(words[i], pair));
            }
        }
        Pixels rounded() const {
            const __m128i low =
                _mm_packus_epi32(_mm_srli_epi32(sums[0], 14), _mm_srli_epi32(sums[1], 14));
            const __m128i high =
                _mm_packus_epi32(_mm_srli_epi32(sums[2], 14), _mm_srli_epi32(sums[3], 14));
            return _mm_packus_epi16(low, high);
        }
    };
};

/// Two output pixels of four pixels each of two rows, as words.
__m128i halved(const uint32_t* upper, const uint32_t* lower) {
    const __m128i ones = _mm_set1_epi8(1);
    const __m128i above = load128(upper);
    const __m128i below = load128(lower);
    const __m128i sums = addHalves(_mm_maddubs_epi16(_mm_unpacklo_epi8(above, below), ones),
                                   _mm_maddubs_epi16(_mm_unpackhi_epi8(above, below), ones));
    return _mm_srli_epi16(_mm_add_epi16(sums, _mm_set1_epi16(2)), 2);
}

void halveRows(uint32_t* destination, const uint32_t* upper, const uint32_t* lower, size_t count) {
    size_t x = 0;
    const auto four = [&] {
        return _mm_packus_epi16(halved(upper + 2 * x, lower + 2 * x),
                                halved(upper + 2 * x + 4, lower + 2 * x + 4));
    };
    for (; x + Sse41::kPixels <= count; x += Sse41::kPixels) Sse41::store(destination + x, four());
    if (x < count) Sse41::storePart(destination + x, four(), count - x);
}

SamplePixels carefulSamples;

void samplePixels(uint32_t* destination, const SampleSource<uint32_t>& source,
                  const SampleSteps& steps, size_t count) {
    sampleBothWays(destination, source, steps, count, carefulSamples, sampleInner);
}

}  // namespace

Kernels sse41Kernels(const Kernels& base) {
    Kernels rows = vectorRows<Sse41>(base);
    rows.halveRows = halveRows;
    rows.filterRow = filterRowX86;
    carefulSamples = base.samplePixels;
    rows.samplePixels = samplePixels;
    return rows;
}

}  // namespace quiravent::desktop
