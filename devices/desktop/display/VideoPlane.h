#pragma once

#include <memory>
#include <mutex>

#include "display/Plane.h"
#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// Moving pictures on a part of the screen. Thread-safe.
class VideoPlane : public Plane {
  public:
    /// Replaces the picture, which is opaque and doesn't change any more, with its corner at a
    /// point of the screen, which may lie outside; null takes it away. Returns where the screen
    /// changes.
    Box setPicture(std::shared_ptr<const Surface> picture, int64_t x, int64_t y);

    void drawOnto(Surface& picture, const Box& part) const override;

  private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const Surface> m_picture;
    Box m_box{};
};

}  // namespace quiravent::desktop
