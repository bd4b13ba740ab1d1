#pragma once

#include "graphics/Geometry.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// One layer of the screen's picture. Called by Screen with its lock held.
class Plane {
  public:
    virtual ~Plane() = default;

    /// Draws a part of the layer over what the picture holds of the layers below. The picture is
    /// opaque, has the size of the screen, and must stay opaque; the part lies within.
    virtual void drawOnto(Surface& picture, const Box& part) const = 0;
};

}  // namespace quiravent::desktop
