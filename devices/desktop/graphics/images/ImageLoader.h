#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "graphics/Surface.h"
#include "resources/Resource.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// Decodes a whole picture into memory of the pool; its format is told by its content:
///  - PNG: every colour type and depth (16 bits are cut to the upper 8), interlaced or not,
///    transparency by alpha channel or by tRNS; embedded colour profiles and gamma are ignored;
///  - JPEG: baseline and progressive; grey, YCbCr, RGB and, without colour management, CMYK and
///    YCCK; the orientation that a camera notes in Exif data is ignored;
///  - WebP: lossy, lossless, with or without alpha; of an animation the first frame.
///
/// The pixels are premultiplied, rounded to nearest; isOpaque() is set when every alpha is 255.
/// A picture that is damaged, cut off, longer than SurfacePool::kMaxSide or beyond the pool's
/// budget is refused, the last two before memory is taken; a decoder never returns a part of one.
/// May be called from any thread, by several at once. Beside the surface a decoder may need
/// working memory of up to about twice its size until it returns.
Result<std::shared_ptr<Surface>> decodeImage(const uint8_t* data, size_t size, SurfacePool& pool);

/// Reads (see readResource) and decodes; the reason of a failure names the location.
Result<std::shared_ptr<Surface>> loadImage(const std::string& location, SurfacePool& pool,
                                           const ResourceLimits& limits = {});

}  // namespace quiravent::desktop
