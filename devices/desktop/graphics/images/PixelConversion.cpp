#include "PixelConversion.h"

#include <algorithm>

namespace quiravent::desktop {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "the decoders write the bytes B, G, R, A as the pixels of a surface");

namespace {

/// x * y / 255, rounded to nearest.
uint32_t scaled(uint32_t x, uint32_t y) { return ((x * y + 128) * 257) >> 16; }

uint32_t swappedRedBlue(uint32_t pixel) {
    return (pixel & 0xFF00FF00) | ((pixel & 0xFF) << 16) | ((pixel >> 16) & 0xFF);
}

uint32_t pixelOf(uint32_t alpha, uint32_t red, uint32_t green, uint32_t blue) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

uint32_t premultiplied(uint32_t pixel) {
    const uint32_t alpha = pixel >> 24;
    return pixelOf(alpha, scaled((pixel >> 16) & 0xFF, alpha), scaled((pixel >> 8) & 0xFF, alpha),
                   scaled(pixel & 0xFF, alpha));
}

bool isOpaque(const uint32_t* row, uint32_t width) {
    uint32_t all = 0xFFFFFFFF;
    for (uint32_t x = 0; x < width; ++x) all &= row[x];
    return all >> 24 == 255;
}

}  // namespace

void fromOpaqueRgba(uint32_t* row, uint32_t width) {
    std::transform(row, row + width, row, swappedRedBlue);
}

void fromRgb(const uint8_t* bytes, uint32_t* row, uint32_t width) {
    for (uint32_t x = 0; x < width; ++x, bytes += 3) {
        row[x] = pixelOf(255, bytes[0], bytes[1], bytes[2]);
    }
}

bool fromRgba(uint32_t* row, uint32_t width) {
    fromOpaqueRgba(row, width);
    return premultiply(row, width);
}

bool premultiply(uint32_t* row, uint32_t width) {
    if (isOpaque(row, width)) return true;
    std::transform(row, row + width, row, premultiplied);
    return false;
}

void fromCmyk(uint32_t* row, uint32_t width, bool inverted) {
    const uint32_t flip = inverted ? 0 : 0xFFFFFFFF;
    for (uint32_t* pixel = row; pixel != row + width; ++pixel) {
        const uint32_t light = *pixel ^ flip;
        const uint32_t black = light >> 24;
        *pixel = pixelOf(255, scaled(light & 0xFF, black), scaled((light >> 8) & 0xFF, black),
                         scaled((light >> 16) & 0xFF, black));
    }
}

}  // namespace quiravent::desktop
