#pragma once

#include <memory>

#include "display/Plane.h"
#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// The application's graphics as they were last flushed: the front buffer.
class GraphicsPlane : public Plane {
  public:
    /// front: all transparent, of the screen's size.
    explicit GraphicsPlane(std::shared_ptr<Surface> front) : m_front(std::move(front)) {}

    /// Takes over a part of the target, which has the size of the front buffer; the part lies
    /// within.
    void update(const Surface& target, const Box& part);

    void drawOnto(Surface& picture, const Box& part) const override;

  private:
    std::shared_ptr<Surface> m_front;
};

}  // namespace quiravent::desktop
