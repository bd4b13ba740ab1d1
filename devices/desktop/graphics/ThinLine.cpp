#include "graphics/ThinLine.h"

#include <algorithm>
#include <cmath>

namespace quiravent::desktop {

namespace {

/// Pixels beside the end's that the line may touch there.
constexpr int64_t kEndReach = 2;

/// Pixels across that a line may touch at one step: the band, of up to 1.42, rises by up to 1.
constexpr int32_t kAcross = 4;

/// Added to places across, so that they are positive and cutting them rounds down.
constexpr int32_t kBias = 8;

/// Area of a column of one pixel's width between an edge that rises by `rise` across it, starting
/// `below` above a horizontal line, and that line; `half` is 1 / (2 * rise).
inline float areaAbove(float below, float rise, float half) {
    const float positive = below < 0 ? 0 : below;
    const float slanted = positive < rise ? positive : rise;
    return slanted * slanted * half + (positive - slanted);
}

inline uint32_t levelOf(float area) {
    // An area isn't negative, and std::lround would be a call for each pixel.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<uint32_t>(static_cast<int32_t>(area * 255 + 0.5F));
}

/// Holds the pixels of a step to those from 0 up to, without, `limit`. Neighbouring steps stay
/// neighbours.
void clipStep(int32_t& first, uint32_t& coverage, int32_t limit) {
    if (first < 0) {
        coverage = first > -kAcross ? coverage >> (8 * -first) : 0;
        first = 0;
    }
    if (first + kAcross > limit) {
        const int32_t kept = std::max(limit - first, 0);
        coverage &= (uint32_t{1} << (8 * kept)) - 1;
        if (kept == 0) first = limit - 1;
    }
}

}  // namespace

ThinLine::ThinLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2)
    : m_steep(std::abs(y2 - y1) > std::abs(x2 - x1)) {
    const auto along = static_cast<double>(m_steep ? y2 - y1 : x2 - x1);
    const auto across = static_cast<double>(m_steep ? x2 - x1 : y2 - y1);
    m_slope = across / along;
    m_band = std::hypot(along, across) / std::abs(along);
    m_originAlong = static_cast<double>(m_steep ? y1 : x1) + 0.5;
    m_originAcross = static_cast<double>(m_steep ? x1 : y1) + 0.5;
    const Box all{std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + 1, std::max(y1, y2) + 1};
    m_middle = m_steep ? Axis{all.top + 1, all.bottom - 1} : Axis{all.left + 1, all.right - 1};
    m_ends[0] = endAt(x1, y1, all);
    m_ends[1] = endAt(x2, y2, all);
}

/// The band's square end leans over less than half a pixel from the centre of the end's pixel.
Box ThinLine::endAt(int64_t x, int64_t y, const Box& all) const {
    const Box around = m_steep ? Box{x - kEndReach, y, x + kEndReach + 1, y + 1}
                               : Box{x, y - kEndReach, x + 1, y + kEndReach + 1};
    return intersection(around, all);
}

/// The least place across that the upper (or left) edge has at a step.
double ThinLine::upperEdgeAt(int64_t step) const {
    const double center =
        m_originAcross + (static_cast<double>(step) + 0.5 - m_originAlong) * m_slope;
    return center - m_band / 2 - std::abs(m_slope) / 2;
}

/// Those of the steps at which the line may touch pixels from 0 to `width` across.
ThinLine::Axis ThinLine::visibleSteps(const Axis& along, double edge, double width) const {
    const double toEnter = (-kAcross - edge) / m_slope;
    const double toLeave = (width - edge) / m_slope;
    const auto count = static_cast<double>(along.last - along.first);
    const double from = std::clamp(std::min(toEnter, toLeave) - 1, 0.0, count);
    const double to = std::clamp(std::max(toEnter, toLeave) + 2, 0.0, count);
    return {along.first + static_cast<int64_t>(from), along.first + static_cast<int64_t>(to)};
}

void ThinLine::cover(const Box& limits, Steps& steps) const {
    const Axis along = m_steep ? Axis{limits.top, limits.bottom} : Axis{limits.left, limits.right};
    const Axis across = m_steep ? Axis{limits.left, limits.right} : Axis{limits.top, limits.bottom};
    const Axis possible{std::max(along.first, m_middle.first), std::min(along.last, m_middle.last)};
    steps.first.clear();
    steps.coverage.clear();
    if (possible.first >= possible.last) return;
    const auto width = static_cast<int32_t>(across.last - across.first);
    const auto edge = upperEdgeAt(possible.first) - static_cast<double>(across.first);
    const Axis seen = visibleSteps(possible, edge, width);
    const auto count = static_cast<int32_t>(seen.last - seen.first);
    if (count <= 0) return;
    steps.begin = seen.first;
    steps.first.resize(static_cast<size_t>(count));
    steps.coverage.resize(static_cast<size_t>(count));
    const auto start =
        static_cast<float>(edge + static_cast<double>(seen.first - possible.first) * m_slope);
    coverSteps(start + kBias, count, steps.first.data(), steps.coverage.data());
    for (size_t i = 0; i < steps.first.size(); ++i) {
        clipStep(steps.first[i], steps.coverage[i], width);
    }
}

/// start: the least place of the upper edge at the first step, biased.
void ThinLine::coverSteps(float start, int32_t count, int32_t* first, uint32_t* coverage) const {
    const auto step = static_cast<float>(m_slope);
    const auto rise = static_cast<float>(std::abs(m_slope));
    const auto band = static_cast<float>(m_band);
    const float half = 0.5F / rise;
    for (int32_t i = 0; i < count; ++i) {
        const float edge = start + step * static_cast<float>(i);
        const auto pixel = static_cast<int32_t>(edge);
        const float below = static_cast<float>(pixel + 1) - edge;
        // Below the upper edge and above the far side of each pixel; then the same of the lower.
        const float upper0 = areaAbove(below, rise, half);
        const float upper1 = areaAbove(below + 1, rise, half);
        const float upper2 = areaAbove(below + 2, rise, half);
        const float lower1 = areaAbove(below + 1 - band, rise, half);
        const float lower2 = areaAbove(below + 2 - band, rise, half);
        const float lower3 = areaAbove(below + 3 - band, rise, half);
        const uint32_t level1 = levelOf(upper1 - upper0 - lower1);
        const uint32_t level2 = levelOf(upper2 - upper1 - lower2 + lower1);
        // By then the upper edge is passed, and what is left is a whole pixel.
        const uint32_t level3 = levelOf(1 - lower3 + lower2);
        first[i] = pixel - kBias;
        coverage[i] = levelOf(upper0) | level1 << 8 | level2 << 16 | level3 << 24;
    }
}

}  // namespace quiravent::desktop
