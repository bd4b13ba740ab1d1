#include "graphics/images/PngFilters.h"

#include <cstring>

namespace quiravent::desktop {

namespace {

// Each pixel depends on the one before, but its channels don't on each other: they are worked out
// side by side, as words.
using Bytes = uint8_t __attribute__((vector_size(4)));
using Words = int16_t __attribute__((vector_size(8)));

Words load(const uint8_t* from) {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return __builtin_convertvector(bytes, Words);
}

/// The lower byte of each word.
template <size_t size>
void store(uint8_t* to, Words words) {
    const Bytes bytes = __builtin_convertvector(words, Bytes);
    std::memcpy(to, &bytes, size);
}

Words magnitude(Words words) { return words < 0 ? -words : words; }

Words mean(Words left, Words above, Words /*corner*/) { return (left + above) >> 1; }

/// The neighbour nearest to left + above - corner, in that order where two are.
Words paeth(Words left, Words above, Words corner) {
    const Words toLeft = magnitude(above - corner);
    const Words toAbove = magnitude(left - corner);
    const Words toCorner = magnitude(above + left - corner - corner);
    const Words upper = toAbove <= toCorner ? above : corner;
    return ((toLeft <= toAbove) & (toLeft <= toCorner)) ? left : upper;
}

Words leftOne(Words left, Words /*above*/, Words /*corner*/) { return left; }

template <size_t size, Words (*predict)(Words, Words, Words)>
void addPredictions(uint8_t* row, const uint8_t* above, size_t width) {
    Words left{};
    Words corner{};
    for (size_t i = 0; i < width; ++i, row += size, above += size) {
        const Words up = load(above);
        left = (load(row) + predict(left, up, corner)) & 0xFF;
        corner = up;
        store<size>(row, left);
    }
}

void addRows(uint8_t* row, const uint8_t* above, size_t size) {
    for (size_t i = 0; i < size; ++i) row[i] = static_cast<uint8_t>(row[i] + above[i]);
}

template <size_t size>
bool unfilter(uint8_t filter, uint8_t* row, const uint8_t* above, size_t width) {
    switch (filter) {
        case 0:
            return true;
        case 1:
            addPredictions<size, leftOne>(row, above, width);
            return true;
        case 2:
            addRows(row, above, width * size);
            return true;
        case 3:
            addPredictions<size, mean>(row, above, width);
            return true;
        case 4:
            addPredictions<size, paeth>(row, above, width);
            return true;
        default:
            return false;
    }
}

}  // namespace

bool unfilterPngRow(uint8_t filter, uint8_t* row, const uint8_t* above, size_t width,
                    size_t bytesPerPixel) {
    return bytesPerPixel == 4 ? unfilter<4>(filter, row, above, width)
                              : unfilter<3>(filter, row, above, width);
}

}  // namespace quiravent::desktop
