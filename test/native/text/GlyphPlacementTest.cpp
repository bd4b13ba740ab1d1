#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "text/TestFont.h"

namespace quiravent::test {
namespace {

/// The glyph of "|" is this rectangle, in font units.
constexpr double kBarLeft = 260;
constexpr double kBarBottom = -483;
constexpr double kBarRight = 430;
constexpr double kBarTop = 1565;

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

TEST(GlyphPlacementTest, CoversWhatTheOutlinesCoverAtEveryQuarter) {
    // Outlines are scaled to 64ths of a pixel; an edge that is half of one off makes 2 levels, at
    // a corner twice that.
    constexpr double kTolerance = 5;
    constexpr int32_t kBaseline = 77;
    for (const uint32_t height : {9U, 24U, 61U}) {
        const auto font = testFont(height);
        const int size = static_cast<int>(height);
        for (int64_t x = -2 * kPixel; x <= 2 * kPixel; x += 5) {
            const auto run = font->layout("|||", {x, kBaseline});
            const auto barsAt = [&](int column, int row) {
                double sum = 0;
                for (int64_t bar = 0; bar < 3; ++bar) {
                    const auto pen = static_cast<double>(x + bar * font->advance("|"));
                    sum += barCoverage(height, std::floor(pen / 16 + 0.5) / 4, column, row);
                }
                return sum;
            };
            for (int row = -size; row <= size; ++row)
                for (int column = -4; column <= 2 * size; ++column)
                    ASSERT_NEAR(coverageAt(run, column, kBaseline + row), barsAt(column, row),
                                kTolerance)
                        << "height " << height << ", pen " << x << ", pixel " << column << ","
                        << row;
        }
    }
}

TEST(GlyphPlacementTest, AlignsTheBoxOfAdvanceAscentAndDescent) {
    for (const uint32_t height : {24U, 33U, 47U}) {
        const auto font = testFont(height);
        const int64_t advance = font->advance("Ogonek");
        const auto ascent = static_cast<int32_t>(font->metrics().ascent);
        const auto descent = static_cast<int32_t>(font->metrics().descent);
        const struct {
            desktop::TextAlignment alignment;
            int64_t x = 0;
            int32_t baseline = 0;
        } kCases[] = {
            {{0, 0}, 0, 0},        {{1, 0}, -advance / 2, 0},
            {{2, 0}, -advance, 0}, {{0, 1}, 0, ascent},
            {{0, 3}, 0, -descent}, {{0, 2}, 0, ascent - (ascent + descent) / 2},
            {{3, 4}, 0, 0},        {{0xFFFFFFFF, 0xFFFFFFFF}, 0, 0},
        };
        for (const auto& expected : kCases) {
            SCOPED_TRACE(&expected - kCases);
            const auto origin = font->originOf("Ogonek", 200, 100, expected.alignment);
            EXPECT_EQ(origin.x, 200 * kPixel + expected.x);
            EXPECT_EQ(origin.baseline, 100 + expected.baseline);
            EXPECT_EQ(described(font->layout("Ogonek", 200, 100, expected.alignment)),
                      described(font->layout("Ogonek", origin)));
        }
    }
}

}  // namespace
}  // namespace quiravent::test
