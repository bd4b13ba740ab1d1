#pragma once

#include <cstdint>

namespace quiravent::desktop {

/// Places and lengths of text are in 64ths of a pixel.
constexpr int64_t kUnitsPerPixel = 64;
/// Glyphs are drawn at the quarter of a pixel that is nearest.
constexpr int64_t kUnitsPerQuarter = kUnitsPerPixel / 4;

}  // namespace quiravent::desktop
