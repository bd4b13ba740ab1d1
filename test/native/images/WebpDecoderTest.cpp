#include <gtest/gtest.h>

#include "images/Encoders.h"

namespace quiravent::test {
namespace {

TEST(WebpDecoderTest, DecodesStillPictures) {
    const struct {
        Picture picture;
        float quality;
        int tolerance;
        bool opaque;
    } kCases[] = {
        {gradient, -1, 0, true},
        {fadingGradient, -1, 0, false},
        {gradient, 95, 14, true},
        {fadingGradient, 95, 14, false},
    };
    for (const auto& expected : kCases) {
        const auto surface = decoded(encodeWebp(expected.picture, expected.quality));
        ASSERT_TRUE(surface);
        EXPECT_EQ(surface->width(), kWidth);
        EXPECT_EQ(surface->height(), kHeight);
        EXPECT_EQ(surface->isOpaque(), expected.opaque);
        EXPECT_LE(distance(*surface, expected.picture), expected.tolerance)
            << "quality " << expected.quality << ", opaque " << expected.opaque;
    }
}

TEST(WebpDecoderTest, ShowsTheFirstFrameOfAnAnimationAtItsPlace) {
    constexpr uint32_t kLeft = 4;
    constexpr uint32_t kTop = 2;
    const auto surface = decoded(encodeWebpAnimation(fadingGradient, kLeft, kTop, 50, 40));
    ASSERT_TRUE(surface);
    EXPECT_EQ(surface->width(), 50U);
    EXPECT_EQ(surface->height(), 40U);
    EXPECT_FALSE(surface->isOpaque());
    const Picture onCanvas = [](uint32_t x, uint32_t y) {
        const bool inside = x >= kLeft && x < kLeft + kWidth && y >= kTop && y < kTop + kHeight;
        return inside ? fadingGradient(x - kLeft, y - kTop) : Colour{0, 0, 0, 0};
    };
    EXPECT_EQ(distance(*surface, onCanvas), 0);

    const auto covered = decoded(encodeWebpAnimation(gradient, 0, 0, kWidth, kHeight));
    ASSERT_TRUE(covered);
    EXPECT_TRUE(covered->isOpaque());
    EXPECT_EQ(distance(*covered, gradient), 0);
}

}  // namespace
}  // namespace quiravent::test
