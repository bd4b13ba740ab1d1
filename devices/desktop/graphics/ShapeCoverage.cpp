#include "graphics/ShapeCoverage.h"

#include <cstring>

#include "graphics/StepBlocks.h"
#include "support/HashMix.h"

namespace quiravent::desktop {

namespace {

constexpr uint32_t kLine = 2;  // beside the two styles of ellipses

}  // namespace

size_t ShapeCoverage::Hash::operator()(const Key& key) const {
    uint64_t hash = key.kind;
    for (const double measure : key.measures) {
        uint64_t bits = 0;
        std::memcpy(&bits, &measure, sizeof bits);
        hash = mixedHash(hash, bits);
    }
    return hash;
}

template <typename Cover>
const CoverageShape& ShapeCoverage::shapeOf(const Key& key, bool whole, const Box& visible,
                                            Cover cover) {
    if (whole) {
        if (const CoverageShape* known = m_known.find(key)) return *known;
    }
    m_shape.start(static_cast<uint32_t>(visible.width()));
    cover();
    if (whole) m_known.add(key, m_shape, m_shape.byteSize());
    return m_shape;
}

const CoverageShape& ShapeCoverage::line(int64_t x1, int64_t y1, int64_t x2, int64_t y2,
                                         const Box& visible) {
    const Key key{kLine, {static_cast<double>(x2 - x1), static_cast<double>(y2 - y1), 0, 0}};
    return shapeOf(key, visible == boundsOfLine(x1, y1, x2, y2), visible, [&] {
        const ThinLine line(x1, y1, x2, y2);
        line.cover(visible, m_steps);
        addSteps(m_steps, line.isSteep(), visible, m_shape);
        for (const Box& end : line.ends()) {
            const Box seen = intersection(end, visible);
            if (seen.empty()) continue;
            m_rasterizer.start(seen);
            addLine(m_rasterizer, x1, y1, x2, y2);
            addSpans(visible);
        }
    });
}

const CoverageShape& ShapeCoverage::ellipse(EllipseStyle style, const Ellipse& ellipse,
                                            const Arc& arc, const Box& visible) {
    const Key key{static_cast<uint32_t>(style),
                  {ellipse.radiusX, ellipse.radiusY, arc.start, arc.sweep}};
    const bool seenWhole = visible == boundsOfEllipse(ellipse);
    return shapeOf(key, seenWhole, visible, [&] {
        if (!arc.whole() || !seenWhole) {
            m_rasterizer.start(visible);
            addEllipse(style, ellipse, arc);
            addSpans(visible);
            return;
        }
        const auto x = static_cast<int64_t>(ellipse.center.x);
        const auto y = static_cast<int64_t>(ellipse.center.y);
        m_rasterizer.start({x, y, visible.right, visible.bottom});
        addEllipse(style, ellipse, {0, 90});
        addMirrored(static_cast<uint32_t>(ellipse.radiusX), static_cast<uint32_t>(ellipse.radiusY));
    });
}

void ShapeCoverage::addEllipse(EllipseStyle style, const Ellipse& ellipse, const Arc& arc) {
    if (style == EllipseStyle::fill) {
        addSector(m_rasterizer, ellipse, arc);
    } else {
        addArcOutline(m_rasterizer, ellipse, arc);
    }
}

void ShapeCoverage::addSpans(const Box& visible) {
    const Box& limits = m_rasterizer.limits();
    const auto left = static_cast<uint32_t>(limits.left - visible.left);
    m_rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& spans) {
        m_shape.addSpans(left, static_cast<uint32_t>(y - visible.top), spans);
    });
}

// Each span of the quarter that was rasterised stands for two in each of two rows.
void ShapeCoverage::addMirrored(uint32_t radiusX, uint32_t radiusY) {
    const int64_t middle = m_rasterizer.limits().top;
    m_rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& right) {
        m_spans.clear();
        for (auto span = right.rbegin(); span != right.rend(); ++span) {
            m_spans.push_back({radiusX - span->x - span->length, span->length, span->coverage});
        }
        auto from = right.begin();
        if (from->x == 0) {
            m_spans.back().length *= 2;
            ++from;
        }
        for (; from != right.end(); ++from) {
            m_spans.push_back({radiusX + from->x, from->length, from->coverage});
        }
        const auto below = static_cast<uint32_t>(y - middle);
        m_shape.addSpans(0, radiusY + below, m_spans);
        m_shape.addSpans(0, radiusY - 1 - below, m_spans);
    });
}

}  // namespace quiravent::desktop
