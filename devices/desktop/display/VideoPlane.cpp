#include "display/VideoPlane.h"

#include <algorithm>
#include <utility>

namespace quiravent::desktop {

namespace {

/// The smallest box that holds both.
Box hull(const Box& a, const Box& b) {
    if (a.empty()) return b;
    if (b.empty()) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

}  // namespace

Box VideoPlane::setPicture(std::shared_ptr<const Surface> picture, int64_t x, int64_t y) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Box before = m_box;
    m_picture = std::move(picture);
    m_box = m_picture ? boxAt(x, y, m_picture->width(), m_picture->height()) : Box{};
    return hull(before, m_box);
}

void VideoPlane::drawOnto(Surface& picture, const Box& part) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Box seen = intersection(m_box, part);
    if (!m_picture || seen.empty()) return;
    for (int64_t y = seen.top; y < seen.bottom; ++y) {
        const uint32_t* const row = m_picture->row(static_cast<uint32_t>(y - m_box.top));
        std::copy_n(row + (seen.left - m_box.left), seen.width(),
                    picture.row(static_cast<uint32_t>(y)) + seen.left);
    }
}

}  // namespace quiravent::desktop
