#include <algorithm>
#include <cstring>

#include "graphics/KernelSets.h"
#include "graphics/PixelBlend.h"

namespace quiravent::desktop {

namespace {

template <typename FillRow>
void fillRows(const PixelBlock& block, FillRow fillRow) {
    for (size_t y = 0; y < block.height; ++y) fillRow(block.pixels + y * block.stride);
}

void storeColor(const PixelBlock& block, uint32_t color) {
    fillRows(block, [&](uint32_t* row) { std::fill_n(row, block.width, color); });
}

template <uint32_t mode>
void fillRow(uint32_t* destination, size_t count, uint32_t color) {
    for (size_t i = 0; i < count; ++i) destination[i] = blend<mode>(color, destination[i]);
}

template <uint32_t mode>
void fill(const PixelBlock& block, uint32_t color) {
    fillRows(block, [&](uint32_t* row) { fillRow<mode>(row, block.width, color); });
}

template <uint32_t mode>
void composeRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t opacity) {
    for (size_t i = 0; i < count; ++i) {
        destination[i] = blend<mode>(scalePixel(source[i], opacity), destination[i]);
    }
}

template <uint32_t mode>
void fillMaskRow(uint32_t* destination, const uint8_t* mask, size_t count, uint32_t color) {
    for (size_t i = 0; i < count; ++i) {
        if (mask[i] != 0) destination[i] = blendCovered<mode>(color, destination[i], mask[i]);
    }
}

template <uint32_t mode>
void fillMask(const PixelBlock& block, const uint8_t* mask, size_t maskStride, uint32_t color) {
    fillRows(block, [&](uint32_t* row) {
        fillMaskRow<mode>(row, mask, block.width, color);
        mask += maskStride;
    });
}

template <uint32_t mode>
void composeMaskRow(uint32_t* destination, const uint32_t* source, const uint8_t* mask,
                    size_t count, uint32_t opacity) {
    for (size_t i = 0; i < count; ++i) {
        if (mask[i] == 0) continue;
        const uint32_t faded = scalePixel(source[i], opacity);
        destination[i] = blendCovered<mode>(faded, destination[i], mask[i]);
    }
}

template <uint32_t mode>
void fillBlocks(uint32_t* corner, size_t stride, const CoverageBlock* blocks, size_t count,
                uint32_t color) {
    for (const CoverageBlock* block = blocks; block != blocks + count; ++block) {
        fillMaskRow<mode>(corner + block->y * stride + block->x, block->coverage,
                          CoverageBlock::kPixels, color);
    }
}

template <uint32_t mode>
constexpr ModeKernels modeKernels() {
    return {mode == kSource ? storeColor : fill<mode>, composeRow<mode>, fillMask<mode>,
            composeMaskRow<mode>, fillBlocks<mode>};
}

void copyRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t /*opacity*/) {
    std::memcpy(destination, source, count * sizeof(uint32_t));
}

void overRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t /*opacity*/) {
    for (size_t i = 0; i < count; ++i) {
        const uint32_t alpha = alphaOf(source[i]);
        if (alpha == 255) {
            destination[i] = source[i];
        } else if (alpha != 0) {
            destination[i] = blend<kSourceOver>(source[i], destination[i]);
        }
    }
}

void fadeRow(uint32_t* destination, const uint32_t* source, size_t count, uint32_t opacity) {
    for (size_t i = 0; i < count; ++i) {
        destination[i] = interpolate(destination[i], source[i], opacity);
    }
}

struct ChannelSums {
    uint32_t blue = 0;
    uint32_t green = 0;
    uint32_t red = 0;
    uint32_t alpha = 0;

    void add(uint32_t pixel, uint32_t weight) {
        blue += (pixel & 255) * weight;
        green += (pixel >> 8 & 255) * weight;
        red += (pixel >> 16 & 255) * weight;
        alpha += (pixel >> 24) * weight;
    }

    uint32_t rounded(uint32_t shift) const {
        const uint32_t half = 1U << (shift - 1);
        return ((alpha + half) >> shift) << 24 | ((red + half) >> shift) << 16 |
               ((green + half) >> shift) << 8 | (blue + half) >> shift;
    }
};

void mixRows(uint32_t* destination, const uint32_t* const* rows, const int16_t* weights,
             uint32_t taps, uint32_t shift, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        ChannelSums sums;
        for (uint32_t tap = 0; tap < taps; ++tap) {
            sums.add(rows[tap][i], static_cast<uint32_t>(weights[tap]));
        }
        destination[i] = sums.rounded(shift);
    }
}

void filterRow(uint32_t* destination, const uint32_t* source, const FilterRow& filter,
               size_t count) {
    const int16_t* weights = filter.weights;
    for (size_t i = 0; i < count; ++i, weights += filter.stride) {
        const uint32_t* pixels = source + filter.first[i];
        ChannelSums sums;
        for (uint32_t tap = 0; tap < filter.taps; ++tap) {
            sums.add(pixels[tap], static_cast<uint32_t>(weights[tap]));
        }
        destination[i] = sums.rounded(filter.shift);
    }
}

uint32_t meanOfHalves(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    const uint32_t sum = (a & kEvenChannels) + (b & kEvenChannels) + (c & kEvenChannels) +
                         (d & kEvenChannels) + 0x00020002U;
    return (sum >> 2) & kEvenChannels;
}

void halveRows(uint32_t* destination, const uint32_t* upper, const uint32_t* lower, size_t count) {
    for (size_t i = 0; i < count; ++i, upper += 2, lower += 2) {
        const uint32_t even = meanOfHalves(upper[0], upper[1], lower[0], lower[1]);
        const uint32_t odd =
            meanOfHalves(upper[0] >> 8, upper[1] >> 8, lower[0] >> 8, lower[1] >> 8);
        destination[i] = even | odd << 8;
    }
}

/// The channels of pixels that are added up with weights of 1/128, as words.
struct WideChannels {
    uint32_t even;
    uint32_t odd;
};

/// From a (weight 0) to b (weight 128).
WideChannels betweenColumns(uint32_t a, uint32_t b, uint32_t weight) {
    return {(a & kEvenChannels) * (128 - weight) + (b & kEvenChannels) * weight,
            ((a >> 8) & kEvenChannels) * (128 - weight) + ((b >> 8) & kEvenChannels) * weight};
}

/// One channel as a byte, from that of `upper` (weight 0) to that of `lower` (weight 128).
uint32_t betweenRows(uint32_t upper, uint32_t lower, uint32_t weight) {
    const int32_t way = static_cast<int32_t>(lower & 0xFFFF) - static_cast<int32_t>(upper & 0xFFFF);
    const int32_t step = (way * static_cast<int32_t>(weight) + 64) >> 7;
    return (static_cast<uint32_t>(static_cast<int32_t>(upper & 0xFFFF) + step) + 64) >> 7;
}

uint32_t betweenRows(const WideChannels& upper, const WideChannels& lower, uint32_t weight) {
    return betweenRows(upper.even, lower.even, weight) |
           betweenRows(upper.odd, lower.odd, weight) << 8 |
           betweenRows(upper.even >> 16, lower.even >> 16, weight) << 16 |
           betweenRows(upper.odd >> 16, lower.odd >> 16, weight) << 24;
}

/// The two neighbours of a position on one axis, held to the source, and the weight of the second.
struct Neighbours {
    size_t first;
    size_t second;
    uint32_t weight;  ///< 0 to 127
};

Neighbours neighboursAt(int64_t position, uint32_t size) {
    const int64_t rounded = position + kHalfSampleWeight;
    const size_t last = size - 1;
    if (rounded < 0) return {0, 0, 0};
    const auto index = static_cast<size_t>(rounded >> 32);
    if (index >= last) return {last, last, 0};
    return {index, index + 1, static_cast<uint32_t>(rounded >> 25) & 127};
}

template <typename Value>
void sampleRow(Value* destination, const SampleSource<Value>& source, const SampleSteps& steps,
               size_t count) {
    int64_t x = steps.x;
    int64_t y = steps.y;
    for (size_t i = 0; i < count; ++i, x += steps.stepX, y += steps.stepY) {
        const Neighbours across = neighboursAt(x, source.width);
        const Neighbours down = neighboursAt(y, source.height);
        const Value* upper = source.values + down.first * source.stride;
        const Value* lower = source.values + down.second * source.stride;
        const auto above = betweenColumns(upper[across.first], upper[across.second], across.weight);
        const auto below = betweenColumns(lower[across.first], lower[across.second], across.weight);
        destination[i] = static_cast<Value>(betweenRows(above, below, down.weight));
    }
}

}  // namespace

const Kernels kScalarKernels = {
    {modeKernels<0>(), modeKernels<1>(), modeKernels<2>(), modeKernels<3>(), modeKernels<4>(),
     modeKernels<5>(), modeKernels<6>(), modeKernels<7>(), modeKernels<8>(), modeKernels<9>(),
     modeKernels<10>(), modeKernels<11>()},
    storeColor,
    copyRow,
    overRow,
    fadeRow,
    mixRows,
    filterRow,
    halveRows,
    sampleRow<uint32_t>,
    sampleRow<uint8_t>,
};

}  // namespace quiravent::desktop
