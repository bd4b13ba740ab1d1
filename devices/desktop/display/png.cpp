#include "display/png.h"

#include <spng.h>

#include <cstdlib>
#include <memory>
#include <new>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kBytesPerPixel = 3;

/// Fast rather than small: a picture may be written for every frame.
constexpr int kCompressionLevel = 3;

struct FreeContext {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
struct FreeBuffer {
    void operator()(void* buffer) const { std::free(buffer); }
};

void check(int code) {
    if (code == SPNG_OK) return;
    if (code == SPNG_EMEM) throw std::bad_alloc();
    throw DeviceError(e_pl_status_io_error, joined("PNG encoder: ", spng_strerror(code)));
}

void setUp(spng_ctx* context, const Surface& picture) {
    spng_ihdr header{};
    header.width = picture.width();
    header.height = picture.height();
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    check(spng_set_ihdr(context, &header));
    check(spng_set_option(context, SPNG_ENCODE_TO_BUFFER, 1));
    check(spng_set_option(context, SPNG_IMG_COMPRESSION_LEVEL, kCompressionLevel));
}

void toRgb(const uint32_t* pixels, std::vector<uint8_t>& row) {
    for (size_t at = 0; at < row.size(); at += kBytesPerPixel) {
        const uint32_t pixel = *pixels++;
        row[at] = static_cast<uint8_t>(pixel >> 16);
        row[at + 1] = static_cast<uint8_t>(pixel >> 8);
        row[at + 2] = static_cast<uint8_t>(pixel);
    }
}

void encodeRows(spng_ctx* context, const Surface& picture) {
    check(spng_encode_image(context, nullptr, 0, SPNG_FMT_PNG,
                            SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE));
    std::vector<uint8_t> row(picture.width() * kBytesPerPixel);
    for (uint32_t y = 0; y < picture.height(); ++y) {
        toRgb(picture.row(y), row);
        const int code = spng_encode_row(context, row.data(), row.size());
        if (code != SPNG_EOI) check(code);
    }
}

}  // namespace

std::vector<uint8_t> encodePng(const Surface& picture) {
    const std::unique_ptr<spng_ctx, FreeContext> context(spng_ctx_new(SPNG_CTX_ENCODER));
    if (!context) throw std::bad_alloc();
    setUp(context.get(), picture);
    encodeRows(context.get(), picture);
    size_t size = 0;
    int code = SPNG_OK;
    const std::unique_ptr<void, FreeBuffer> file(spng_get_png_buffer(context.get(), &size, &code));
    check(code);
    const auto* const bytes = static_cast<const uint8_t*>(file.get());
    return {bytes, bytes + size};
}

}  // namespace quiravent::desktop
