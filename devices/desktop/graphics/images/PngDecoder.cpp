#include <spng.h>

#include <algorithm>
#include <memory>
#include <string>

#include "graphics/images/Decoders.h"
#include "graphics/images/PixelConversion.h"
#include "graphics/images/PlainPng.h"

namespace quiravent::desktop {

namespace {

struct FreeContext {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};
using Context = std::unique_ptr<spng_ctx, FreeContext>;

/// Bounds what texts and profiles, which may be compressed, can take beside the pixels.
constexpr size_t kMaxChunkBytes = size_t{16} << 20;

Failure pngFailure(int error) {
    const bool cutOff = error == SPNG_EOF || error == SPNG_IO_EOF || error == SPNG_EIDAT_TOO_SHORT;
    if (cutOff) return {"truncated PNG data"};
    return {std::string("broken PNG data: ") + spng_strerror(error)};
}

class PngReader {
  public:
    PngReader(const EncodedImage& image, SurfacePool& pool)
        : m_context(spng_ctx_new(0)), m_image(image), m_pool(pool) {}

    DecodedImage read() {
        if (!m_context) return Failure{"no memory to decode the picture"};
        if (const int error = open()) return pngFailure(error);
        auto surface = surfaceFor(m_header.width, m_header.height, m_pool);
        if (!surface) return surface;
        if (const int error = decodeRows(**surface)) return pngFailure(error);
        return surface;
    }

  private:
    int open() {
        spng_ctx* context = m_context.get();
        spng_set_crc_action(context, SPNG_CRC_ERROR, SPNG_CRC_ERROR);
        spng_set_chunk_limits(context, kMaxChunkBytes, kMaxChunkBytes);
        if (const int error = spng_set_png_buffer(context, m_image.data, m_image.size))
            return error;
        return spng_get_ihdr(context, &m_header);
    }

    bool mayBeTransparent() {
        const auto type = m_header.color_type;
        spng_trns transparency{};
        return type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA || type == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA ||
               spng_get_trns(m_context.get(), &transparency) == SPNG_OK;
    }

    /// 0, or the decoder's error.
    int decodeRows(Surface& surface) {
        spng_ctx* context = m_context.get();
        const int flags = SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE;
        if (const int error = spng_decode_image(context, nullptr, 0, SPNG_FMT_RGBA8, flags))
            return error;
        m_mayBeTransparent = mayBeTransparent();
        const bool interlaced = m_header.interlace_method != SPNG_INTERLACE_NONE;
        if (const int error = interlaced ? decodePasses(surface) : decodeInOrder(surface))
            return error;
        surface.setOpaque(m_opaque);
        // What follows the pixels is read for its checksums and to see that the file is whole.
        return spng_decode_chunks(context);
    }

    int decodeInOrder(Surface& surface) {
        for (uint32_t y = 0; y < m_header.height; ++y) {
            const int error = decodeRow(surface.row(y));
            if (error != SPNG_OK && !(error == SPNG_EOI && y + 1 == m_header.height)) return error;
            convert(surface.row(y));
        }
        return SPNG_OK;
    }

    /// Each pass fills some pixels of some rows, so that no row is whole before the last pass.
    int decodePasses(Surface& surface) {
        int error = SPNG_OK;
        while (error == SPNG_OK) {
            spng_row_info place{};
            error = spng_get_row_info(m_context.get(), &place);
            if (error == SPNG_OK) error = decodeRow(surface.row(place.row_num));
        }
        if (error != SPNG_EOI) return error;
        for (uint32_t y = 0; y < m_header.height; ++y) convert(surface.row(y));
        return SPNG_OK;
    }

    int decodeRow(uint32_t* row) {
        return spng_decode_row(m_context.get(), row, m_header.width * sizeof(uint32_t));
    }

    void convert(uint32_t* row) {
        if (m_mayBeTransparent)
            m_opaque = fromRgba(row, m_header.width) && m_opaque;
        else
            fromOpaqueRgba(row, m_header.width);
    }

    Context m_context;
    const EncodedImage m_image;
    SurfacePool& m_pool;
    spng_ihdr m_header{};
    bool m_mayBeTransparent = false;
    bool m_opaque = true;
};

}  // namespace

bool isPng(const EncodedImage& image) {
    constexpr uint8_t kSignature[] = {0x89, 'P', 'N', 'G'};
    return image.size >= sizeof kSignature &&
           std::equal(std::begin(kSignature), std::end(kSignature), image.data);
}

DecodedImage decodePng(const EncodedImage& image, SurfacePool& pool) {
    if (auto plain = decodePlainPng(image, pool)) return plain;
    return PngReader(image, pool).read();
}

}  // namespace quiravent::desktop
