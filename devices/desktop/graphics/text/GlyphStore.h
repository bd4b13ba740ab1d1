#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quiravent::desktop {

/// A glyph's coverage and where it lies relative to the pixel of its pen on the baseline.
struct GlyphBitmap {
    int32_t left = 0;  ///< of the left edge, to the right
    int32_t top = 0;   ///< of the top edge, downwards (thus mostly negative)
    uint32_t width = 0;
    uint32_t height = 0;  ///< rows follow each other without a gap; 0 for a glyph without ink
    std::unique_ptr<uint8_t[]> coverage;
};

/// A glyph as drawn at one of four quarters of a pixel.
struct GlyphKey {
    uint32_t glyph;
    uint32_t quarter;
};

/// Bitmaps of one font. They never move nor change while the store lives, so that masks may point
/// at them; the store only grows, and its owner replaces it by a new one when it is full.
class GlyphStore {
  public:
    /// Null when there is none.
    const GlyphBitmap* find(GlyphKey key) const;

    /// Takes the bitmap of a key that isn't there yet.
    const GlyphBitmap& add(GlyphKey key, GlyphBitmap bitmap);

    /// Approximate.
    size_t byteSize() const { return m_byteSize; }

  private:
    std::unordered_map<uint64_t, GlyphBitmap> m_bitmaps;
    size_t m_byteSize = 0;
};

}  // namespace quiravent::desktop
