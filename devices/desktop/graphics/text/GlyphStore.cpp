#include "GlyphStore.h"

#include <utility>

namespace quiravent::desktop {

namespace {

/// What one entry takes beside its coverage.
constexpr size_t kEntryOverhead = sizeof(GlyphBitmap) + 64;

uint64_t packed(GlyphKey key) { return uint64_t{key.glyph} << 2 | key.quarter; }

}  // namespace

const GlyphBitmap* GlyphStore::find(GlyphKey key) const {
    const auto found = m_bitmaps.find(packed(key));
    return found == m_bitmaps.end() ? nullptr : &found->second;
}

const GlyphBitmap& GlyphStore::add(GlyphKey key, GlyphBitmap bitmap) {
    m_byteSize += kEntryOverhead + size_t{bitmap.width} * bitmap.height;
    return m_bitmaps.emplace(packed(key), std::move(bitmap)).first->second;
}

}  // namespace quiravent::desktop
