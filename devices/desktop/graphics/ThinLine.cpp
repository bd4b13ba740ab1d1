#include "graphics/ThinLine.h"

#include <algorithm>
#include <cmath>

namespace quiravent::desktop {

namespace {

/// Pixels at each end, along the line, that aren't crossed by both edges alone: that of the end,
/// which is covered whole. The band's square end leans over less than half a pixel from its centre.
constexpr int64_t kEnd = 1;

/// Pixels beside the end's that the band may touch there.
constexpr int64_t kEndReach = 2;

/// Area of a column of one pixel's width between an edge that rises by `rise` across it, starting
/// `below` above a horizontal line, and that line; `half` is 1 / (2 * rise).
inline float areaAbove(float below, float rise, float half) {
    const float positive = below < 0 ? 0 : below;
    const float slanted = positive < rise ? positive : rise;
    return slanted * slanted * half + (positive - slanted);
}

}  // namespace

ThinLine::ThinLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2)
    : m_steep(std::abs(y2 - y1) > std::abs(x2 - x1)),
      m_originX(static_cast<double>(x1) + 0.5),
      m_originY(static_cast<double>(y1) + 0.5) {
    const auto dx = static_cast<double>(x2 - x1);
    const auto dy = static_cast<double>(y2 - y1);
    m_slope = m_steep ? dx / dy : dy / dx;
    m_halfBand = std::hypot(dx, dy) / (2 * std::abs(m_steep ? dy : dx));
    const Box all{std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + 1, std::max(y1, y2) + 1};
    m_ends[0] = endAt(x1, y1, all);
    m_ends[1] = endAt(x2, y2, all);
    m_middle = all;
    if (m_steep) {
        m_middle.top += kEnd;
        m_middle.bottom -= kEnd;
    } else {
        m_middle.left += kEnd;
        m_middle.right -= kEnd;
    }
}

/// What the line covers of the end's row or column.
Box ThinLine::endAt(int64_t x, int64_t y, const Box& all) const {
    const Box around = m_steep ? Box{x - kEndReach, y, x + kEndReach + 1, y + kEnd}
                               : Box{x, y - kEndReach, x + kEnd, y + kEndReach + 1};
    return intersection(around, all);
}

/// The columns of a row that the band may touch, and their coverage.
ThinLine::Run ThinLine::runAt(int64_t y, const Box& limits, uint8_t* coverage) const {
    const double middle = static_cast<double>(y) + 0.5;
    double center = 0;
    double reach = 0;
    if (m_steep) {
        center = m_originX + (middle - m_originY) * m_slope;
        reach = m_halfBand + std::abs(m_slope) / 2;
    } else {
        center = m_originX + (middle - m_originY) / m_slope;
        reach = (m_halfBand + 0.5) / std::abs(m_slope) + 0.5;
    }
    const auto within = [&](double x) {
        return static_cast<int64_t>(
            std::clamp(x, static_cast<double>(limits.left), static_cast<double>(limits.right)));
    };
    // Cut, not rounded: the limits are those of a surface, whose coordinates aren't negative.
    const int64_t first = within(center - reach);
    const int64_t last = std::min(within(center + reach) + 1, limits.right);
    const auto count = static_cast<size_t>(last - first);
    if (m_steep) {
        coverSteep(middle, static_cast<double>(first), coverage, count);
    } else {
        coverShallow(static_cast<double>(y), static_cast<double>(first), coverage, count);
    }
    return {first, y, coverage, count};
}

/// Each column is crossed by both edges over its whole width.
void ThinLine::coverShallow(double y, double x, uint8_t* coverage, size_t count) const {
    const double center = m_originY + (x + 0.5 - m_originX) * m_slope;
    const auto rise = static_cast<float>(std::abs(m_slope));
    const float half = 0.5F / rise;
    const auto step = static_cast<float>(m_slope);
    const auto band = static_cast<float>(2 * m_halfBand);
    // From the upper edge's highest point in the first column down to the row's upper side.
    const auto below = static_cast<float>(y - (center - m_halfBand)) + rise / 2;
    const auto last = static_cast<int32_t>(count);  // which, unlike size_t, vectors can convert
    for (int32_t i = 0; i < last; ++i) {
        const float upper = below - step * static_cast<float>(i);
        const float lower = upper - band;
        const float area = areaAbove(upper + 1, rise, half) - areaAbove(upper, rise, half) -
                           areaAbove(lower + 1, rise, half) + areaAbove(lower, rise, half);
        coverage[i] = static_cast<uint8_t>(static_cast<int>(area * 255 + 0.5F));
    }
}

/// The row is crossed by both edges over its whole height.
void ThinLine::coverSteep(double y, double x, uint8_t* coverage, size_t count) const {
    const double center = m_originX + (y - m_originY) * m_slope;
    const auto rise = static_cast<float>(std::abs(m_slope));
    const float half = 0.5F / rise;
    const auto band = static_cast<float>(2 * m_halfBand);
    const auto right = static_cast<float>(x - (center - m_halfBand)) + rise / 2;
    const auto last = static_cast<int32_t>(count);  // which, unlike size_t, vectors can convert
    for (int32_t i = 0; i < last; ++i) {
        const float near = right + static_cast<float>(i);
        const float far = near - band;
        const float area = areaAbove(near + 1, rise, half) - areaAbove(near, rise, half) -
                           areaAbove(far + 1, rise, half) + areaAbove(far, rise, half);
        coverage[i] = static_cast<uint8_t>(static_cast<int>(area * 255 + 0.5F));
    }
}

}  // namespace quiravent::desktop
