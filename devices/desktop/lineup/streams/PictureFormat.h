#pragma once

#include <cstdint>

#include "graphics/Surface.h"
#include "media/Av.h"

namespace quiravent::desktop::lineup {

/// An empty picture of Pictures' format.
AvFrame makePicture(uint32_t width, uint32_t height);

/// The surface as a picture of Pictures' format.
AvFrame toPicture(const Surface& surface);

/// Another picture with the same content.
AvFrame copyOf(const AVFrame& picture);

/// A colour of such a picture.
struct YuvColour {
    uint8_t y;
    uint8_t u;
    uint8_t v;
};
constexpr YuvColour kYuvBlack{16, 128, 128};
constexpr YuvColour kYuvWhite{235, 128, 128};

/// Fills a rectangle, whose places and sides are made even and held to the picture.
void fillRect(AVFrame& picture, int left, int top, int width, int height, const YuvColour& colour);

}  // namespace quiravent::desktop::lineup
