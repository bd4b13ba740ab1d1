#pragma once

#include <cstdint>
#include <memory>

#include "graphics/Geometry.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// A picture to be seen: opaque, of the size of its bounds on the screen. Never changes.
struct VideoPicture {
    std::shared_ptr<const Surface> surface;
    Rect bounds;
    int64_t position;  ///< in the medium, in microseconds
};

/// Where a player's pictures are seen: a plane of the screen. Called by the player's thread at the
/// time at which the picture is to be seen; must not wait.
class VideoOutput {
  public:
    virtual ~VideoOutput() = default;
    virtual void show(const VideoPicture& picture) = 0;
    virtual void hide() = 0;
};

}  // namespace quiravent::desktop
