#pragma once

#include <cstdint>

#include "graphics/PixelMath.h"
#include "graphics/PorterDuff.h"

namespace quiravent::desktop {

// One pixel by the algebra of Porter and Duff; with internal linkage for the reason given in
// PixelMath.h.

template <uint32_t mode>
static inline uint32_t blend(uint32_t source, uint32_t destination) {
    constexpr PorterDuff kMode = kPorterDuff[mode];
    const uint32_t sourceAlpha = alphaOf(source);
    const uint32_t destinationAlpha = alphaOf(destination);
    const uint32_t keep = factorOf(kMode.destination, sourceAlpha, destinationAlpha, 255);
    if constexpr (mode == kAdd) return addSaturated(source, destination);
    // Rounds as weightedSum does, since source * 255 / 255 leaves no remainder.
    if constexpr (kMode.source == Factor::one) return source + scalePixel(destination, keep);
    const uint32_t take = factorOf(kMode.source, sourceAlpha, destinationAlpha, 255);
    return weightedSum(source, take, destination, keep);
}

template <uint32_t mode>
static inline uint32_t blendCovered(uint32_t source, uint32_t destination, uint32_t coverage) {
    return interpolate(destination, blend<mode>(source, destination), coverage);
}

}  // namespace quiravent::desktop
