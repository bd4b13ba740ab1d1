#include "graphics/Canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/KernelSets.h"
#include "graphics/PixelMath.h"

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
    paint(m_share->shapes.line(fromX, fromY, toX, toY, visible), visible.left, visible.top);
}

void Canvas::drawEllipse(EllipseStyle style, uint32_t centerX, uint32_t centerY, uint32_t radiusX,
                         uint32_t radiusY, double startAngle, double endAngle) {
    const std::optional<Arc> arc = arcBetween(startAngle, endAngle);
    const Point center{static_cast<double>(signedCoordinate(centerX)),
                       static_cast<double>(signedCoordinate(centerY))};
    const Ellipse ellipse{center, static_cast<double>(radiusX), static_cast<double>(radiusY)};
    const Box visible = intersection(boundsOfEllipse(ellipse), m_bounds);
    if (!arc || visible.empty() || m_invisible) return;
    paint(m_share->shapes.ellipse(style, ellipse, *arc, visible), visible.left, visible.top);
}

bool Canvas::drawShape(const CoverageShape& shape, const Box& box) {
    if (!(intersection(box, m_bounds) == box)) return false;
    if (!m_invisible) paint(shape, box.left, box.top);
    return true;
}

void Canvas::paint(const CoverageShape& shape, int64_t left, int64_t top) {
    // Blocks reach beyond a shape that is narrower, and maybe beyond the surface.
    const bool narrow = shape.width() < CoverageBlock::kPixels;
    const Kernels& kernels = narrow ? kScalarKernels : m_kernels;
    uint32_t* const corner = pixelsAt(left, top);
    const size_t stride = m_surface->stride();
    kernels.modes[m_mode].fillBlocks(corner, stride, shape.blocks().data(), shape.blocks().size(),
                                     m_source);
    for (const CoverageShape::SolidRun& run : shape.runs()) {
        m_fill({corner + run.y * stride + run.x, 0, run.length, 1}, m_source);
    }
    drew(alphaOf(m_source) == 255, false);
}

}  // namespace quiravent::desktop
