#include "ImageLoader.h"

#include <array>

#include "graphics/images/Decoders.h"
#include "resources/Location.h"

namespace quiravent::desktop {

namespace {

struct Format {
    bool (*recognises)(const EncodedImage&);
    DecodedImage (*decode)(const EncodedImage&, SurfacePool&);
};

constexpr std::array<Format, 3> kFormats{
    {{isPng, decodePng}, {isJpeg, decodeJpeg}, {isWebp, decodeWebp}}};

std::string sizeText(uint32_t width, uint32_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

}  // namespace

DecodedImage surfaceFor(uint32_t width, uint32_t height, SurfacePool& pool) {
    constexpr uint32_t kMaxSide = SurfacePool::kMaxSide;
    if (width == 0 || height == 0) return Failure{"the picture has no pixels"};
    if (width > kMaxSide || height > kMaxSide)
        return Failure{"its " + sizeText(width, height) + " exceed the " +
                       sizeText(kMaxSide, kMaxSide) + " that a picture may have"};
    auto surface = pool.create(width, height, SurfacePool::Fill::uninitialised);
    if (!surface)
        return Failure{"the graphics memory that is left can't hold its " +
                       sizeText(width, height)};
    return surface;
}

DecodedImage decodeImage(const uint8_t* data, size_t size, SurfacePool& pool) {
    const EncodedImage image{data, size};
    for (const Format& format : kFormats)
        if (format.recognises(image)) return format.decode(image, pool);
    return Failure{"it is none of a PNG, JPEG and WebP picture"};
}

DecodedImage loadImage(const std::string& location, SurfacePool& pool,
                       const ResourceLimits& limits) {
    const Result<Bytes> bytes = readResource(location, limits);
    if (!bytes) return Failure{bytes.reason()};
    DecodedImage image = decodeImage(bytes->data(), bytes->size(), pool);
    if (!image) return Failure{"cannot load image " + inQuotes(location) + ": " + image.reason()};
    return image;
}

}  // namespace quiravent::desktop
