#pragma once

#include "graphics/Surface.h"

namespace quiravent::desktop {

/// One layer of the screen's picture. Called by Screen with its lock held.
class Plane {
  public:
    virtual ~Plane() = default;

    /// Draws the layer over what the picture holds of the layers below. The picture is opaque, has
    /// the size of the screen, and must stay opaque.
    virtual void drawOnto(Surface& picture) const = 0;
};

}  // namespace quiravent::desktop
