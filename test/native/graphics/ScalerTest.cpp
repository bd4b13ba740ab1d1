#include "graphics/Scaler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "TestPixels.h"

namespace quiravent::desktop::test {
namespace {

/// Of all cases, so that what is kept of one must not be taken for another's.
ScaleFilters& filters() {
    static ScaleFilters kept;
    return kept;
}

std::vector<uint32_t> scale(const Surface& source, const Box& part, int64_t width, int64_t height) {
    const Box destination = boxAt(0, 0, width, height);
    Scaler scaler(viewOf(source), {part, destination}, destination, filters());
    EXPECT_EQ(scaler.visible(), destination);
    std::vector<uint32_t> out;
    std::vector<uint32_t> row(static_cast<size_t>(width));
    for (int64_t y = 0; y < height; ++y) {
        scaler.scaleRow(y, row.data());
        out.insert(out.end(), row.begin(), row.end());
    }
    return out;
}

double triangle(double x) { return std::max(0.0, 1 - std::abs(x)); }

/// One channel of one pixel by the double sum over the triangle, edges continued outwards.
double reference(const Surface& source, const Box& part, int64_t width, int64_t height, int64_t x,
                 int64_t y, int index) {
    const double stepX = static_cast<double>(part.width()) / static_cast<double>(width);
    const double stepY = static_cast<double>(part.height()) / static_cast<double>(height);
    const double wideX = std::max(1.0, stepX);
    const double wideY = std::max(1.0, stepY);
    const double centerX = (static_cast<double>(x) + 0.5) * stepX - 0.5;
    const double centerY = (static_cast<double>(y) + 0.5) * stepY - 0.5;
    const auto lastRow = static_cast<int64_t>(centerY + wideY + 1);
    const auto lastColumn = static_cast<int64_t>(centerX + wideX + 1);
    double sum = 0;
    double total = 0;
    for (auto v = static_cast<int64_t>(centerY - wideY - 1); v <= lastRow; ++v) {
        const double down = triangle((static_cast<double>(v) - centerY) / wideY);
        const int64_t row = part.top + std::clamp<int64_t>(v, 0, part.height() - 1);
        for (auto u = static_cast<int64_t>(centerX - wideX - 1); u <= lastColumn; ++u) {
            const double weight = down * triangle((static_cast<double>(u) - centerX) / wideX);
            const int64_t column = part.left + std::clamp<int64_t>(u, 0, part.width() - 1);
            sum += weight * channel(source.row(static_cast<uint32_t>(row))[column], index);
            total += weight;
        }
    }
    return sum / total;
}

TEST(Scaler, StaysNearTheIdealFilterAndWithinAlphaAndThePart) {
    const struct {
        const char* name;
        Box part;
        int64_t width;
        int64_t height;
        double tolerance;  ///< in levels, on noise, the hardest of all pictures
    } cases[] = {
        {"slightly smaller", {10, 10, 150, 110}, 126, 90, 3},
        {"third", {0, 0, 160, 120}, 53, 40, 3},
        {"sixteenth", {0, 0, 160, 112}, 10, 7, 1.1},
        {"one pixel", {3, 5, 131, 117}, 1, 1, 1.1},
        {"larger", {20, 30, 100, 90}, 107, 71, 3},
        {"much larger", {20, 30, 26, 34}, 97, 83, 1.1},
        {"wider and lower", {1, 2, 41, 119}, 133, 20, 3},
        {"one row to many", {5, 7, 37, 8}, 32, 50, 1.1},
        {"width only", {5, 7, 65, 107}, 30, 100, 3},
    };
    const auto source = randomSurface(160, 120);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::vector<uint32_t> out = scale(*source, c.part, c.width, c.height);
        double worst = 0;
        for (size_t i = 0; i < out.size(); ++i) {
            ASSERT_TRUE(isPremultiplied(out[i])) << i;
            const int64_t x = static_cast<int64_t>(i) % c.width;
            const int64_t y = static_cast<int64_t>(i) / c.width;
            for (int k = 0; k < 4; ++k) {
                const double ideal = reference(*source, c.part, c.width, c.height, x, y, k);
                worst = std::max(worst, std::abs(channel(out[i], k) - ideal));
            }
        }
        EXPECT_LE(worst, c.tolerance);

        // Whatever lies beside, one colour stays what it is.
        const auto framed = newSurface(160, 120, 0x00FFFFFF);
        for (int64_t y = c.part.top; y < c.part.bottom; ++y) {
            uint32_t* row = framed->row(static_cast<uint32_t>(y));
            std::fill(row + c.part.left, row + c.part.right, 0xFF336699);
        }
        const auto plain = scale(*framed, c.part, c.width, c.height);
        EXPECT_EQ(std::count(plain.begin(), plain.end(), 0xFF336699), c.width * c.height);
    }
}

TEST(Scaler, HalvesByTheRoundedMeanOfFour) {
    const auto source = randomSurface(66, 34);
    const Box part{2, 1, 64, 33};
    const std::vector<uint32_t> out = scale(*source, part, 31, 16);
    for (uint32_t y = 0; y < 16; ++y) {
        const uint32_t* upper = source->row(1 + 2 * y) + 2;
        const uint32_t* lower = source->row(2 + 2 * y) + 2;
        for (size_t x = 0; x < 31; ++x) {
            for (int k = 0; k < 4; ++k) {
                const int sum = channel(upper[2 * x], k) + channel(upper[2 * x + 1], k) +
                                channel(lower[2 * x], k) + channel(lower[2 * x + 1], k);
                ASSERT_EQ(channel(out[size_t{y} * 31 + x], k), (sum + 2) / 4);
            }
        }
    }
}

TEST(Scaler, ComputesTheSameForAPieceAsForTheWhole) {
    const auto source = randomSurface(160, 120);
    for (const int64_t width : {50, 80, 300}) {
        const int64_t height = width * 3 / 4;
        const std::vector<uint32_t> whole = scale(*source, {0, 0, 160, 120}, width, height);
        const Box place = boxAt(-7, -9, width, height);
        Scaler scaler(viewOf(*source), {{0, 0, 160, 120}, place}, {3, 5, 23, 25}, filters());
        ASSERT_EQ(scaler.visible(), (Box{3, 5, 23, 25}));
        std::vector<uint32_t> row(20);
        for (int64_t y = 5; y < 25; ++y) {
            scaler.scaleRow(y, row.data());
            const auto from = whole.begin() + (y + 9) * width + 10;
            ASSERT_TRUE(std::equal(row.begin(), row.end(), from)) << width << " row " << y;
        }
    }
}

TEST(Scaler, DrawsOnlyWhatExistsOfThePart) {
    const auto source = newSurface(40, 40, 0xFF0000FF);
    struct {
        Box part;
        Box destination;
        Box visible;
    } const cases[] = {
        {{-10, -10, 10, 10}, {0, 0, 40, 40}, {20, 20, 40, 40}},
        {{30, 35, 50, 45}, {100, 100, 110, 105}, {100, 100, 105, 102}},
        {{-40, 0, 80, 40}, {0, 0, 30, 10}, {10, 0, 20, 10}},
        {{0, 0, 4294967295, 4294967295}, {0, 0, 4294967295, 4294967295}, {0, 0, 40, 40}},
    };
    for (const auto& c : cases) {
        const Scaler scaler(viewOf(*source), {c.part, c.destination}, {0, 0, 1000, 1000},
                            filters());
        EXPECT_EQ(scaler.visible(), c.visible) << &c - cases;
    }
}

}  // namespace
}  // namespace quiravent::desktop::test
