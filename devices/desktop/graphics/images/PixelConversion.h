#pragma once

#include <cstdint>

namespace quiravent::desktop {

// Conversions of a row, in place where nothing else is said, from what a decoder wrote to the
// pixels of a surface.

/// From bytes R, G, B, A, the alpha being 255 everywhere.
void fromOpaqueRgba(uint32_t* row, uint32_t width);

/// From three bytes R, G, B per pixel into a row of a surface.
void fromRgb(const uint8_t* bytes, uint32_t* row, uint32_t width);

/// From bytes R, G, B, A, not premultiplied. Returns whether all of the row is opaque.
bool fromRgba(uint32_t* row, uint32_t width);

/// From the order of a surface, but not premultiplied. Returns whether all of the row is opaque.
bool premultiply(uint32_t* row, uint32_t width);

/// From bytes C, M, Y, K, where 255 is no ink (as Adobe's programs store them) if `inverted`, else
/// full ink. Without colour management: each ink takes away its part of one primary, black of all.
void fromCmyk(uint32_t* row, uint32_t width, bool inverted);

}  // namespace quiravent::desktop
