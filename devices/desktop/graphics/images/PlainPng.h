#pragma once

#include "graphics/images/Decoders.h"

namespace quiravent::desktop {

/// Decodes the PNG files that are met most: 8 bits of RGB or RGBA, not interlaced, without
/// transparent colours, and with hardly any further chunks. Null for all others and whenever
/// anything is wrong: what reads every file has to decide then, and to say why.
std::shared_ptr<Surface> decodePlainPng(const EncodedImage& image, SurfacePool& pool);

}  // namespace quiravent::desktop
