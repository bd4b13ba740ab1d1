#pragma once

#include <cstdint>

namespace quiravent::desktop {

// Multiplication by a weight that is the same for all pixels, in one instruction: the rounded high
// product of two signed words, (value * ratio + 2^14) >> 15, with the ratio for which that is
// value * weight / 255, rounded to nearest, for all values from -255 to 255. Most often that is the
// nearest to 2^15 * weight / 255, else a neighbour. Internal linkage for the reason given in
// PixelMath.h.

static constexpr bool isExactRatio(int32_t ratio, int32_t weight) {
    for (int32_t value = 0; value <= 255; ++value) {
        // No product of bytes is a tie when divided by 255, which is odd.
        const int32_t wanted = (2 * value * weight + 255) / 510;
        if ((value * ratio + (1 << 14)) >> 15 != wanted) return false;
        if ((-value * ratio + (1 << 14)) >> 15 != -wanted) return false;
    }
    return true;
}

static constexpr int16_t exactRatio(int32_t weight) {
    constexpr int32_t kMost = 32767;
    const int32_t nearest = (weight * 65536 + 255) / 510;
    if (nearest <= kMost && isExactRatio(nearest, weight)) return static_cast<int16_t>(nearest);
    const bool isLess = isExactRatio(nearest - 1, weight);
    return static_cast<int16_t>(isLess ? nearest - 1 : nearest + 1);
}

struct ExactRatios {
    int16_t of[256];
};

static constexpr ExactRatios exactRatios() {
    ExactRatios ratios{};
    for (int32_t weight = 0; weight < 256; ++weight) ratios.of[weight] = exactRatio(weight);
    return ratios;
}

/// By weight.
static constexpr ExactRatios kExactRatios = exactRatios();

}  // namespace quiravent::desktop
