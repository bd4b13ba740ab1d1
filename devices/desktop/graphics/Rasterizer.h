#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// A run of pixels with one coverage (1 to 255); `x` counts from the left edge of what it is in.
struct CoverageSpan {
    uint32_t x;
    uint32_t length;
    uint32_t coverage;
};

/// A place on a surface: (0, 0) is the corner of the first pixel, (0.5, 0.5) its centre.
struct Point {
    double x;
    double y;
};

/// Turns outlines into coverage: for each pixel the share of its area that lies inside, computed
/// from the edges' exact areas. Where contours of the same direction overlap, coverage adds up to
/// at most 1; contours of opposite direction cut holes.
///
/// Work and memory depend on the part of an edge within the limits only, so coordinates may be of
/// any finite size.
class Rasterizer {
  public:
    /// Forgets all edges. The limits must not be empty.
    void start(const Box& limits);

    const Box& limits() const { return m_limits; }

    /// One edge of a closed contour; the contours' edges may come in any order.
    void addEdge(Point from, Point to);

    /// Calls visit(y, spans) for each row with coverage, top down; the spans' x counts from the
    /// left edge of the limits, ascending and without overlap. Ends the shape.
    template <typename Visitor>
    void sweep(Visitor&& visit) {
        sortByRow();
        for (int64_t y = 0; y < m_limits.height(); ++y) {
            buildSpans(static_cast<size_t>(y));
            if (!m_spans.empty()) visit(m_limits.top + y, m_spans);
        }
    }

  private:
    /// What the edges within one pixel add: `height` is the covered height of all pixels right of
    /// it, `area` the covered area of the pixel itself; both signed by direction.
    struct Cell {
        uint32_t x;
        uint32_t y;
        float height;
        float area;
    };

    void clipAcross(Point upper, Point lower, double sign);
    void addRows(Point upper, Point lower, double sign);
    void addWithinRow(uint32_t y, Point from, Point to, double sign);
    void addCell(uint32_t x, uint32_t y, double height, double area);
    void sortByRow();
    void buildSpans(size_t y);
    void appendSpan(uint32_t x, uint32_t length, float coverage);

    Box m_limits{};
    double m_width = 0;
    double m_height = 0;
    std::vector<Cell> m_cells;
    std::vector<Cell> m_sorted;
    std::vector<size_t> m_rowEnds;
    std::vector<CoverageSpan> m_spans;
};

}  // namespace quiravent::desktop
