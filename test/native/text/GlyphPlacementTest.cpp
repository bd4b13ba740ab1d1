#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "text/TestFont.h"

namespace quiravent::test {
namespace {

/// The glyph of "|" is this rectangle, in font units, in the middle of its advance.
constexpr double kBarLeft = 260;
constexpr double kBarBottom = -483;
constexpr double kBarRight = 430;
constexpr double kBarTop = 1565;
constexpr double kBarAdvance = 690;

double overlap(double begin, double end, int pixel) {
    return std::max(0.0, std::min(end, pixel + 1.0) - std::max(begin, pixel + 0.0));
}

/// Coverage of the pixel by a bar whose pen is at `pen`, its baseline at y = 0.
double barCoverage(uint32_t height, double pen, int x, int y) {
    const double scale = height / kUnitsPerEm;
    return 255 * overlap(pen + kBarLeft * scale, pen + kBarRight * scale, x) *
           overlap(-kBarTop * scale, -kBarBottom * scale, y);
}

double coverageAt(const desktop::GlyphRun& run, int x, int y) {
    double sum = 0;
    for (const auto& mask : run.masks()) {
        const int column = x - mask.x;
        const int row = y - mask.y;
        const bool inside = column >= 0 && column < static_cast<int>(mask.width) && row >= 0 &&
                            row < static_cast<int>(mask.height);
        if (inside) sum += mask.coverage[static_cast<size_t>(row) * mask.stride + column];
    }
    return sum;
}

TEST(GlyphPlacementTest, CoversWhatTheOutlineCoversAtEveryQuarter) {
    // Outlines are scaled to 64ths of a pixel; an edge that is half of one off makes 2 levels, at
    // a corner twice that.
    constexpr double kTolerance = 5;
    for (const uint32_t height : {9U, 24U, 61U})
        for (int64_t x = -2 * kPixel; x <= 2 * kPixel; x += 5) {
            const auto font = testFont(height);
            const auto run = font->layout("|", {x, 0});
            const double pen = std::floor(static_cast<double>(x) / 16 + 0.5) / 4;
            const int size = static_cast<int>(height);
            for (int row = -size; row <= size; ++row)
                for (int column = -4; column <= size; ++column)
                    ASSERT_NEAR(coverageAt(run, column, row), barCoverage(height, pen, column, row),
                                kTolerance)
                        << "height " << height << ", pen " << x << ", pixel " << column << ","
                        << row;
        }
}

TEST(GlyphPlacementTest, MovesInkWithTheOrigin) {
    const auto font = testFont(32);
    const Ink still = inkOf(font->layout("Ogonek", {0, 0}));
    ASSERT_GT(still.amount, 100);
    for (int64_t x = -48; x <= 200; x += 16) {
        const Ink moved = inkOf(font->layout("Ogonek", {x, 77}));
        EXPECT_NEAR(moved.x - still.x, static_cast<double>(x) / 64, 0.01) << x;
        EXPECT_NEAR(moved.y - still.y, 77, 0.01) << x;
        EXPECT_NEAR(moved.amount, still.amount, still.amount * 0.005) << x;
    }
}

TEST(GlyphPlacementTest, PlacesEachGlyphByTheAdvancesBeforeIt) {
    const auto font = testFont(21);
    const auto run = font->layout("||||||||||||||||||||", {0, 0});
    ASSERT_EQ(run.masks().size(), 20U);
    for (size_t i = 0; i < run.masks().size(); ++i) {
        const double pen = static_cast<double>(i) * kBarAdvance * 21 / kUnitsPerEm;
        const double centre = pen + kBarAdvance / 2 * 21 / kUnitsPerEm;
        const desktop::CoverageMask& mask = run.masks()[i];
        double amount = 0;
        double moment = 0;
        for (uint32_t x = 0; x < mask.width; ++x) {
            const double part = mask.coverage[mask.stride * 5 + x];
            amount += part;
            moment += part * (mask.x + x + 0.5);
        }
        EXPECT_NEAR(moment / amount, centre, 0.25) << i;
    }
}

TEST(GlyphPlacementTest, AlignsAboutAPoint) {
    // An eighth for the quarter that is nearest, the rest for counting ink by whole pixels.
    constexpr double kAcross = 0.2;
    for (const uint32_t height : {24U, 33U, 47U, 90U}) {
        const auto font = testFont(height);
        const auto inkAt = [&](uint32_t horizontal, uint32_t vertical) {
            return inkOf(font->layout("|", 200, 100, {horizontal, vertical}));
        };
        const double half = kBarAdvance / 2 * height / kUnitsPerEm;
        EXPECT_NEAR(inkAt(0, 0).x, 200 + half, kAcross) << height;
        EXPECT_NEAR(inkAt(1, 0).x, 200, kAcross) << height;
        EXPECT_NEAR(inkAt(2, 0).x, 200 - half, kAcross) << height;

        const double onBaseline = -(kBarTop + kBarBottom) / 2 * height / kUnitsPerEm;
        const desktop::FontMetrics& metrics = font->metrics();
        EXPECT_NEAR(inkAt(0, 0).y, 100 + onBaseline, 0.1) << height;
        EXPECT_NEAR(inkAt(0, 1).y, 100 + onBaseline + metrics.ascent, 0.1) << height;
        EXPECT_NEAR(inkAt(0, 2).y, 100 + onBaseline + metrics.ascent - metrics.height() / 2.0, 0.6)
            << height;
        EXPECT_NEAR(inkAt(0, 3).y, 100 + onBaseline - metrics.descent, 0.1) << height;
    }
}

}  // namespace
}  // namespace quiravent::test
