#include "graphics/Rasterizer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quiravent::desktop {

namespace {

double xAt(Point a, Point b, double y) { return a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)); }

/// The point where a line passes through x; exactly there, so that splitting ends.
Point crossing(Point a, Point b, double x) {
    const double y = a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x));
    return {x, std::clamp(y, a.y, b.y)};
}

uint32_t toCoverage(float area) {
    constexpr float kRounding = 0.5F;
    return static_cast<uint32_t>(std::min(1.0F, std::abs(area)) * 255 + kRounding);
}

}  // namespace

void Rasterizer::start(const Box& limits) {
    m_limits = limits;
    m_width = static_cast<double>(limits.width());
    m_height = static_cast<double>(limits.height());
    m_cells.clear();
}

void Rasterizer::addEdge(Point from, Point to) {
    const auto left = static_cast<double>(m_limits.left);
    const auto top = static_cast<double>(m_limits.top);
    Point upper{from.x - left, from.y - top};
    Point lower{to.x - left, to.y - top};
    const double sign = upper.y < lower.y ? 1 : -1;
    if (sign < 0) std::swap(upper, lower);
    if (upper.y == lower.y || lower.y <= 0 || upper.y >= m_height) return;
    const Point start = upper.y < 0 ? Point{xAt(upper, lower, 0), 0} : upper;
    const Point end = lower.y > m_height ? Point{xAt(upper, lower, m_height), m_height} : lower;
    clipAcross(start, end, sign);
}

// What lies left of the limits covers whole rows from their edge on; what lies right of them
// covers nothing.
void Rasterizer::clipAcross(Point upper, Point lower, double sign) {
    const auto [least, most] = std::minmax(upper.x, lower.x);
    if (least >= m_width) return;
    if (most <= 0) {
        addRows({0, upper.y}, {0, lower.y}, sign);
        return;
    }
    if (least >= 0 && most <= m_width) {
        addRows(upper, lower, sign);
        return;
    }
    const Point middle = crossing(upper, lower, least < 0 ? 0 : m_width);
    clipAcross(upper, middle, sign);
    clipAcross(middle, lower, sign);
}

void Rasterizer::addRows(Point upper, Point lower, double sign) {
    Point from = upper;
    const double perRow = (lower.x - upper.x) / (lower.y - upper.y);
    for (auto y = static_cast<uint32_t>(upper.y); from.y < lower.y; ++y) {
        const double bottom = std::min(lower.y, static_cast<double>(y) + 1);
        const double x = bottom == lower.y ? lower.x : upper.x + perRow * (bottom - upper.y);
        const Point to{std::clamp(x, 0.0, m_width), bottom};
        addWithinRow(y, from, to, sign);
        from = to;
    }
}

void Rasterizer::addWithinRow(uint32_t y, Point from, Point to, double sign) {
    if (from.x > to.x) std::swap(from.x, to.x);  // the areas don't depend on the slope's direction
    const double height = sign * (to.y - from.y);
    const double heightPerX = from.x < to.x ? height / (to.x - from.x) : 0;
    double x = from.x;
    for (auto column = static_cast<uint32_t>(from.x);; ++column) {
        const double right = static_cast<double>(column) + 1;
        const double end = std::min(right, to.x);
        const double part = x == from.x && end == to.x ? height : heightPerX * (end - x);
        addCell(column, y, part, part * (right - (x + end) / 2));
        if (to.x <= right) return;
        x = end;
    }
}

void Rasterizer::addCell(uint32_t x, uint32_t y, double height, double area) {
    if (x >= m_width) return;
    if (!m_cells.empty() && m_cells.back().x == x && m_cells.back().y == y) {
        m_cells.back().height += static_cast<float>(height);
        m_cells.back().area += static_cast<float>(area);
        return;
    }
    m_cells.push_back({x, y, static_cast<float>(height), static_cast<float>(area)});
}

// Counting sort, after which row y ends at m_rowEnds[y].
void Rasterizer::sortByRow() {
    m_rowEnds.assign(static_cast<size_t>(m_limits.height()) + 1, 0);
    for (const Cell& cell : m_cells) ++m_rowEnds[cell.y + 1];
    for (size_t y = 1; y < m_rowEnds.size(); ++y) m_rowEnds[y] += m_rowEnds[y - 1];
    m_sorted.resize(m_cells.size());
    // Ahead of the sweep, so that no row is painted unless there is memory for all.
    m_spans.reserve(std::min(2 * m_cells.size(), static_cast<size_t>(m_limits.width())));
    for (const Cell& cell : m_cells) m_sorted[m_rowEnds[cell.y]++] = cell;
}

void Rasterizer::buildSpans(size_t y) {
    m_spans.clear();
    Cell* cell = m_sorted.data() + (y == 0 ? 0 : m_rowEnds[y - 1]);
    Cell* const end = m_sorted.data() + m_rowEnds[y];
    std::sort(cell, end, [](const Cell& a, const Cell& b) { return a.x < b.x; });
    float height = 0;
    while (cell != end) {
        const uint32_t x = cell->x;
        float area = height;
        for (; cell != end && cell->x == x; ++cell) {
            area += cell->area;
            height += cell->height;
        }
        const uint32_t next = cell == end ? static_cast<uint32_t>(m_limits.width()) : cell->x;
        appendSpan(x, 1, area);
        appendSpan(x + 1, next - x - 1, height);
    }
}

void Rasterizer::appendSpan(uint32_t x, uint32_t length, float coverage) {
    const uint32_t level = toCoverage(coverage);
    if (level == 0 || length == 0) return;
    CoverageSpan* last = m_spans.empty() ? nullptr : &m_spans.back();
    if (last != nullptr && last->coverage == level && last->x + last->length == x) {
        last->length += length;
    } else {
        m_spans.push_back({x, length, level});
    }
}

}  // namespace quiravent::desktop
