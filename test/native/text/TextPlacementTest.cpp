#include "graphics/text/TextPlacement.h"

#include <gtest/gtest.h>

#include <limits>

namespace quiravent::desktop {
namespace {

constexpr int64_t kPixel = 64;

TEST(TextPlacementTest, AlignsTheBoxOfAdvanceAscentAndDescent) {
    constexpr FontMetrics kMetrics{19, 6, 30};
    constexpr int64_t kAdvance = 10 * kPixel + 33;
    const struct {
        TextAlignment alignment;
        TextOrigin origin;
    } kCases[] = {
        {{0, 0}, {100 * kPixel, 50}},           {{1, 0}, {100 * kPixel - 336, 50}},
        {{2, 0}, {100 * kPixel - 673, 50}},     {{0, 1}, {100 * kPixel, 50 + 19}},
        {{0, 2}, {100 * kPixel, 50 - 12 + 19}}, {{0, 3}, {100 * kPixel, 50 - 6}},
        {{3, 4}, {100 * kPixel, 50}},           {{0xFFFFFFFF, 0xFFFFFFFF}, {100 * kPixel, 50}},
    };
    for (const auto& expected : kCases) {
        const TextOrigin origin = alignedOrigin(kMetrics, kAdvance, 100, 50, expected.alignment);
        EXPECT_EQ(origin.x, expected.origin.x) << "horizontal " << expected.alignment.horizontal;
        EXPECT_EQ(origin.baseline, expected.origin.baseline)
            << "vertical " << expected.alignment.vertical;
    }
}

TEST(TextPlacementTest, StaysInRangeAtTheEndsOfTheCoordinates) {
    using Limits = std::numeric_limits<int32_t>;
    const FontMetrics metrics{200, 100, 300};
    const TextOrigin low = alignedOrigin(metrics, 1 << 30, Limits::min(), Limits::min(), {2, 3});
    EXPECT_EQ(low.x, Limits::min() * kPixel - (1 << 30));
    EXPECT_EQ(low.baseline, Limits::min());
    const TextOrigin high = alignedOrigin(metrics, 0, Limits::max(), Limits::max(), {0, 1});
    EXPECT_EQ(high.x, Limits::max() * kPixel);
    EXPECT_EQ(high.baseline, Limits::max());
}

}  // namespace
}  // namespace quiravent::desktop
