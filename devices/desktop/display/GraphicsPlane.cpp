#include "display/GraphicsPlane.h"

#include <algorithm>

#include "graphics/Kernels.h"

namespace quiravent::desktop {

void GraphicsPlane::update(const Surface& target, const Box& part) {
    for (auto y = static_cast<uint32_t>(part.top); y < part.bottom; ++y) {
        const uint32_t* const row = target.row(y);
        std::copy(row + part.left, row + part.right, m_front->row(y) + part.left);
    }
    m_front->touch();
}

void GraphicsPlane::drawOnto(Surface& picture) const {
    constexpr uint32_t kOpaque = 255;
    for (uint32_t y = 0; y < m_front->height(); ++y) {
        kernels().over(picture.row(y), m_front->row(y), m_front->width(), kOpaque);
    }
}

}  // namespace quiravent::desktop
