#pragma once

#include <cstdint>

namespace quiravent::desktop {

// Arithmetic on premultiplied ARGB32 pixels, two channels at a time in the 16-bit halves of a
// word. Everything here has internal linkage on purpose: sources compiled for different processor
// levels include it, and a shared inline function would let the linker keep the copy that an older
// processor can't run.

static constexpr uint32_t kEvenChannels = 0x00FF00FFU;

static inline uint32_t alphaOf(uint32_t pixel) { return pixel >> 24; }

/// value / 255 rounded to nearest, exact for 0 to 65025.
static inline uint32_t divideBy255(uint32_t value) { return ((value + 128) * 257) >> 16; }

/// divideBy255 of both halves at once.
static inline uint32_t divideHalvesBy255(uint32_t halves) {
    const uint32_t biased = halves + 0x00800080U;
    return ((biased + ((biased >> 8) & kEvenChannels)) >> 8) & kEvenChannels;
}

/// Each channel times weight / 255, rounded.
static inline uint32_t scalePixel(uint32_t pixel, uint32_t weight) {
    const uint32_t even = divideHalvesBy255((pixel & kEvenChannels) * weight);
    const uint32_t odd = divideHalvesBy255(((pixel >> 8) & kEvenChannels) * weight);
    return even | (odd << 8);
}

/// (a * weightA + b * weightB) / 255 for each channel, rounded once. No sum of products may exceed
/// 65025; none does for premultiplied pixels under the factors of Porter and Duff except "add".
static inline uint32_t weightedSum(uint32_t a, uint32_t weightA, uint32_t b, uint32_t weightB) {
    const uint32_t even = (a & kEvenChannels) * weightA + (b & kEvenChannels) * weightB;
    const uint32_t odd =
        ((a >> 8) & kEvenChannels) * weightA + ((b >> 8) & kEvenChannels) * weightB;
    return divideHalvesBy255(even) | (divideHalvesBy255(odd) << 8);
}

/// From `from` (weight 0) to `to` (weight 255).
static inline uint32_t interpolate(uint32_t from, uint32_t to, uint32_t weight) {
    return weightedSum(to, weight, from, 255 - weight);
}

/// Halves of up to 510 held to 255.
static inline uint32_t saturateHalves(uint32_t halves) {
    const uint32_t overflow = (halves >> 8) & 0x00010001U;
    return (halves | (overflow * 255)) & kEvenChannels;
}

static inline uint32_t addSaturated(uint32_t a, uint32_t b) {
    const uint32_t even = saturateHalves((a & kEvenChannels) + (b & kEvenChannels));
    const uint32_t odd = saturateHalves(((a >> 8) & kEvenChannels) + ((b >> 8) & kEvenChannels));
    return even | (odd << 8);
}

/// The premultiplied pixel of a colour that isn't.
static inline uint32_t premultiplied(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha) {
    return alpha << 24 | divideBy255(red * alpha) << 16 | divideBy255(green * alpha) << 8 |
           divideBy255(blue * alpha);
}

}  // namespace quiravent::desktop
