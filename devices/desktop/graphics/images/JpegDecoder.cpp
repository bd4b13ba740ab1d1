#include <turbojpeg.h>

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>

#include "graphics/images/Decoders.h"
#include "graphics/images/JpegMarkers.h"
#include "graphics/images/PixelConversion.h"

namespace quiravent::desktop {

namespace {

struct Destroy {
    void operator()(void* handle) const { tjDestroy(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<tjhandle>, Destroy>;

Failure jpegFailure(const Handle& handle) {
    std::string reason = tjGetErrorStr2(handle.get());
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    return {"broken or truncated JPEG data: " + reason};
}

void convertCmyk(Surface& surface, bool inverted) {
    for (uint32_t y = 0; y < surface.height(); ++y)
        fromCmyk(surface.row(y), surface.width(), inverted);
}

}  // namespace

bool isJpeg(const EncodedImage& image) {
    return image.size >= 3 && image.data[0] == 0xFF && image.data[1] == 0xD8 &&
           image.data[2] == 0xFF;
}

DecodedImage decodeJpeg(const EncodedImage& image, SurfacePool& pool) {
    const Handle handle(tjInitDecompress());
    if (!handle) return Failure{"no memory to decode the picture"};
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colourSpace = 0;
    if (tjDecompressHeader3(handle.get(), image.data, image.size, &width, &height, &subsampling,
                            &colourSpace) != 0)
        return jpegFailure(handle);
    DecodedImage surface =
        surfaceFor(static_cast<uint32_t>(width), static_cast<uint32_t>(height), pool);
    if (!surface) return surface;

    const bool hasInks = colourSpace == TJCS_CMYK || colourSpace == TJCS_YCCK;
    auto* pixels = reinterpret_cast<unsigned char*>((*surface)->row(0));
    const int pitch = static_cast<int>((*surface)->stride() * sizeof(uint32_t));
    // What is missing or broken would be filled up with grey, and reported only at the end. A
    // hostile file may hold thousands of progressive scans, each as costly as a whole picture.
    const int flags = TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS;
    if (tjDecompress2(handle.get(), image.data, image.size, pixels, width, pitch, height,
                      hasInks ? TJPF_CMYK : TJPF_BGRA, flags) != 0)
        return jpegFailure(handle);
    if (hasInks) convertCmyk(**surface, hasAdobeMarker(image));
    (*surface)->setOpaque(true);
    return surface;
}

}  // namespace quiravent::desktop
