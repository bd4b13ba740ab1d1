#pragma once

#include <algorithm>
#include <cstdint>

#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// Where the picture of the screen stands in a window: as large as its aspect allows, in the
/// middle, with bars at two sides where the window has another aspect. All sides are at least 1.
class Letterbox {
  public:
    Letterbox(int64_t pictureWidth, int64_t pictureHeight, int64_t windowWidth,
              int64_t windowHeight)
        : m_picture{0, 0, pictureWidth, pictureHeight},
          m_view(fitted(pictureWidth, pictureHeight, windowWidth, windowHeight)) {}

    /// The picture in its own pixels, and where it stands in those of the window.
    const Box& picture() const { return m_picture; }
    const Box& view() const { return m_view; }

    bool isScaled() const {
        return m_view.width() != m_picture.width() || m_view.height() != m_picture.height();
    }

    /// The pixels of the window that a part of the picture has a share in: a filter carries each
    /// of the picture's pixels as far as the next one of either.
    Box shareOf(const Box& part) const {
        if (!isScaled()) return part.shifted(m_view.left, m_view.top);
        const auto before = [](int64_t at, int64_t from, int64_t to) {
            return (at - 1) * to / from - 2;
        };
        const auto behind = [](int64_t at, int64_t from, int64_t to) {
            return (at + 1) * to / from + 2;
        };
        const Box share{before(part.left, m_picture.width(), m_view.width()),
                        before(part.top, m_picture.height(), m_view.height()),
                        behind(part.right, m_picture.width(), m_view.width()),
                        behind(part.bottom, m_picture.height(), m_view.height())};
        return intersection(share.shifted(m_view.left, m_view.top), m_view);
    }

  private:
    static Box fitted(int64_t width, int64_t height, int64_t windowWidth, int64_t windowHeight) {
        const bool barsAtSides = windowWidth * height > windowHeight * width;
        const int64_t w =
            barsAtSides ? std::max<int64_t>(1, windowHeight * width / height) : windowWidth;
        const int64_t h =
            barsAtSides ? windowHeight : std::max<int64_t>(1, windowWidth * height / width);
        return boxAt((windowWidth - w) / 2, (windowHeight - h) / 2, w, h);
    }

    Box m_picture;
    Box m_view;
};

}  // namespace quiravent::desktop
