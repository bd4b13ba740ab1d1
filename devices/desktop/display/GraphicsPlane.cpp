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

void GraphicsPlane::drawOnto(Surface& picture, const Box& part) const {
    constexpr uint32_t kOpaque = 255;
    for (auto y = static_cast<uint32_t>(part.top); y < part.bottom; ++y) {
        kernels().over(picture.row(y) + part.left, m_front->row(y) + part.left,
                       static_cast<size_t>(part.width()), kOpaque);
    }
}

}  // namespace quiravent::desktop
