#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "TestPixels.h"
#include "graphics/Canvas.h"

namespace quiravent::desktop::test {
namespace {

constexpr uint32_t kSide = 64;

std::vector<uint32_t> composed(const Surface& source, double degrees, uint32_t x, uint32_t y) {
    const auto surface = newSurface(kSide, kSide);
    Canvas canvas(surface);
    EXPECT_TRUE(canvas.setRotation(degrees));
    canvas.compose(source, x, y);
    return pixelsOf(*surface);
}

/// Where pixel (x, y) of a picture of w by h lies after a quarter turn, or two, or three.
size_t turned(int quarters, int x, int y, int w, int h) {
    const int dx = 2 * x + 1 - w;  // twice the way from the centre
    const int dy = 2 * y + 1 - h;
    const int turnedX[] = {dx, -dy, -dx, dy};
    const int turnedY[] = {dy, dx, -dy, -dx};
    const int column = 20 + (w + turnedX[quarters] - 1) / 2;
    const int row = 20 + (h + turnedY[quarters] - 1) / 2;
    return static_cast<size_t>(row) * kSide + static_cast<size_t>(column);
}

TEST(Rotation, IsExactForQuarterTurns) {
    const auto source = randomSurface(20, 14);
    for (int quarters = 0; quarters < 4; ++quarters) {
        std::vector<uint32_t> wanted(size_t{kSide} * kSide);
        for (int y = 0; y < 14; ++y) {
            for (int x = 0; x < 20; ++x) {
                wanted[turned(quarters, x, y, 20, 14)] = source->row(static_cast<uint32_t>(y))[x];
            }
        }
        for (const double whole : {0.0, 360.0, -360.0, 3600000.0}) {
            EXPECT_EQ(composed(*source, 90 * quarters + whole, 20, 20), wanted) << quarters;
        }
    }
}

TEST(Rotation, KeepsTheColourAndTheArea) {
    const auto source = newSurface(24, 18, 0xFF336699);
    for (const double degrees : {3.0, 30.0, 45.0, 101.0, -77.5}) {
        double area = 0;
        for (const uint32_t pixel : composed(*source, degrees, 20, 22)) {
            const int alpha = channel(pixel, 3);
            area += alpha / 255.0;
            ASSERT_NEAR(channel(pixel, 1), 0x66 * alpha / 255.0, 1);
        }
        EXPECT_NEAR(area, 24 * 18, 0.01 * 24 * 18) << degrees;
    }
}

/// Compares with the sampled position of the definition: a smooth picture, so that the filter
/// matters little.
TEST(Rotation, PutsEveryPixelWhereItBelongsWhenScaling) {
    const auto source = newSurface(64, 64);
    for (uint32_t y = 0; y < 64; ++y) {
        for (uint32_t x = 0; x < 64; ++x) source->row(y)[x] = 0xFF000000 | x * 4 << 8 | y * 4;
    }
    source->setOpaque(true);
    struct {
        Rect destination;
        Rect part;
    } const cases[] = {
        {{12, 12, 40, 40}, {0, 0, 64, 64}}, {{8, 8, 48, 48}, {16, 16, 16, 16}},
        {{12, 20, 40, 20}, {8, 8, 20, 40}}, {{16, 16, 32, 32}, {8, 8, 32, 32}},
        {{8, 8, 48, 48}, {32, 32, 64, 64}},
    };
    const double cosine = std::cos(0.5);
    const double sine = std::sin(0.5);
    for (const auto& c : cases) {
        const auto surface = newSurface(kSide, kSide);
        Canvas canvas(surface);
        canvas.setRotation(0.5 * 180 / 3.14159265358979323846);
        canvas.composeScaled(*source, c.destination, &c.part);
        int seen = 0;
        for (uint32_t y = 0; y < kSide; ++y) {
            for (uint32_t x = 0; x < kSide; ++x) {
                const double dx = x + 0.5 - c.destination.x - c.destination.width / 2.0;
                const double dy = y + 0.5 - c.destination.y - c.destination.height / 2.0;
                const double alongX = (dx * cosine + dy * sine) / c.destination.width + 0.5;
                const double alongY = (dy * cosine - dx * sine) / c.destination.height + 0.5;
                const double fromX = c.part.x + alongX * c.part.width;
                const double fromY = c.part.y + alongY * c.part.height;
                const double in = std::min({alongX, alongY, 1 - alongX, 1 - alongY});
                const uint32_t pixel = surface->row(y)[x];
                if (in < -0.05) {
                    ASSERT_EQ(pixel, 0U);
                }
                if (in < 0.1 || std::max(fromX, fromY) > 61) continue;
                ++seen;
                ASSERT_EQ(channel(pixel, 3), 255);
                ASSERT_NEAR(channel(pixel, 1), 4 * (fromX - 0.5), 3) << x << "," << y;
                ASSERT_NEAR(channel(pixel, 0), 4 * (fromY - 0.5), 3) << x << "," << y;
            }
        }
        EXPECT_GT(seen, 100);
    }
}

TEST(Rotation, TurnsTextAsOnePiece) {
    const std::vector<uint8_t> bytes = {255, 128, 64, 32, 16, 8};
    const CoverageMask masks[] = {{20, 30, 3, 2, 3, bytes.data()}, {28, 30, 1, 2, 1, bytes.data()}};
    const Box bounds = boxAt(20, 28, 10, 6);
    const auto surface = newSurface(kSide, kSide);
    Canvas canvas(surface);
    canvas.setRotation(180);
    canvas.drawMasks(masks, 2, bounds);
    const auto alphaAt = [&](int x, int y) { return channel(surface->row(y)[x], 3); };
    const int alphas[][3] = {
        {29, 31, 255}, {28, 31, 128}, {27, 30, 8}, {21, 31, 255}, {21, 30, 128}};
    for (const auto& [x, y, alpha] : alphas) EXPECT_EQ(alphaAt(x, y), alpha) << x << ',' << y;
    int sum = 0;
    for (const uint32_t pixel : pixelsOf(*surface)) sum += channel(pixel, 3);
    EXPECT_EQ(sum, 255 + 128 + 64 + 32 + 16 + 8 + 255 + 128);
}

TEST(Rotation, ChangesNothingBesideTheTurnedPicture) {
    const auto source = newSurface(10, 10, 0);
    const auto surface = newSurface(kSide, kSide, 0xFF112233);
    Canvas canvas(surface);
    canvas.setPorterDuff(kSource);
    canvas.setRotation(45);
    canvas.compose(*source, 27, 27);
    EXPECT_EQ(surface->row(32)[32], 0U);
    EXPECT_FALSE(surface->isOpaque());
    double kept = 0;
    for (const uint32_t pixel : pixelsOf(*surface)) kept += channel(pixel, 3) / 255.0;
    EXPECT_NEAR(kept, kSide * kSide - 100, 1);
}

}  // namespace
}  // namespace quiravent::desktop::test
