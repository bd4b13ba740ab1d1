#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "graphics/Surface.h"
#include "support/Result.h"

namespace quiravent::desktop {

using DecodedImage = Result<std::shared_ptr<Surface>>;

/// The bytes of a picture, owned by the caller.
struct EncodedImage {
    const uint8_t* data;
    size_t size;
};

// Each decodes one format, told by its first bytes, as decodeImage() promises.

bool isPng(const EncodedImage& image);
DecodedImage decodePng(const EncodedImage& image, SurfacePool& pool);

bool isJpeg(const EncodedImage& image);
DecodedImage decodeJpeg(const EncodedImage& image, SurfacePool& pool);

bool isWebp(const EncodedImage& image);
DecodedImage decodeWebp(const EncodedImage& image, SurfacePool& pool);

/// A surface for a picture of that size, not yet filled, or why there can't be one.
DecodedImage surfaceFor(uint32_t width, uint32_t height, SurfacePool& pool);

}  // namespace quiravent::desktop
