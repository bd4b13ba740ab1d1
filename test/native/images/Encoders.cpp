#include "Encoders.h"

#include <gtest/gtest.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <cstdlib>
#include <memory>

#include "graphics/TestPixels.h"

namespace quiravent::test {

namespace {

struct FreePng {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};

Bytes taken(uint8_t* data, size_t size, void (*release)(void*)) {
    Bytes bytes(data, data + size);
    release(data);
    return bytes;
}

/// What a surface holds for that colour.
uint32_t pixelOf(Colour colour) {
    const auto premultiplied = [&colour](int channel) {
        return static_cast<uint32_t>((2 * channel * colour.alpha + 255) / 510);
    };
    return static_cast<uint32_t>(colour.alpha) << 24 | premultiplied(colour.red) << 16 |
           premultiplied(colour.green) << 8 | premultiplied(colour.blue);
}

}  // namespace

Colour gradient(uint32_t x, uint32_t y) {
    return {static_cast<int>(x * 6 + 10), static_cast<int>(y * 10 + 5),
            static_cast<int>(240 - x * 3 - y * 4)};
}

Colour fadingGradient(uint32_t x, uint32_t y) {
    Colour colour = gradient(x, y);
    colour.alpha = static_cast<int>((x + y * kWidth) * 255 / (kWidth * kHeight - 1));
    return colour;
}

Bytes rgbaOf(const Picture& picture) {
    Bytes bytes;
    for (uint32_t y = 0; y < kHeight; ++y)
        for (uint32_t x = 0; x < kWidth; ++x) {
            const Colour colour = picture(x, y);
            for (const int channel : {colour.red, colour.green, colour.blue, colour.alpha})
                bytes.push_back(static_cast<uint8_t>(channel));
        }
    return bytes;
}

Bytes encodePng(PngShape shape, const Bytes& samples, spng_plte* palette, spng_trns* transparency) {
    const std::unique_ptr<spng_ctx, FreePng> context(spng_ctx_new(SPNG_CTX_ENCODER));
    spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_option(context.get(), SPNG_FILTER_CHOICE, shape.filter);
    spng_ihdr header{kWidth, kHeight, shape.depth, shape.colourType, 0, 0, 0};
    header.interlace_method = shape.interlaced ? SPNG_INTERLACE_ADAM7 : SPNG_INTERLACE_NONE;
    EXPECT_EQ(spng_set_ihdr(context.get(), &header), 0);
    if (palette != nullptr) {
        EXPECT_EQ(spng_set_plte(context.get(), palette), 0);
    }
    if (transparency != nullptr) {
        EXPECT_EQ(spng_set_trns(context.get(), transparency), 0);
    }
    const int error = spng_encode_image(context.get(), samples.data(), samples.size(), SPNG_FMT_PNG,
                                        SPNG_ENCODE_FINALIZE);
    EXPECT_EQ(error, 0) << spng_strerror(error);
    size_t size = 0;
    int bufferError = 0;
    auto* data = static_cast<uint8_t*>(spng_get_png_buffer(context.get(), &size, &bufferError));
    EXPECT_EQ(bufferError, 0) << spng_strerror(bufferError);
    return taken(data, size, &std::free);
}

Bytes encodePng(const Picture& picture, bool interlaced) {
    return encodePng({SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 8, interlaced}, rgbaOf(picture));
}

Bytes encodeJpeg(const Bytes& pixels, TJPF format, TJSAMP subsampling, int flags) {
    constexpr int kQuality = 97;
    const std::unique_ptr<void, int (*)(tjhandle)> handle(tjInitCompress(), &tjDestroy);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    EXPECT_EQ(tjCompress2(handle.get(), pixels.data(), kWidth, 0, kHeight, format, &data, &size,
                          subsampling, kQuality, flags),
              0)
        << tjGetErrorStr2(handle.get());
    return taken(data, size, [](void* memory) { tjFree(static_cast<unsigned char*>(memory)); });
}

Bytes encodeJpeg(const Picture& picture, TJSAMP subsampling, int flags) {
    return encodeJpeg(rgbaOf(picture), TJPF_RGBX, subsampling, flags);
}

Bytes encodeWebp(const Picture& picture, float quality) {
    constexpr int kStride = kWidth * 4;
    const Bytes pixels = rgbaOf(picture);
    uint8_t* data = nullptr;
    const size_t size =
        quality < 0 ? WebPEncodeLosslessRGBA(pixels.data(), kWidth, kHeight, kStride, &data)
                    : WebPEncodeRGBA(pixels.data(), kWidth, kHeight, kStride, quality, &data);
    EXPECT_NE(size, 0U);
    return taken(data, size, &WebPFree);
}

Bytes encodeWebpAnimation(const Picture& picture, int x, int y, int canvasWidth, int canvasHeight) {
    const std::unique_ptr<WebPMux, void (*)(WebPMux*)> mux(WebPMuxNew(), &WebPMuxDelete);
    const Bytes first = encodeWebp(picture);
    const Bytes second = encodeWebp([](uint32_t, uint32_t) { return Colour{9, 9, 9}; });
    for (const Bytes* still : {&first, &second}) {
        WebPMuxFrameInfo frame{};
        frame.bitstream = {still->data(), still->size()};
        frame.x_offset = x;
        frame.y_offset = y;
        frame.duration = 100;
        frame.id = WEBP_CHUNK_ANMF;
        EXPECT_EQ(WebPMuxPushFrame(mux.get(), &frame, 1), WEBP_MUX_OK);
    }
    const WebPMuxAnimParams endless{0, 0};
    EXPECT_EQ(WebPMuxSetAnimationParams(mux.get(), &endless), WEBP_MUX_OK);
    EXPECT_EQ(WebPMuxSetCanvasSize(mux.get(), canvasWidth, canvasHeight), WEBP_MUX_OK);
    WebPData data{};
    EXPECT_EQ(WebPMuxAssemble(mux.get(), &data), WEBP_MUX_OK);
    Bytes bytes(data.bytes, data.bytes + data.size);
    WebPDataClear(&data);
    return bytes;
}

std::vector<Sample> samples() {
    return {
        {"PNG", encodePng(fadingGradient)},
        {"interlaced PNG", encodePng(fadingGradient, true)},
        {"JPEG", encodeJpeg(gradient, TJSAMP_420)},
        {"progressive JPEG", encodeJpeg(gradient, TJSAMP_444, TJFLAG_PROGRESSIVE)},
        {"CMYK JPEG", encodeJpeg(rgbaOf(gradient), TJPF_CMYK, TJSAMP_444)},
        {"lossless WebP", encodeWebp(fadingGradient)},
        {"lossy WebP", encodeWebp(fadingGradient, 80)},
        {"animated WebP", encodeWebpAnimation(fadingGradient, 2, 2, 60, 50)},
    };
}

std::shared_ptr<desktop::Surface> decoded(const Bytes& bytes) {
    desktop::SurfacePool pool(size_t{1} << 24);
    auto image = desktop::decodeImage(bytes.data(), bytes.size(), pool);
    if (image) return *image;
    ADD_FAILURE() << image.reason();
    return nullptr;
}

int distance(const desktop::Surface& surface, const Picture& picture) {
    std::vector<uint32_t> expected;
    for (uint32_t y = 0; y < surface.height(); ++y)
        for (uint32_t x = 0; x < surface.width(); ++x) expected.push_back(pixelOf(picture(x, y)));
    return desktop::test::distance(desktop::test::pixelsOf(surface), expected);
}

}  // namespace quiravent::test
