#include "TextPlacement.h"

#include <algorithm>
#include <limits>

namespace quiravent::desktop {

namespace {

int64_t leftOf(int64_t advance, uint32_t horizontal) {
    switch (horizontal) {
        case 1:
            return -advance / 2;
        case 2:
            return -advance;
        default:
            return 0;
    }
}

int64_t baselineBelow(const FontMetrics& metrics, uint32_t vertical) {
    const int64_t ascent = metrics.ascent;
    switch (vertical) {
        case 1:
            return ascent;
        case 2:
            return ascent - int64_t{metrics.height()} / 2;
        case 3:
            return ascent - int64_t{metrics.height()};
        default:
            return 0;
    }
}

}  // namespace

TextOrigin alignedOrigin(const FontMetrics& metrics, int64_t advance, int32_t x, int32_t y,
                         TextAlignment alignment) {
    using Limits = std::numeric_limits<int32_t>;
    const int64_t baseline = y + baselineBelow(metrics, alignment.vertical);
    return {x * int64_t{64} + leftOf(advance, alignment.horizontal),
            static_cast<int32_t>(std::clamp<int64_t>(baseline, Limits::min(), Limits::max()))};
}

}  // namespace quiravent::desktop
