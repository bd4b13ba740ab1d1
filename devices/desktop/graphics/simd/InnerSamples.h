#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/Kernels.h"

namespace quiravent::desktop {

// Internal linkage for the reason given in PixelMath.h.

/// The part of a run of samples whose four neighbours all lie within the source, so that no
/// position needs to be held to an edge.
struct InnerSamples {
    size_t first;
    size_t last;
};

/// Narrows the range to those i for which 0 <= start + i * step < limit.
static inline void narrowSamples(InnerSamples& inner, int64_t start, int64_t step, int64_t limit) {
    const int64_t stride = step < 0 ? -step : step;
    const int64_t toEntry = step < 0 ? start - (limit - 1) : -start;
    const int64_t toExit = step < 0 ? start : limit - 1 - start;
    const bool neverInside = toExit < 0 || (stride == 0 && toEntry > 0);
    if (neverInside) inner.last = inner.first;
    if (stride == 0 || neverInside) return;
    const auto entry = static_cast<size_t>(toEntry > 0 ? (toEntry + stride - 1) / stride : 0);
    const auto exit = static_cast<size_t>(toExit / stride + 1);
    if (entry > inner.first) inner.first = entry;
    if (exit < inner.last) inner.last = exit;
}

static inline SampleSteps stepsFrom(const SampleSteps& steps, size_t index) {
    const auto by = static_cast<int64_t>(index);
    return {steps.x + by * steps.stepX, steps.y + by * steps.stepY, steps.stepX, steps.stepY};
}

using SamplePixels = void (*)(uint32_t*, const SampleSource<uint32_t>&, const SampleSteps&, size_t);

/// Samples what needs care at the source's edges by `careful`, and the rest by `inside`, which is
/// given positions to which kHalfSampleWeight has been added.
static inline void sampleBothWays(uint32_t* destination, const SampleSource<uint32_t>& source,
                                  const SampleSteps& steps, size_t count, SamplePixels careful,
                                  SamplePixels inside) {
    const SampleSteps rounded{steps.x + kHalfSampleWeight, steps.y + kHalfSampleWeight, steps.stepX,
                              steps.stepY};
    InnerSamples inner{0, count};
    narrowSamples(inner, rounded.x, steps.stepX, int64_t{source.width - 1} << 32);
    narrowSamples(inner, rounded.y, steps.stepY, int64_t{source.height - 1} << 32);
    if (inner.first >= inner.last) {
        careful(destination, source, steps, count);
        return;
    }
    if (inner.first > 0) careful(destination, source, steps, inner.first);
    inside(destination + inner.first, source, stepsFrom(rounded, inner.first),
           inner.last - inner.first);
    if (inner.last < count) {
        careful(destination + inner.last, source, stepsFrom(steps, inner.last), count - inner.last);
    }
}

}  // namespace quiravent::desktop
