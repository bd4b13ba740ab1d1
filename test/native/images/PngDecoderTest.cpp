#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "common/PngFile.h"
#include "common/TemporaryFolder.h"
#include "graphics/images/PngFilters.h"
#include "images/Encoders.h"

namespace quiravent::test {
namespace {

/// Random samples in a picture of that shape. Of its transparency, where it has one, the colour of
/// the first pixel is the transparent one, and a palette's last entry is opaque.
Bytes randomPng(const PngShape& shape, bool hasTransparency) {
    constexpr uint32_t kChannels[] = {1, 0, 3, 1, 2, 0, 4};  // by colour type
    std::mt19937 random(shape.colourType * 100U + shape.depth);
    const auto byte = [&] { return static_cast<uint8_t>(random()); };
    Bytes samples((size_t{kWidth} * kChannels[shape.colourType] * shape.depth + 7) / 8 * kHeight);
    std::generate(samples.begin(), samples.end(), byte);
    spng_plte palette{};
    palette.n_entries = 1U << std::min<uint8_t>(shape.depth, 8);
    for (auto& entry : palette.entries) entry = {byte(), byte(), byte(), 255};

    const auto firstSample = [&](size_t channel) {
        if (shape.depth < 16) return static_cast<uint16_t>(samples[channel] >> (8 - shape.depth));
        uint16_t sample = 0;
        std::memcpy(&sample, samples.data() + 2 * channel, sizeof sample);
        return sample;
    };
    spng_trns transparency{};
    transparency.gray = transparency.red = firstSample(0);
    transparency.green = firstSample(1);
    transparency.blue = firstSample(2);
    transparency.n_type3_entries = palette.n_entries - 1;
    std::generate(std::begin(transparency.type3_alpha), std::end(transparency.type3_alpha), byte);
    return encodePng(shape, samples,
                     shape.colourType == SPNG_COLOR_TYPE_INDEXED ? &palette : nullptr,
                     hasTransparency ? &transparency : nullptr);
}

/// Compares with what the library gives that decodes whole files.
void expectDecoded(const PngShape& shape, bool hasTransparency) {
    SCOPED_TRACE(testing::Message() << "colour type " << int{shape.colourType} << ", depth "
                                    << int{shape.depth} << ", interlaced " << shape.interlaced
                                    << ", filter " << shape.filter << ", tRNS " << hasTransparency);
    const Bytes bytes = randomPng(shape, hasTransparency);
    const TemporaryFolder folder;
    const PngFile reference(folder.write("picture.png", bytes));
    const auto surface = decoded(bytes);
    ASSERT_TRUE(surface);
    ASSERT_EQ(surface->width(), kWidth);
    ASSERT_EQ(surface->height(), kHeight);
    EXPECT_EQ(distance(*surface,
                       [&](uint32_t x, uint32_t y) {
                           const uint32_t rgba = reference.rgba(x, y);
                           const auto channel = [&](int shift) { return int(rgba >> shift & 255); };
                           return Colour{channel(24), channel(16), channel(8), channel(0)};
                       }),
              0);
    const bool isIndexed = shape.colourType == SPNG_COLOR_TYPE_INDEXED;
    if (hasTransparency && !isIndexed) {
        EXPECT_EQ(surface->row(0)[0], 0U);
    }
    EXPECT_EQ(surface->isOpaque(), (shape.colourType & 4) == 0 && !hasTransparency);
}

TEST(PngDecoderTest, DecodesEveryColourTypeDepthAndFilter) {
    const struct {
        uint8_t colourType;
        std::vector<uint8_t> depths;
    } kTypes[] = {
        {SPNG_COLOR_TYPE_GRAYSCALE, {1, 2, 4, 8, 16}}, {SPNG_COLOR_TYPE_TRUECOLOR, {8, 16}},
        {SPNG_COLOR_TYPE_INDEXED, {1, 2, 4, 8}},       {SPNG_COLOR_TYPE_GRAYSCALE_ALPHA, {8, 16}},
        {SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, {8, 16}},
    };
    const spng_filter_choice kFilters[] = {SPNG_FILTER_CHOICE_NONE, SPNG_FILTER_CHOICE_SUB,
                                           SPNG_FILTER_CHOICE_UP, SPNG_FILTER_CHOICE_AVG,
                                           SPNG_FILTER_CHOICE_PAETH};
    for (const auto& type : kTypes)
        for (const uint8_t depth : type.depths)
            for (const bool interlaced : {false, true})
                for (const auto filter : kFilters) {
                    const PngShape shape{type.colourType, depth, interlaced, filter};
                    expectDecoded(shape, false);
                    const bool hasAlpha = (type.colourType & 4) != 0;
                    if (!hasAlpha) expectDecoded(shape, true);
                }
}

TEST(PngDecoderTest, RefusesAFilterThatThereIsNot) {
    uint8_t row[5]{1, 2, 3, 4};
    const uint8_t above[5]{};
    EXPECT_FALSE(desktop::unfilterPngRow(5, row, above, 1, 3));
    EXPECT_FALSE(desktop::unfilterPngRow(5, row, above, 1, 4));
}

}  // namespace
}  // namespace quiravent::test
