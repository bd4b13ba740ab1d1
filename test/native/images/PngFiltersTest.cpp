#include "graphics/images/PngFilters.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

namespace quiravent::desktop::test {
namespace {

constexpr size_t kWidth = 301;

/// The predictors as the standard writes them (section 9).
int predicted(uint8_t filter, int left, int above, int corner) {
    if (filter == 0) return 0;
    if (filter == 1) return left;
    if (filter == 2) return above;
    if (filter == 3) return (left + above) / 2;
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return left;
    return toAbove <= toCorner ? above : corner;
}

class PngFilters : public testing::TestWithParam<int> {};

TEST_P(PngFilters, AreUndoneAsTheStandardSays) {
    const auto filter = static_cast<uint8_t>(GetParam());
    std::mt19937 random(1);
    for (const size_t bytesPerPixel : {3, 4}) {
        const size_t size = kWidth * bytesPerPixel;
        std::vector<uint8_t> row(size + 1);
        std::vector<uint8_t> above(size + 1);
        for (uint8_t& byte : row) byte = static_cast<uint8_t>(random());
        for (uint8_t& byte : above) byte = static_cast<uint8_t>(random() % 3 == 0 ? 255 : random());
        std::vector<uint8_t> wanted = row;
        for (size_t i = 0; i < size; ++i) {
            const bool isFirst = i < bytesPerPixel;
            const int left = isFirst ? 0 : wanted[i - bytesPerPixel];
            const int corner = isFirst ? 0 : above[i - bytesPerPixel];
            wanted[i] = static_cast<uint8_t>(row[i] + predicted(filter, left, above[i], corner));
        }
        EXPECT_TRUE(unfilterPngRow(filter, row.data(), above.data(), kWidth, bytesPerPixel));
        EXPECT_EQ(row, wanted) << bytesPerPixel << " bytes per pixel";
        EXPECT_FALSE(unfilterPngRow(5, row.data(), above.data(), kWidth, bytesPerPixel));
        EXPECT_EQ(row, wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(Images, PngFilters, testing::Range(0, 5));

}  // namespace
}  // namespace quiravent::desktop::test
