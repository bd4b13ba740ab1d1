#pragma once

#include "graphics/CoverageShape.h"
#include "graphics/ThinLine.h"

namespace quiravent::desktop {

/// Adds the steps of a line, which were found within the limits, to a shape that begins at the
/// limits' corner.
void addSteps(const ThinLine::Steps& steps, bool steep, const Box& limits, CoverageShape& shape);

}  // namespace quiravent::desktop
