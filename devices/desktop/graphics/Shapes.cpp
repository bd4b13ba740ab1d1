#include "graphics/Shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

namespace quiravent::desktop {

namespace {

// How far a chord may lie from its arc, in pixels: changes a pixel's coverage by two of its 255
// levels at most.
constexpr double kFlatness = 1.0 / 128;

// Halvings that bring the largest radius to that flatness, and some to spare.
constexpr size_t kMostLevels = 24;

constexpr double kPi = 3.14159265358979323846;

void addPolygon(Rasterizer& rasterizer, std::initializer_list<Point> corners) {
    Point from = *(corners.end() - 1);
    for (const Point& to : corners) {
        rasterizer.addEdge(from, to);
        from = to;
    }
}

void addPixel(Rasterizer& rasterizer, int64_t x, int64_t y) {
    const auto left = static_cast<double>(x);
    const auto top = static_cast<double>(y);
    addPolygon(rasterizer, {{left, top}, {left + 1, top}, {left + 1, top + 1}, {left, top + 1}});
}

Point pixelCenter(int64_t x, int64_t y) {
    return {static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5};
}

/// Approximates arcs by chords, with work only where the limits of the rasteriser are.
class ArcFlattener {
  public:
    ArcFlattener(Rasterizer& rasterizer, const Ellipse& ellipse)
        : m_rasterizer(rasterizer),
          m_ellipse(ellipse),
          m_radius(std::max(ellipse.radiusX, ellipse.radiusY)) {}

    /// Adds the arc and goes on to its end; backward from its end to its start.
    void add(const Arc& arc, bool backward) {
        const double end = arc.start + arc.sweep;
        Point from = directionAt(arc.start);
        for (int next = static_cast<int>(arc.start / 90) + 1; next * 90 < end; ++next) {
            const Point to = directionAt(next * 90);
            addQuarter(from, to, backward);
            from = to;
        }
        addQuarter(from, arc.whole() ? directionAt(arc.start) : directionAt(end), backward);
    }

  private:
    void addQuarter(Point from, Point to, bool backward) {
        findHalvings(from.x * to.x + from.y * to.y);
        if (backward) {
            addMonotone(to, from, 0);
        } else {
            addMonotone(from, to, 0);
        }
    }

    /// What halving an arc of that cosine until its chords are flat takes at each of its levels,
    /// where all pieces have the same angle.
    void findHalvings(double cosine) {
        m_flatLevel = 0;
        double half = std::sqrt(std::max(0.0, (1 + cosine) / 2));
        while (m_flatLevel < kMostLevels && m_radius * (1 - half) > kFlatness) {
            m_toMiddle[m_flatLevel++] = 0.5 / half;
            half = std::sqrt((1 + half) / 2);
        }
    }

    /// Directions within one quarter, so that the arc lies in the box of its ends.
    void addMonotone(Point from, Point to, size_t level) {
        const Point start = m_ellipse.at(from);
        const Point end = m_ellipse.at(to);
        if (level == m_flatLevel || beside(start, end)) {
            m_rasterizer.addEdge(start, end);
            return;
        }
        const double scale = m_toMiddle[level];
        const Point middle{(from.x + to.x) * scale, (from.y + to.y) * scale};
        addMonotone(from, middle, level + 1);
        addMonotone(middle, to, level + 1);
    }

    /// Whether the box of two points lies wholly on one side of the limits, where only its
    /// height counts.
    bool beside(Point a, Point b) const {
        const Box& limits = m_rasterizer.limits();
        const auto outside = [](double p, double q, int64_t low, int64_t high) {
            return std::max(p, q) <= static_cast<double>(low) ||
                   std::min(p, q) >= static_cast<double>(high);
        };
        return outside(a.x, b.x, limits.left, limits.right) ||
               outside(a.y, b.y, limits.top, limits.bottom);
    }

    Rasterizer& m_rasterizer;
    Ellipse m_ellipse;
    double m_radius;
    size_t m_flatLevel = 0;
    std::array<double, kMostLevels> m_toMiddle{};  // from the sum of two directions to their middle
};

Ellipse insideOf(const Ellipse& ellipse) {
    return {ellipse.center, std::max(0.0, ellipse.radiusX - 1), std::max(0.0, ellipse.radiusY - 1)};
}

}  // namespace

Point directionAt(double degrees) {
    static constexpr Point kQuarters[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    const double turn = std::fmod(std::fmod(degrees, 360) + 360, 360);
    const double quarter = turn / 90;
    if (quarter == std::floor(quarter)) return kQuarters[static_cast<size_t>(quarter) % 4];
    const double radians = turn * (kPi / 180);
    return {std::cos(radians), std::sin(radians)};
}

void addLine(Rasterizer& rasterizer, int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
    addPixel(rasterizer, x1, y1);
    if (x1 == x2 && y1 == y2) return;
    addPixel(rasterizer, x2, y2);
    const Point a = pixelCenter(x1, y1);
    const Point b = pixelCenter(x2, y2);
    const double scale = 0.5 / std::hypot(b.x - a.x, b.y - a.y);
    const Point side{(b.y - a.y) * scale, (a.x - b.x) * scale};
    addPolygon(rasterizer, {{a.x + side.x, a.y + side.y},
                            {b.x + side.x, b.y + side.y},
                            {b.x - side.x, b.y - side.y},
                            {a.x - side.x, a.y - side.y}});
}

Box boundsOfLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
    return {std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + 1, std::max(y1, y2) + 1};
}

Box boundsOfEllipse(const Ellipse& ellipse) {
    const auto [x, y] = ellipse.center;
    return {static_cast<int64_t>(x - ellipse.radiusX), static_cast<int64_t>(y - ellipse.radiusY),
            static_cast<int64_t>(x + ellipse.radiusX), static_cast<int64_t>(y + ellipse.radiusY)};
}

std::optional<Arc> arcBetween(double start, double end) {
    if (!std::isfinite(start) || !std::isfinite(end) || start == end) return std::nullopt;
    if (std::abs(end - start) >= 360) return Arc{0, 360};
    const double first = std::fmod(std::fmod(start, 360) + 360, 360);
    const double sweep = end > start ? end - start : end - start + 360;
    return Arc{first, sweep};
}

void addSector(Rasterizer& rasterizer, const Ellipse& ellipse, const Arc& arc) {
    ArcFlattener(rasterizer, ellipse).add(arc, false);
    if (arc.whole()) return;
    rasterizer.addEdge(ellipse.at(directionAt(arc.start + arc.sweep)), ellipse.center);
    rasterizer.addEdge(ellipse.center, ellipse.at(directionAt(arc.start)));
}

void addArcOutline(Rasterizer& rasterizer, const Ellipse& ellipse, const Arc& arc) {
    const Ellipse inner = insideOf(ellipse);
    ArcFlattener(rasterizer, ellipse).add(arc, false);
    ArcFlattener(rasterizer, inner).add(arc, true);
    if (arc.whole()) return;
    const Point start = directionAt(arc.start);
    const Point end = directionAt(arc.start + arc.sweep);
    rasterizer.addEdge(ellipse.at(end), inner.at(end));
    rasterizer.addEdge(inner.at(start), ellipse.at(start));
}

}  // namespace quiravent::desktop
