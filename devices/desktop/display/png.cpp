#include "display/png.h"

#include <libdeflate.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>

namespace quiravent::desktop {

namespace {

constexpr size_t kBytesPerPixel = 3;
constexpr uint8_t kBitsPerChannel = 8;
constexpr uint8_t kTrueColour = 2;

/// Fast rather than small: a picture may be written for every frame.
constexpr int kCompressionLevel = 3;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const {
        libdeflate_free_compressor(compressor);
    }
};

void appendBigEndian(std::vector<uint8_t>& bytes, uint32_t value) {
    for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<uint8_t>(value >> shift));
}

void appendChunk(std::vector<uint8_t>& file, std::string_view type,
                 const std::vector<uint8_t>& data) {
    appendBigEndian(file, static_cast<uint32_t>(data.size()));
    const size_t begin = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), data.begin(), data.end());
    appendBigEndian(file, libdeflate_crc32(0, &file[begin], file.size() - begin));
}

std::vector<uint8_t> headerOf(const Surface& picture) {
    std::vector<uint8_t> header;
    appendBigEndian(header, picture.width());
    appendBigEndian(header, picture.height());
    for (const uint8_t value : {kBitsPerChannel, kTrueColour}) header.push_back(value);
    header.resize(13);  // the only compression and filtering there are, and no interlacing
    return header;
}

void toRgb(const uint32_t* pixels, std::vector<uint8_t>& row) {
    for (size_t at = 0; at < row.size(); at += kBytesPerPixel) {
        const uint32_t pixel = *pixels++;
        row[at] = static_cast<uint8_t>(pixel >> 16);
        row[at + 1] = static_cast<uint8_t>(pixel >> 8);
        row[at + 2] = static_cast<uint8_t>(pixel);
    }
}

/// The rows one after the other, each behind the number of its filter: the difference to what is
/// above, which makes most rows of a screen zeros, and gradients small.
std::vector<uint8_t> filteredRows(const Surface& picture) {
    constexpr uint8_t kUp = 2;
    std::vector<uint8_t> above(picture.width() * kBytesPerPixel);
    std::vector<uint8_t> row(above.size());
    std::vector<uint8_t> rows;
    rows.reserve((row.size() + 1) * picture.height());
    for (uint32_t y = 0; y < picture.height(); ++y, above.swap(row)) {
        toRgb(picture.row(y), row);
        rows.push_back(kUp);
        std::transform(
            row.begin(), row.end(), above.begin(), std::back_inserter(rows),
            [](uint8_t here, uint8_t there) { return static_cast<uint8_t>(here - there); });
    }
    return rows;
}

std::vector<uint8_t> deflated(const std::vector<uint8_t>& bytes) {
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(kCompressionLevel));
    if (!compressor) throw std::bad_alloc();
    std::vector<uint8_t> data(libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    data.resize(libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), data.data(),
                                         data.size()));
    return data;
}

}  // namespace

std::vector<uint8_t> encodePng(const Surface& picture) {
    std::vector<uint8_t> file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(file, "IHDR", headerOf(picture));
    appendChunk(file, "IDAT", deflated(filteredRows(picture)));
    appendChunk(file, "IEND", {});
    return file;
}

}  // namespace quiravent::desktop
