#pragma once

#include <memory>
#include <vector>

#include "graphics/CoverageMask.h"
#include "graphics/CoverageShape.h"
#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// A text's glyphs put together, which paints the same pixels as they do in turn. Where glyphs
/// share a pixel, so do blocks.
struct TextShape {
    Box box{};  ///< where its columns and rows lie from the pixel of the text's origin
    CoverageShape coverage;
};

/// Of the masks of a text with its origin at (0, 0). Null for one that is so large, or whose glyphs
/// lie so often upon each other, that they are better painted in turn.
std::shared_ptr<const TextShape> textShapeOf(const std::vector<CoverageMask>& masks);

}  // namespace quiravent::desktop
