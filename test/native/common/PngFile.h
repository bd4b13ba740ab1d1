#pragma once

#include <spng.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// The pixels of a PNG file; throws where it can't be read.
class PngFile {
  public:
    explicit PngFile(const std::string& path) {
        const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                         std::fclose);
        const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context(spng_ctx_new(0),
                                                                     spng_ctx_free);
        size_t size = 0;
        if (!file || spng_set_png_file(context.get(), file.get()) != SPNG_OK ||
            spng_get_ihdr(context.get(), &m_header) != SPNG_OK ||
            spng_decoded_image_size(context.get(), SPNG_FMT_RGBA8, &size) != SPNG_OK) {
            throw std::runtime_error("no PNG file: " + path);
        }
        m_bytes.resize(size);
        if (spng_decode_image(context.get(), m_bytes.data(), size, SPNG_FMT_RGBA8,
                              SPNG_DECODE_TRNS) != SPNG_OK) {
            throw std::runtime_error("broken PNG file: " + path);
        }
    }

    uint32_t width() const { return m_header.width; }
    uint32_t height() const { return m_header.height; }

    /// 0xRRGGBBAA
    uint32_t rgba(size_t x, size_t y) const {
        const uint8_t* const pixel = &m_bytes.at((y * m_header.width + x) * 4);
        return uint32_t{pixel[0]} << 24 | uint32_t{pixel[1]} << 16 | uint32_t{pixel[2]} << 8 |
               uint32_t{pixel[3]};
    }

  private:
    spng_ihdr m_header{};
    std::vector<uint8_t> m_bytes;
};
