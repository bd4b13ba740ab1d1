#include "graphics/Canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/PixelMath.h"
#include "graphics/Shapes.h"

namespace quiravent::desktop {

Canvas::Canvas(std::shared_ptr<Surface> surface, std::shared_ptr<CanvasShare> share)
    : m_surface(std::move(surface)),
      m_share(share ? std::move(share) : std::make_shared<CanvasShare>(0, 1)),
      m_surfaceBox{0, 0, m_surface->width(), m_surface->height()},
      m_kernels(kernels()),
      m_clip{0, 0, m_surface->width(), m_surface->height()},
      m_bounds(m_surfaceBox),
      m_fill(m_kernels.fill) {}

void Canvas::setColor(const Color& color) {
    m_color = color;
    m_premultiplied = premultiplied(color.red, color.green, color.blue, color.alpha);
    resolvePaint();
}

void Canvas::setClip(const Rect& clip) {
    m_clip = clip;
    m_bounds = intersection(toBox(clip), m_surfaceBox);
}

bool Canvas::setOpacity(double opacity) {
    if (std::isnan(opacity)) return false;
    m_opacity = static_cast<uint32_t>(std::lround(std::clamp(opacity, 0.0, 1.0) * 255));
    resolvePaint();
    return true;
}

bool Canvas::setRotation(double degrees) {
    if (!std::isfinite(degrees)) return false;
    m_rotated = std::fmod(degrees, 360) != 0;
    m_direction = directionAt(degrees);
    return true;
}

void Canvas::setPorterDuff(uint32_t code) {
    m_mode = code != 0 && code < kPorterDuffModes ? code : kSourceOver;
    resolvePaint();
}

void Canvas::resolvePaint() {
    m_source = scalePixel(m_premultiplied, m_opacity);
    const bool replaces = m_mode == kSourceOver && alphaOf(m_source) == 255;
    m_fill = replaces ? m_kernels.fill : m_kernels.modes[m_mode].fill;
    m_invisible = alphaOf(m_source) == 0 && transparentIsIgnored();
}

void Canvas::drew(bool sourceOpaque, bool wholeSurface) {
    const PorterDuff& mode = kPorterDuff[m_mode];
    m_surface->touch();
    if (m_surface->isOpaque()) {
        m_surface->setOpaque(keepsOpaque(mode, sourceOpaque));
    } else if (wholeSurface && sourceOpaque) {
        m_surface->setOpaque(makesOpaque(mode));
    }
}

void Canvas::fillBox(const Box& box) {
    const Box visible = intersection(box, m_bounds);
    if (visible.empty() || m_invisible) return;
    m_fill(blockAt(visible), m_source);
    drew(alphaOf(m_source) == 255, visible == m_surfaceBox);
}

void Canvas::fillRect(const Rect& rect) { fillBox(toBox(rect)); }

void Canvas::clearRect(const Rect& rect) {
    const Box visible = intersection(toBox(rect), m_bounds);
    if (visible.empty() || m_surface->isClear()) return;
    m_kernels.fill(blockAt(visible), 0);
    m_surface->touch();
    m_surface->setOpaque(false);
    if (visible == m_surfaceBox) m_surface->setClear();
}

void Canvas::drawRect(const Rect& rect) {
    const Box box = toBox(rect);
    if (box.empty()) return;
    const Box inner{box.left + 1, box.top + 1, box.right - 1, box.bottom - 1};
    fillBox({box.left, box.top, box.right, box.top + 1});
    if (box.height() > 1) fillBox({box.left, inner.bottom, box.right, box.bottom});
    fillBox({box.left, inner.top, box.left + 1, inner.bottom});
    if (box.width() > 1) fillBox({inner.right, inner.top, box.right, inner.bottom});
}

void Canvas::drawLine(uint32_t x1, uint32_t y1, uint32_t x2, uint32_t y2) {
    const int64_t fromX = signedCoordinate(x1);
    const int64_t fromY = signedCoordinate(y1);
    const int64_t toX = signedCoordinate(x2);
    const int64_t toY = signedCoordinate(y2);
    const Box bounds = boundsOfLine(fromX, fromY, toX, toY);
    if (fromX == toX || fromY == toY) {
        fillBox(bounds);
        return;
    }
    const Box visible = intersection(bounds, m_bounds);
    if (visible.empty() || m_invisible) return;
    const ThinLine line(fromX, fromY, toX, toY);
    line.cover(m_bounds, m_steps);
    for (const Box& end : line.ends()) paintEnd(end, fromX, fromY, toX, toY);
    if (!m_steps.first.empty()) paintSteps(line.isSteep());
    drew(alphaOf(m_source) == 255, false);
}

void Canvas::paintSteps(bool steep) {
    const auto stride = static_cast<ptrdiff_t>(m_surface->stride());
    uint32_t* const pixels =
        steep ? pixelsAt(m_bounds.left, m_steps.begin) : pixelsAt(m_steps.begin, m_bounds.top);
    m_kernels.modes[m_mode].fillBand(
        {pixels, steep ? stride : 1, steep ? 1 : stride, m_steps.first.data(),
         m_steps.coverage.data(), m_steps.first.size()},
        m_source);
}

void Canvas::paintEnd(const Box& end, int64_t x1, int64_t y1, int64_t x2, int64_t y2) {
    const Box visible = intersection(end, m_bounds);
    if (visible.empty()) return;
    m_rasterizer.start(visible);
    addLine(m_rasterizer, x1, y1, x2, y2);
    paintShape();
}

void Canvas::drawEllipse(EllipseStyle style, uint32_t centerX, uint32_t centerY, uint32_t radiusX,
                         uint32_t radiusY, double startAngle, double endAngle) {
    const std::optional<Arc> arc = arcBetween(startAngle, endAngle);
    const int64_t x = signedCoordinate(centerX);
    const int64_t y = signedCoordinate(centerY);
    const Box bounds = boxAt(x - radiusX, y - radiusY, int64_t{2} * radiusX, int64_t{2} * radiusY);
    const Box visible = intersection(bounds, m_bounds);
    if (!arc || visible.empty() || m_invisible) return;
    const Ellipse ellipse{{static_cast<double>(x), static_cast<double>(y)},
                          static_cast<double>(radiusX),
                          static_cast<double>(radiusY)};
    const bool mirrored = arc->whole() && visible == bounds;
    const Arc part = mirrored ? Arc{0, 90} : *arc;
    m_rasterizer.start(mirrored ? Box{x, y, bounds.right, bounds.bottom} : visible);
    if (style == EllipseStyle::fill) {
        addSector(m_rasterizer, ellipse, part);
    } else {
        addArcOutline(m_rasterizer, ellipse, part);
    }
    if (mirrored) {
        paintMirrored();
    } else {
        paintShape();
    }
}

// Each span of the quarter that was rasterised stands for two in each of two rows.
void Canvas::paintMirrored() {
    const FillSpansRow fillSpans = m_kernels.modes[m_mode].fillSpans;
    const Box quarter = m_rasterizer.limits();
    const auto width = static_cast<uint32_t>(quarter.width());
    m_spans.reserve(2 * static_cast<size_t>(width));
    m_rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& right) {
        m_spans.clear();
        for (auto span = right.rbegin(); span != right.rend(); ++span) {
            m_spans.push_back({width - span->x - span->length, span->length, span->coverage});
        }
        auto from = right.begin();
        if (from->x == 0) {
            m_spans.back().length *= 2;
            ++from;
        }
        for (; from != right.end(); ++from) {
            m_spans.push_back({width + from->x, from->length, from->coverage});
        }
        const int64_t left = quarter.left - width;
        const int64_t opposite = 2 * quarter.top - 1 - y;
        fillSpans(pixelsAt(left, y), m_spans.data(), m_spans.size(), m_source);
        fillSpans(pixelsAt(left, opposite), m_spans.data(), m_spans.size(), m_source);
    });
    drew(alphaOf(m_source) == 255, false);
}

void Canvas::paintShape() {
    const FillSpansRow fillSpans = m_kernels.modes[m_mode].fillSpans;
    const int64_t left = m_rasterizer.limits().left;
    m_rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& spans) {
        fillSpans(pixelsAt(left, y), spans.data(), spans.size(), m_source);
    });
    drew(alphaOf(m_source) == 255, false);
}

}  // namespace quiravent::desktop
