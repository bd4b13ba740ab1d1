#include "graphics/images/PlainPng.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include "graphics/images/PixelConversion.h"
#include "graphics/images/PngFilters.h"

namespace quiravent::desktop {

namespace {

constexpr uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr size_t kChunkOverhead = 12;  // length, type, checksum
constexpr uint8_t kRgb = 2;
constexpr uint8_t kRgba = 6;

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const {
        libdeflate_free_decompressor(decompressor);
    }
};

uint32_t bigEndian(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

struct Chunk {
    const uint8_t* type;
    const uint8_t* data;
    uint32_t size;

    bool is(const char* name) const { return std::memcmp(type, name, 4) == 0; }
};

/// The chunks of a file in turn, as long as they are whole.
class Chunks {
  public:
    explicit Chunks(const EncodedImage& image) : m_rest(image) { skip(sizeof kSignature); }

    std::optional<Chunk> next() {
        if (m_rest.size < kChunkOverhead) return std::nullopt;
        const uint32_t size = bigEndian(m_rest.data);
        if (size > m_rest.size - kChunkOverhead) return std::nullopt;
        const Chunk chunk{m_rest.data + 4, m_rest.data + 8, size};
        if (libdeflate_crc32(0, chunk.type, size_t{size} + 4) != bigEndian(chunk.data + size)) {
            return std::nullopt;
        }
        skip(size + kChunkOverhead);
        return chunk;
    }

  private:
    void skip(size_t count) {
        const size_t skipped = std::min(count, m_rest.size);
        m_rest = {m_rest.data + skipped, m_rest.size - skipped};
    }

    EncodedImage m_rest;
};

/// What there is to know of such a file.
struct PlainPng {
    uint32_t width = 0;
    uint32_t height = 0;
    size_t bytesPerPixel = 0;
    std::vector<uint8_t> compressed;

    size_t rowSize() const { return 1 + width * bytesPerPixel; }  // with the filter's number
};

bool readHeader(const Chunk& chunk, PlainPng& png) {
    constexpr uint32_t kSize = 13;
    if (!chunk.is("IHDR") || chunk.size != kSize) return false;
    const uint8_t depth = chunk.data[8];
    const uint8_t type = chunk.data[9];
    const bool isUsual = chunk.data[10] == 0 && chunk.data[11] == 0 && chunk.data[12] == 0;
    if (depth != 8 || (type != kRgb && type != kRgba) || !isUsual) return false;
    png.width = bigEndian(chunk.data);
    png.height = bigEndian(chunk.data + 4);
    png.bytesPerPixel = type == kRgba ? 4 : 3;
    return true;
}

/// A bit for each kind of chunk that says nothing about the pixels, and stands before them, if it
/// is as it has to be; 0 for all others.
uint32_t ignorable(const Chunk& chunk, size_t bytesPerPixel) {
    const auto isFrom1To8 = [](uint8_t bits) { return bits >= 1 && bits <= 8; };
    if (chunk.is("pHYs") && chunk.size == 9) return 1;
    if (chunk.is("sRGB") && chunk.size == 1 && chunk.data[0] < 4) return 2;
    if (chunk.is("gAMA") && chunk.size == 4 && bigEndian(chunk.data) - 1 < INT32_MAX) return 4;
    const bool hasBits = chunk.is("sBIT") && chunk.size == bytesPerPixel &&
                         std::all_of(chunk.data, chunk.data + chunk.size, isFrom1To8);
    return hasBits ? 8 : 0;
}

/// Takes the ignorable chunks; false if there is one of a kind twice.
bool skipIgnorable(Chunks& chunks, std::optional<Chunk>& chunk, size_t bytesPerPixel) {
    uint32_t seen = 0;
    for (; chunk; chunk = chunks.next()) {
        const uint32_t kind = ignorable(*chunk, bytesPerPixel);
        if (kind == 0) return true;
        if ((seen & kind) != 0) return false;
        seen |= kind;
    }
    return false;
}

bool readChunks(const EncodedImage& image, PlainPng& png) {
    const bool isSigned = image.size >= sizeof kSignature &&
                          std::memcmp(image.data, kSignature, sizeof kSignature) == 0;
    if (!isSigned) return false;
    Chunks chunks(image);
    auto chunk = chunks.next();
    if (!chunk || !readHeader(*chunk, png)) return false;
    chunk = chunks.next();
    if (!skipIgnorable(chunks, chunk, png.bytesPerPixel)) return false;
    png.compressed.reserve(image.size);
    for (; chunk && chunk->is("IDAT"); chunk = chunks.next()) {
        png.compressed.insert(png.compressed.end(), chunk->data, chunk->data + chunk->size);
    }
    return chunk && chunk->is("IEND") && chunk->size == 0;
}

/// The filtered rows, or nothing unless the stream holds just these.
std::vector<uint8_t> inflate(const PlainPng& png) {
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    // A little more, since pixels of three bytes are read as four.
    std::vector<uint8_t> rows(png.rowSize() * png.height + sizeof(uint32_t));
    const size_t size = rows.size() - sizeof(uint32_t);
    size_t taken = 0;
    size_t made = 0;
    if (!decompressor ||
        libdeflate_zlib_decompress_ex(decompressor.get(), png.compressed.data(),
                                      png.compressed.size(), rows.data(), size, &taken,
                                      &made) != LIBDEFLATE_SUCCESS ||
        taken != png.compressed.size() || made != size) {
        return {};
    }
    return rows;
}

/// Returns whether all of the row is opaque.
bool convertRow(const uint8_t* bytes, const PlainPng& png, uint32_t* row) {
    if (png.bytesPerPixel == 4) {
        std::memcpy(row, bytes, size_t{png.width} * 4);
        return fromRgba(row, png.width);
    }
    fromRgb(bytes, row, png.width);
    return true;
}

}  // namespace

std::shared_ptr<Surface> decodePlainPng(const EncodedImage& image, SurfacePool& pool) {
    PlainPng png;
    if (!readChunks(image, png)) return nullptr;
    const DecodedImage surface = surfaceFor(png.width, png.height, pool);
    if (!surface) return nullptr;
    std::vector<uint8_t> rows = inflate(png);
    if (rows.empty()) return nullptr;
    const std::vector<uint8_t> nothing(png.rowSize() + 1);
    const uint8_t* above = nothing.data() + 1;
    bool opaque = true;
    for (uint32_t y = 0; y < png.height; ++y) {
        uint8_t* const row = rows.data() + y * png.rowSize();
        if (!unfilterPngRow(row[0], row + 1, above, png.width, png.bytesPerPixel)) return nullptr;
        opaque = convertRow(row + 1, png, (*surface)->row(y)) && opaque;
        above = row + 1;
    }
    (*surface)->setOpaque(opaque);
    return *surface;
}

}  // namespace quiravent::desktop
