#pragma once

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

// Rows that are short beside the distance between them defeat what a processor fetches ahead by
// itself; each is asked for two rows before it is read. What is only written needs no asking.
// Internal linkage for the reason given in PixelMath.h.

static constexpr size_t kRowsAhead = 2;

/// For how many of the first rows of a block that which is kRowsAhead further on is to be fetched.
static inline size_t fetchedRows(size_t width, size_t height) {
    constexpr size_t kShortRow = 1024;
    return width <= kShortRow && height > kRowsAhead ? height - kRowsAhead : 0;
}

static inline void fetchAhead(const uint32_t* row, size_t width) {
    constexpr size_t kPixelsPerLine = 16;
    for (size_t x = 0; x < width; x += kPixelsPerLine) __builtin_prefetch(row + x);
}

}  // namespace quiravent::desktop
