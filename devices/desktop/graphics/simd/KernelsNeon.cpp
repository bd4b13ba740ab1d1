#include <arm_neon.h>

#include "graphics/simd/InnerSamples.h"
#include "graphics/simd/PartBytes.h"
#include "graphics/simd/VectorKernels.h"
#include "graphics/simd/VectorRows.h"

namespace quiravent::desktop {

namespace {

/// value / 255 of each word, rounded to nearest, as bytes.
uint8x8_t wordsBy255(uint16x8_t words) { return vraddhn_u16(words, vrshrq_n_u16(words, 8)); }

uint8x16_t fromWords(uint16x8_t low, uint16x8_t high) {
    return vcombine_u8(wordsBy255(low), wordsBy255(high));
}

uint8x16_t repeatedBytes(uint32x4_t lowestBytes) {
    return vreinterpretq_u8_u32(vmulq_n_u32(lowestBytes, 0x01010101));
}

uint8x16_t spreadBytes(uint32_t fourBytes) {
    const uint16x8_t words = vmovl_u8(vcreate_u8(fourBytes));
    return repeatedBytes(vmovl_u16(vget_low_u16(words)));
}

/// See VectorRows.h.
struct Neon {
    static constexpr size_t kPixels = 4;
    using Pixels = uint8x16_t;

    static Pixels load(const uint32_t* from) { return vreinterpretq_u8_u32(vld1q_u32(from)); }
    static void store(uint32_t* to, Pixels pixels) { vst1q_u32(to, vreinterpretq_u32_u8(pixels)); }
    static Pixels loadPart(const uint32_t* from, size_t count) {
        uint32x4_t pixels = vdupq_n_u32(0);
        pixels = vld1q_lane_u32(from, pixels, 0);
        if (count > 1) pixels = vld1q_lane_u32(from + 1, pixels, 1);
        if (count > 2) pixels = vld1q_lane_u32(from + 2, pixels, 2);
        return vreinterpretq_u8_u32(pixels);
    }
    static void storePart(uint32_t* to, Pixels bytes, size_t count) {
        const uint32x4_t pixels = vreinterpretq_u32_u8(bytes);
        vst1q_lane_u32(to, pixels, 0);
        if (count > 1) vst1q_lane_u32(to + 1, pixels, 1);
        if (count > 2) vst1q_lane_u32(to + 2, pixels, 2);
    }
    static Pixels splat(uint32_t pixel) { return vreinterpretq_u8_u32(vdupq_n_u32(pixel)); }
    static Pixels weight(uint32_t byte) { return vdupq_n_u8(static_cast<uint8_t>(byte)); }
    static Pixels coverage(const uint8_t* mask) { return spreadBytes(load32(mask)); }
    static Pixels coveragePart(const uint8_t* mask, size_t count) {
        return spreadBytes(loadUpTo3Bytes(mask, count));
    }
    static Pixels shares(const uint8_t* mask) { return coverage(mask); }
    static Pixels sharesPart(const uint8_t* mask, size_t count) {
        return coveragePart(mask, count);
    }

    struct Paint {
        Pixels source;

        explicit Paint(uint32_t color) : source(splat(color)) {}
        Pixels over(Pixels before, Pixels shares) const {
            return mixed(source, shares, before, inverted(shares));
        }
    };

    static Pixels alphas(Pixels pixels) {
        return repeatedBytes(vshrq_n_u32(vreinterpretq_u32_u8(pixels), 24));
    }
    static Pixels inverted(Pixels bytes) { return vmvnq_u8(bytes); }
    static Pixels sum(Pixels a, Pixels b) { return vaddq_u8(a, b); }
    static Pixels saturatedSum(Pixels a, Pixels b) { return vqaddq_u8(a, b); }
    static Pixels scaled(Pixels a, Pixels weights) {
        return fromWords(vmull_u8(vget_low_u8(a), vget_low_u8(weights)),
                         vmull_u8(vget_high_u8(a), vget_high_u8(weights)));
    }
    static Pixels mixed(Pixels a, Pixels u, Pixels b, Pixels v) {
        const uint16x8_t low = vmull_u8(vget_low_u8(a), vget_low_u8(u));
        const uint16x8_t high = vmull_u8(vget_high_u8(a), vget_high_u8(u));
        return fromWords(vmlal_u8(low, vget_low_u8(b), vget_low_u8(v)),
                         vmlal_u8(high, vget_high_u8(b), vget_high_u8(v)));
    }
    using Ratio = Pixels;
    static Ratio ratio(uint32_t weight) { return Neon::weight(weight); }
    static Pixels scaledBy(Pixels a, Ratio ratio) { return scaled(a, ratio); }
    static Pixels interpolated(Pixels from, Pixels to, Ratio ratio) {
        return mixed(to, ratio, from, inverted(ratio));
    }
    static bool isTransparent(Pixels bytes) {
        const uint32x4_t pixels = vreinterpretq_u32_u8(bytes);
        const uint32x2_t any = vorr_u32(vget_low_u32(pixels), vget_high_u32(pixels));
        return (vget_lane_u32(any, 0) | vget_lane_u32(any, 1)) == 0;
    }
    static bool isOpaque(Pixels bytes) {
        const uint32x4_t pixels = vreinterpretq_u32_u8(bytes);
        const uint32x2_t all = vand_u32(vget_low_u32(pixels), vget_high_u32(pixels));
        return (vget_lane_u32(all, 0) & vget_lane_u32(all, 1)) >> 24 == 255;
    }

    struct WeightPair {
        uint16_t first;
        uint16_t second;
    };

    struct CoarseSums {
        uint16x8_t low = vdupq_n_u16(0);
        uint16x8_t high = vdupq_n_u16(0);

        static WeightPair weights(int first, int second) {
            return {static_cast<uint16_t>(first), static_cast<uint16_t>(second)};
        }
        void add(Pixels a, Pixels b, WeightPair pair) {
            addOne(a, vdup_n_u8(static_cast<uint8_t>(pair.first)));
            addOne(b, vdup_n_u8(static_cast<uint8_t>(pair.second)));
        }
        void addOne(Pixels pixels, uint8x8_t weight) {
            low = vmlal_u8(low, vget_low_u8(pixels), weight);
            high = vmlal_u8(high, vget_high_u8(pixels), weight);
        }
        Pixels rounded() const { return vcombine_u8(vrshrn_n_u16(low, 7), vrshrn_n_u16(high, 7)); }
    };

    struct FineSums {
        uint32x4_t sums[4] = {vdupq_n_u32(0), vdupq_n_u32(0), vdupq_n_u32(0), vdupq_n_u32(0)};

        static WeightPair weights(int first, int second) {
            return CoarseSums::weights(first, second);
        }
        void add(Pixels a, Pixels b, WeightPair pair) {
            addOne(a, pair.first);
            addOne(b, pair.second);
        }
        void addOne(Pixels pixels, uint16_t weight) {
            const uint16x8_t low = vmovl_u8(vget_low_u8(pixels));
            const uint16x8_t high = vmovl_u8(vget_high_u8(pixels));
            sums[0] = vmlal_n_u16(sums[0], vget_low_u16(low), weight);
            sums[1] = vmlal_n_u16(sums[1], vget_high_u16(low), weight);
            sums[2] = vmlal_n_u16(sums[2], vget_low_u16(high), weight);
            sums[3] = vmlal_n_u16(sums[3], vget_high_u16(high), weight);
        }
        Pixels rounded() const {
            const uint16x8_t low =
                vcombine_u16(vrshrn_n_u32(sums[0], 14), vrshrn_n_u32(sums[1], 14));
            const uint16x8_t high =
                vcombine_u16(vrshrn_n_u32(sums[2], 14), vrshrn_n_u32(sums[3], 14));
            return vcombine_u8(vmovn_u16(low), vmovn_u16(high));
        }
    };
};

void storePixel(uint32_t* to, uint16x4_t channels) {
    const uint8x8_t bytes = vmovn_u16(vcombine_u16(channels, channels));
    vst1_lane_u32(to, vreinterpret_u32_u8(bytes), 0);
}

/// Two pixels as words.
uint16x8_t loadPair(const uint32_t* pixels) {
    return vmovl_u8(vreinterpret_u8_u32(vld1_u32(pixels)));
}

/// Weights of 14 bits; with those of 7 the sums also fit, in words.
uint16x4_t fineMean(const uint32_t* pixels, const int16_t* weights, uint32_t taps) {
    uint32x4_t sums = vdupq_n_u32(0);
    for (uint32_t tap = 0; tap < taps; tap += 2) {
        const uint16x8_t pair = loadPair(pixels + tap);
        sums = vmlal_n_u16(sums, vget_low_u16(pair), static_cast<uint16_t>(weights[tap]));
        sums = vmlal_n_u16(sums, vget_high_u16(pair), static_cast<uint16_t>(weights[tap + 1]));
    }
    return vrshrn_n_u32(sums, 14);
}

uint16x4_t coarseMean(const uint32_t* pixels, const int16_t* weights, uint32_t taps) {
    uint16x4_t sums = vdup_n_u16(0);
    for (uint32_t tap = 0; tap < taps; tap += 2) {
        const uint16x8_t pair = loadPair(pixels + tap);
        sums = vmla_n_u16(sums, vget_low_u16(pair), static_cast<uint16_t>(weights[tap]));
        sums = vmla_n_u16(sums, vget_high_u16(pair), static_cast<uint16_t>(weights[tap + 1]));
    }
    return vrshr_n_u16(sums, 7);
}

void filterRow(uint32_t* destination, const uint32_t* source, const FilterRow& filter,
               size_t count) {
    const auto mean = filter.shift == 7 ? coarseMean : fineMean;
    const int16_t* weights = filter.weights;
    for (size_t i = 0; i < count; ++i, weights += filter.stride) {
        storePixel(destination + i, mean(source + filter.first[i], weights, filter.taps));
    }
}

void halveRows(uint32_t* destination, const uint32_t* upper, const uint32_t* lower, size_t count) {
    for (size_t i = 0; i < count; ++i, upper += 2, lower += 2) {
        const uint16x8_t sums =
            vaddl_u8(vreinterpret_u8_u32(vld1_u32(upper)), vreinterpret_u8_u32(vld1_u32(lower)));
        const uint16x4_t sum = vadd_u16(vget_low_u16(sums), vget_high_u16(sums));
        storePixel(destination + i, vrshr_n_u16(sum, 2));
    }
}

/// The columns of one sample mixed with weights of 128: four words.
uint16x4_t mixedColumns(const uint32_t* pixels, uint8x8_t weights) {
    const uint16x8_t products = vmull_u8(vreinterpret_u8_u32(vld1_u32(pixels)), weights);
    return vadd_u16(vget_low_u16(products), vget_high_u16(products));
}

/// One sample at a position of InnerSamples.h.
uint16x4_t innerSample(const SampleSource<uint32_t>& source, int64_t x, int64_t y) {
    const uint32_t* upper =
        source.values + static_cast<size_t>(y >> 32) * source.stride + static_cast<size_t>(x >> 32);
    const uint32_t weight = static_cast<uint32_t>(x >> 25) & 127;
    const auto first = static_cast<uint32_t>((128 - weight) * 0x01010101U);
    const auto weights = vcreate_u8(first | uint64_t{weight * 0x01010101U} << 32);
    const int16x4_t above = vreinterpret_s16_u16(mixedColumns(upper, weights));
    const int16x4_t below = vreinterpret_s16_u16(mixedColumns(upper + source.stride, weights));
    const auto down = static_cast<int16_t>((static_cast<uint32_t>(y >> 25) & 127) << 8);
    const int16x4_t step = vqrdmulh_n_s16(vsub_s16(below, above), down);
    return vrshr_n_u16(vreinterpret_u16_s16(vadd_s16(above, step)), 7);
}

void sampleInner(uint32_t* destination, const SampleSource<uint32_t>& source,
                 const SampleSteps& steps, size_t count) {
    int64_t x = steps.x;
    int64_t y = steps.y;
    for (size_t i = 0; i < count; ++i, x += steps.stepX, y += steps.stepY) {
        storePixel(destination + i, innerSample(source, x, y));
    }
}

SamplePixels carefulSamples;

void samplePixels(uint32_t* destination, const SampleSource<uint32_t>& source,
                  const SampleSteps& steps, size_t count) {
    sampleBothWays(destination, source, steps, count, carefulSamples, sampleInner);
}

}  // namespace

Kernels neonKernels(const Kernels& base) {
    Kernels rows = vectorRows<Neon>(base);
    rows.halveRows = halveRows;
    rows.filterRow = filterRow;
    carefulSamples = base.samplePixels;
    rows.samplePixels = samplePixels;
    return rows;
}

}  // namespace quiravent::desktop
