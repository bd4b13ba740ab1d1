// Pictures in all the ways in which a format may hold them; PNG has a test of its own.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "images/Encoders.h"

namespace quiravent::test {
namespace {

struct Encoded {
    std::string name;
    Bytes bytes;
    Picture picture;
    int tolerance;  ///< in levels
    bool isOpaque = true;
    uint32_t width = kWidth;
    uint32_t height = kHeight;
};

std::vector<Encoded> jpegs() {
    const Picture grey = [](uint32_t x, uint32_t y) {
        const int level = static_cast<int>(x * 3 + y * 5);
        return Colour{level, level, level};
    };
    std::vector<Encoded> all{{"grey JPEG", encodeJpeg(grey, TJSAMP_GRAY), grey, 3}};
    for (const TJSAMP subsampling : {TJSAMP_444, TJSAMP_422, TJSAMP_420, TJSAMP_440, TJSAMP_411})
        for (const int flags : {0, TJFLAG_PROGRESSIVE})
            all.push_back({"JPEG of subsampling " + std::to_string(subsampling) + ", flags " +
                               std::to_string(flags),
                           encodeJpeg(gradient, subsampling, flags), gradient,
                           subsampling == TJSAMP_444 ? 5 : 14});
    return all;
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
    const auto found = std::search(jpeg.begin(), jpeg.end(), std::begin(kStart), std::end(kStart));
    EXPECT_LT(found + 16, jpeg.end());
    return found;
}

std::vector<Encoded> inkJpegs() {
    const auto flat = [](Colour colour) { return [colour](uint32_t, uint32_t) { return colour; }; };
    // The encoder has turned C, M, Y into Y = 55 and neutral Cb and Cr (128). Told by the segment
    // that there was no such transform, a decoder reads these as inks ...
    Bytes untransformed = inks(200, 200, 200, 100);
    *(adobeSegment(untransformed) + 15) = 0;
    // ... and without the segment as inks that aren't inverted.
    Bytes plain = inks(200, 200, 200, 100);
    plain.erase(adobeSegment(plain), adobeSegment(plain) + 16);
    const int neutral = 128 * 100 / 255;
    const int inverted = 127 * 155 / 255;
    return {
        // Adobe's programs store 255 - ink, so that the light that is left is C * K / 255.
        {"inks without black", inks(200, 100, 50, 255), flat({200, 100, 50}), 3},
        {"inks with black", inks(200, 100, 50, 128), flat({100, 50, 25}), 3},
        {"inks not transformed", untransformed, flat({55 * 100 / 255, neutral, neutral}), 3},
        {"inks not inverted", plain, flat({200 * 155 / 255, inverted, inverted}), 3},
    };
}

std::vector<Encoded> webps() {
    constexpr uint32_t kLeft = 4;
    constexpr uint32_t kTop = 2;
    const Picture onCanvas = [](uint32_t x, uint32_t y) {
        const bool inside = x >= kLeft && x < kLeft + kWidth && y >= kTop && y < kTop + kHeight;
        return inside ? fadingGradient(x - kLeft, y - kTop) : Colour{0, 0, 0, 0};
    };
    return {
        {"lossless WebP", encodeWebp(gradient), gradient, 0},
        {"lossless WebP with alpha", encodeWebp(fadingGradient), fadingGradient, 0, false},
        {"lossy WebP", encodeWebp(gradient, 95), gradient, 14},
        {"lossy WebP with alpha", encodeWebp(fadingGradient, 95), fadingGradient, 14, false},
        // The first frame at its place.
        {"animated WebP", encodeWebpAnimation(fadingGradient, kLeft, kTop, 50, 40), onCanvas, 0,
         false, 50, 40},
        {"WebP animated all over", encodeWebpAnimation(gradient, 0, 0, kWidth, kHeight), gradient,
         0},
    };
}

TEST(DecodersTest, GiveWhatWasEncoded) {
    // An alpha channel that is full is noted.
    std::vector<Encoded> all{{"PNG", encodePng(gradient), gradient, 0}};
    for (const auto& some : {jpegs(), inkJpegs(), webps()})
        all.insert(all.end(), some.begin(), some.end());
    for (const Encoded& each : all) {
        SCOPED_TRACE(each.name);
        const auto surface = decoded(each.bytes);
        ASSERT_TRUE(surface);
        EXPECT_EQ(surface->isOpaque(), each.isOpaque);
        EXPECT_EQ(surface->width(), each.width);
        EXPECT_EQ(surface->height(), each.height);
        EXPECT_LE(distance(*surface, each.picture), each.tolerance);
    }
}

}  // namespace
}  // namespace quiravent::test
