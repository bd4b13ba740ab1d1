#include <gtest/gtest.h>

#include <algorithm>

#include "images/Encoders.h"

namespace quiravent::test {
namespace {

TEST(JpegDecoderTest, DecodesEverySubsamplingAndMode) {
    for (const TJSAMP subsampling : {TJSAMP_444, TJSAMP_422, TJSAMP_420, TJSAMP_440, TJSAMP_411})
        for (const int flags : {0, TJFLAG_PROGRESSIVE}) {
            const auto surface = decoded(encodeJpeg(gradient, subsampling, flags));
            ASSERT_TRUE(surface);
            EXPECT_TRUE(surface->isOpaque());
            EXPECT_EQ(surface->width(), kWidth);
            EXPECT_EQ(surface->height(), kHeight);
            EXPECT_LE(distance(*surface, gradient), subsampling == TJSAMP_444 ? 5 : 14)
                << "subsampling " << subsampling << ", flags " << flags;
        }
}

TEST(JpegDecoderTest, DecodesGrey) {
    const Picture grey = [](uint32_t x, uint32_t y) {
        const int level = static_cast<int>(x * 3 + y * 5);
        return Colour{level, level, level};
    };
    const auto surface = decoded(encodeJpeg(grey, TJSAMP_GRAY));
    ASSERT_TRUE(surface);
    EXPECT_LE(distance(*surface, grey), 3);
}

/// A picture of one colour, given as stored inks.
Bytes inks(uint8_t cyan, uint8_t magenta, uint8_t yellow, uint8_t black) {
    Bytes pixels;
    for (uint32_t i = 0; i < kWidth * kHeight; ++i)
        pixels.insert(pixels.end(), {cyan, magenta, yellow, black});
    return encodeJpeg(pixels, TJPF_CMYK, TJSAMP_444);
}

Bytes::iterator adobeSegment(Bytes& jpeg) {
    const uint8_t kStart[] = {0xFF, 0xEE, 0, 14, 'A', 'd', 'o', 'b', 'e'};
    return std::search(jpeg.begin(), jpeg.end(), std::begin(kStart), std::end(kStart));
}

void expectColour(const Bytes& jpeg, Colour colour) {
    const auto surface = decoded(jpeg);
    ASSERT_TRUE(surface);
    EXPECT_TRUE(surface->isOpaque());
    EXPECT_LE(distance(*surface, [colour](uint32_t, uint32_t) { return colour; }), 3);
}

TEST(JpegDecoderTest, DecodesInks) {
    // Adobe's programs store 255 - ink, so that the light that is left is C * K / 255.
    expectColour(inks(200, 100, 50, 255), {200, 100, 50});
    expectColour(inks(200, 100, 50, 128), {100, 50, 25});

    // The encoder has turned C, M, Y into Y = 55 and neutral Cb and Cr (128). Told by the segment
    // that there was no such transform, a decoder reads these as inks ...
    Bytes untransformed = inks(200, 200, 200, 100);
    const auto segment = adobeSegment(untransformed);
    ASSERT_NE(segment, untransformed.end());
    *(segment + 15) = 0;
    expectColour(untransformed, {55 * 100 / 255, 128 * 100 / 255, 128 * 100 / 255});

    // ... and without the segment as inks that aren't inverted.
    Bytes plain = inks(200, 200, 200, 100);
    plain.erase(adobeSegment(plain), adobeSegment(plain) + 16);
    expectColour(plain, {200 * 155 / 255, 127 * 155 / 255, 127 * 155 / 255});
}

}  // namespace
}  // namespace quiravent::test
