#pragma once

#include <spng.h>
#include <turbojpeg.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "graphics/Surface.h"
#include "graphics/images/ImageLoader.h"

namespace quiravent::test {

using Bytes = std::vector<uint8_t>;

/// A colour that isn't premultiplied.
struct Colour {
    int red;
    int green;
    int blue;
    int alpha = 255;
};
using Picture = std::function<Colour(uint32_t x, uint32_t y)>;

constexpr uint32_t kWidth = 37;
constexpr uint32_t kHeight = 23;

/// Smooth in every channel, so that lossy formats keep it within a few levels.
Colour gradient(uint32_t x, uint32_t y);
/// The same with an alpha that runs from 0 to 255.
Colour fadingGradient(uint32_t x, uint32_t y);

/// kWidth times kHeight pixels of four bytes each.
Bytes rgbaOf(const Picture& picture);

struct PngShape {
    uint8_t colourType = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
    uint8_t depth = 8;
    bool interlaced = false;
    spng_filter_choice filter = SPNG_FILTER_CHOICE_ALL;
};

/// `samples` are packed rows as PNG stores them, those of 16 bits in native order. The palette and
/// the transparency may be null.
Bytes encodePng(PngShape shape, const Bytes& samples, spng_plte* palette = nullptr,
                spng_trns* transparency = nullptr);
Bytes encodePng(const Picture& picture, bool interlaced = false);

/// From pixels of four bytes in the order of `format`.
Bytes encodeJpeg(const Bytes& pixels, TJPF format, TJSAMP subsampling, int flags = 0);
Bytes encodeJpeg(const Picture& picture, TJSAMP subsampling = TJSAMP_444, int flags = 0);

/// Lossless unless a quality up to 100 is given.
Bytes encodeWebp(const Picture& picture, float quality = -1);

/// Two frames, one pixel apart in colour; the first lies at (x, y), both even, on a canvas of that
/// size.
Bytes encodeWebpAnimation(const Picture& picture, int x, int y, int canvasWidth, int canvasHeight);

struct Sample {
    std::string name;
    Bytes bytes;
};

/// A picture in every way in which one may come, small.
std::vector<Sample> samples();

/// The decoded picture; a failure of the test and null when there is none.
std::shared_ptr<desktop::Surface> decoded(const Bytes& bytes);

/// Largest difference of any channel of any pixel from the picture.
int distance(const desktop::Surface& surface, const Picture& picture);

}  // namespace quiravent::test
