#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "graphics/images/Decoders.h"
#include "graphics/images/PixelConversion.h"

namespace quiravent::desktop {

namespace {

struct DeleteDemuxer {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
using Demuxer = std::unique_ptr<WebPDemuxer, DeleteDemuxer>;

struct Frame : WebPIterator {
    Frame() : WebPIterator{} {}
    ~Frame() { WebPDemuxReleaseIterator(this); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
};

Failure webpFailure(VP8StatusCode status) {
    if (status == VP8_STATUS_NOT_ENOUGH_DATA) return {"truncated WebP data"};
    if (status == VP8_STATUS_OUT_OF_MEMORY) return {"no memory to decode the picture"};
    return {"broken WebP data"};
}

/// Where in a surface a bitstream of a given size is decoded to.
struct Area {
    uint32_t x = 0;
    uint32_t y = 0;
    uint32_t width = 0;
    uint32_t height = 0;
};

/// Decodes to pixels in the order of a surface, not premultiplied: the decoder's own
/// premultiplication doesn't round.
VP8StatusCode decodeInto(Surface& surface, const Area& area, const uint8_t* data, size_t size) {
    WebPDecoderConfig config;
    WebPInitDecoderConfig(&config);
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    WebPRGBABuffer& target = config.output.u.RGBA;
    target.rgba = reinterpret_cast<uint8_t*>(surface.row(area.y) + area.x);
    target.stride = static_cast<int>(surface.stride() * sizeof(uint32_t));
    target.size =
        surface.stride() * sizeof(uint32_t) * (area.height - 1) + area.width * sizeof(uint32_t);
    return WebPDecode(data, size, &config);
}

void premultiplyAll(Surface& surface) {
    bool opaque = true;
    for (uint32_t y = 0; y < surface.height(); ++y)
        opaque = premultiply(surface.row(y), surface.width()) && opaque;
    surface.setOpaque(opaque);
}

DecodedImage decodeStill(const EncodedImage& image, const WebPBitstreamFeatures& features,
                         SurfacePool& pool) {
    const Area whole{0, 0, static_cast<uint32_t>(features.width),
                     static_cast<uint32_t>(features.height)};
    DecodedImage surface = surfaceFor(whole.width, whole.height, pool);
    if (!surface) return surface;
    const VP8StatusCode status = decodeInto(**surface, whole, image.data, image.size);
    if (status != VP8_STATUS_OK) return webpFailure(status);
    if (features.has_alpha != 0)
        premultiplyAll(**surface);
    else
        (*surface)->setOpaque(true);
    return surface;
}

void clear(Surface& surface) {
    for (uint32_t y = 0; y < surface.height(); ++y) std::fill_n(surface.row(y), surface.width(), 0);
}

/// A frame may cover a part of the picture only; the rest is transparent.
DecodedImage decodeFirstFrame(const EncodedImage& image, SurfacePool& pool) {
    const WebPData data{image.data, image.size};
    const Demuxer demuxer(WebPDemux(&data));
    Frame frame;
    if (!demuxer || WebPDemuxGetFrame(demuxer.get(), 1, &frame) == 0 || frame.complete == 0)
        return Failure{"broken or truncated WebP animation"};
    DecodedImage surface = surfaceFor(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH),
                                      WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT), pool);
    if (!surface) return surface;
    clear(**surface);
    // The demuxer has checked that the frame lies within the picture.
    const Area area{static_cast<uint32_t>(frame.x_offset), static_cast<uint32_t>(frame.y_offset),
                    static_cast<uint32_t>(frame.width), static_cast<uint32_t>(frame.height)};
    const VP8StatusCode status =
        decodeInto(**surface, area, frame.fragment.bytes, frame.fragment.size);
    if (status != VP8_STATUS_OK) return webpFailure(status);
    premultiplyAll(**surface);
    return surface;
}

}  // namespace

bool isWebp(const EncodedImage& image) {
    constexpr size_t kHeaderSize = 12;
    if (image.size < kHeaderSize) return false;
    const std::string_view header(reinterpret_cast<const char*>(image.data), kHeaderSize);
    return header.substr(0, 4) == "RIFF" && header.substr(8, 4) == "WEBP";
}

DecodedImage decodeWebp(const EncodedImage& image, SurfacePool& pool) {
    WebPBitstreamFeatures features;
    const VP8StatusCode status = WebPGetFeatures(image.data, image.size, &features);
    if (status != VP8_STATUS_OK) return webpFailure(status);
    if (features.has_animation != 0) return decodeFirstFrame(image, pool);
    return decodeStill(image, features, pool);
}

}  // namespace quiravent::desktop
