#include "graphics/Rotation.h"

#include <algorithm>
#include <cmath>

namespace quiravent::desktop {

namespace {

/// The share of a pixel that lies inside of an edge `distance` away from its centre.
double ramp(double distance) { return std::clamp(distance + 0.5, 0.0, 1.0); }

int64_t toInteger(double value, int64_t least, int64_t most) {
    if (!(value > static_cast<double>(least))) return least;
    if (!(value < static_cast<double>(most))) return most;
    return static_cast<int64_t>(value);
}

int64_t toFixed(double value) { return std::llround(value * 4294967296.0); }

}  // namespace

Rotation::Rotation(const Box& frame, Point direction)
    : m_direction(direction),
      m_center{static_cast<double>(frame.left + frame.right) / 2,
               static_cast<double>(frame.top + frame.bottom) / 2},
      m_halfFrame{static_cast<double>(frame.width()) / 2, static_cast<double>(frame.height()) / 2} {
}

Region Rotation::grown(const Region& region, double by) {
    return {region.left - by, region.top - by, region.right + by, region.bottom + by};
}

Point Rotation::frameAt(int64_t x, int64_t y) const {
    const double dx = static_cast<double>(x) + 0.5 - m_center.x;
    const double dy = static_cast<double>(y) + 0.5 - m_center.y;
    return {dx * m_direction.x + dy * m_direction.y + m_halfFrame.x,
            dy * m_direction.x - dx * m_direction.y + m_halfFrame.y};
}

/// The surface's pixels between the outermost corners, and one more on each side for the edges.
Box Rotation::boundsOf(const Region& region) const {
    constexpr int64_t kFar = int64_t{1} << 40;
    const double middleX = (region.left + region.right) / 2 - m_halfFrame.x;
    const double middleY = (region.top + region.bottom) / 2 - m_halfFrame.y;
    const double x = m_center.x + middleX * m_direction.x - middleY * m_direction.y;
    const double y = m_center.y + middleX * m_direction.y + middleY * m_direction.x;
    const double halfWidth = (region.right - region.left) / 2;
    const double halfHeight = (region.bottom - region.top) / 2;
    const double cosine = std::abs(m_direction.x);
    const double sine = std::abs(m_direction.y);
    const double reachX = halfWidth * cosine + halfHeight * sine + 1;
    const double reachY = halfWidth * sine + halfHeight * cosine + 1;
    return {toInteger(std::floor(x - reachX), -kFar, kFar),
            toInteger(std::floor(y - reachY), -kFar, kFar),
            toInteger(std::ceil(x + reachX), -kFar, kFar),
            toInteger(std::ceil(y + reachY), -kFar, kFar)};
}

/// The columns whose centres lie within the region, on its edges included.
Rotation::Columns Rotation::columnsWithin(const Region& region, const Columns& columns,
                                          int64_t y) const {
    const Point start = frameAt(columns.first, y);
    Columns found = columns;
    const auto narrow = [&](double value, double step, double low, double high) {
        const bool outside = step == 0 && (value < low || value > high);
        if (low > high || outside) found.last = found.first;
        if (step == 0) return;
        const double toLow = (low - value) / step;
        const double toHigh = (high - value) / step;
        const double near = std::min(toLow, toHigh);
        const double far = std::max(toLow, toHigh);
        const int64_t count = columns.last - columns.first;
        const int64_t from = columns.first + toInteger(std::ceil(near), 0, count);
        const int64_t to = columns.first + toInteger(std::floor(far) + 1, 0, count);
        found.first = std::max(found.first, from);
        found.last = std::min(found.last, to);
    };
    narrow(start.x, m_direction.x, region.left, region.right);
    narrow(start.y, -m_direction.y, region.top, region.bottom);
    return found;
}

Box Rotation::prepare(const Region& region, const Box& limits) {
    const Box rows = intersection(boundsOf(region), limits);
    if (!rows.empty()) m_coverage.resize(static_cast<size_t>(rows.width()));
    return rows;
}

Rotation::Run Rotation::runOf(const Region& region, const Columns& touched, int64_t y) {
    const auto length = static_cast<size_t>(touched.last - touched.first);
    const Columns found = columnsWithin(grown(region, -0.5), touched, y);
    const Columns whole = found.last > found.first ? found : Columns{touched.last, touched.last};
    const Point start = frameAt(touched.first, y);
    const Run run{touched.first,
                  y,
                  length,
                  start.x,
                  start.y,
                  static_cast<size_t>(whole.first - touched.first),
                  static_cast<size_t>(whole.last - touched.first),
                  m_coverage.data()};
    coverEdge(region, run, 0, run.wholeFirst);
    coverEdge(region, run, run.wholeLast, length);
    return run;
}

void Rotation::coverEdge(const Region& region, const Run& run, size_t first, size_t last) {
    for (size_t i = first; i < last; ++i) {
        const double along = static_cast<double>(i);
        const double x = run.left + along * m_direction.x;
        const double y = run.top - along * m_direction.y;
        const double share = ramp(x - region.left) * ramp(region.right - x) * ramp(y - region.top) *
                             ramp(region.bottom - y);
        m_coverage[i] = static_cast<uint8_t>(std::lround(share * 255));
    }
}

Rotation::Sampling::Sampling(const Rotation& rotation, const Region& region, double scaleX,
                             double scaleY)
    : m_left(region.left),
      m_top(region.top),
      m_scaleX(scaleX),
      m_scaleY(scaleY),
      m_stepX(toFixed(rotation.m_direction.x * scaleX)),
      m_stepY(toFixed(-rotation.m_direction.y * scaleY)) {}

SampleSteps Rotation::Sampling::along(const Run& run) const {
    return {toFixed((run.left - m_left) * m_scaleX - 0.5),
            toFixed((run.top - m_top) * m_scaleY - 0.5), m_stepX, m_stepY};
}

}  // namespace quiravent::desktop
