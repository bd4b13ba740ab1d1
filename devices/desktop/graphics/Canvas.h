#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/CanvasShare.h"
#include "graphics/CoverageMask.h"
#include "graphics/Geometry.h"
#include "graphics/Kernels.h"
#include "graphics/Pixmap.h"
#include "graphics/Rotation.h"
#include "graphics/Scaler.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// A colour that isn't premultiplied.
struct Color {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t alpha;
};

/// A surface and what a script sets before it draws on it.
///
/// Everything drawn is bounded by the clip and the surface. Within a shape the source pixel is
/// multiplied by the opacity, combined with the surface's pixel in the Porter-Duff mode, and
/// replaces it in the proportion in which the shape covers the pixel; outside of the shape nothing
/// changes, in no mode.
///
/// Coordinates are pixels from the top left corner, y down, and may have any value: time and
/// memory depend on what is visible. Each operation that draws raises Surface::generation and
/// keeps Surface::isOpaque true to the pixels. It may throw std::bad_alloc, having drawn nothing.
///
/// A canvas doesn't lock: the caller orders all calls on one canvas and all accesses to the
/// surfaces that take part.
class Canvas {
  public:
    /// Starts in opaque white, with the whole surface as clip, opacity 1, no rotation and
    /// source-over. The surface must not be null.
    /// share: for all canvases of one drawing thread; null: one of its own, which draws alone and
    /// keeps nothing.
    explicit Canvas(std::shared_ptr<Surface> surface, std::shared_ptr<CanvasShare> share = nullptr);

    const std::shared_ptr<Surface>& surface() const { return m_surface; }

    const Color& color() const { return m_color; }
    void setColor(const Color& color);

    /// The clip as it was set, even where it reaches beyond the surface.
    const Rect& clip() const { return m_clip; }
    void setClip(const Rect& clip);

    /// 0 (nothing is seen) to 1; what lies beyond is held to that range. False, with nothing
    /// changed, if it isn't a number.
    bool setOpacity(double opacity);

    /// Degrees clockwise, by which pictures and texts are turned about the centre of where they
    /// would lie; shapes aren't turned. False, with nothing changed, unless finite.
    bool setRotation(double degrees);

    /// By the codes of kPorterDuff; any other code means source-over.
    void setPorterDuff(uint32_t code);

    void fillRect(const Rect& rect);
    /// Makes all pixels transparent, whatever opacity and mode are set.
    void clearRect(const Rect& rect);
    /// The outermost pixels of the rectangle, each painted once.
    void drawRect(const Rect& rect);

    /// From pixel to pixel, both included, one pixel wide; coordinates are signed as in Rect.
    void drawLine(uint32_t x1, uint32_t y1, uint32_t x2, uint32_t y2);

    /// The centre is a corner between pixels, so that a filled ellipse covers the columns from
    /// centerX - radiusX up to, without, centerX + radiusX. Angles are in degrees clockwise from
    /// three o'clock, those of a circle that is stretched into the ellipse; the arc goes from
    /// startAngle until endAngle follows, and is whole when they are 360 degrees or more apart.
    /// Equal angles or one that isn't finite draw nothing.
    void drawEllipse(EllipseStyle style, uint32_t centerX, uint32_t centerY, uint32_t radiusX,
                     uint32_t radiusY, double startAngle, double endAngle);

    /// Draws the source, or a part of it, with its corner at (x, y). The source may be this
    /// canvas's own surface: what is drawn is then the surface as it was before.
    void compose(const Surface& source, uint32_t x, uint32_t y, const Rect* part = nullptr);

    /// Draws the source, or a part of it, over the destination rectangle. A part that reaches
    /// beyond the source draws only what exists of it, over the pixels that correspond to it.
    void composeScaled(const Surface& source, const Rect& destination, const Rect* part = nullptr);

    /// Paints each mask in the current colour, in order. `bounds` is the text's logical rectangle
    /// on the surface, about whose centre rotation turns the masks together. The bytes must not
    /// change meanwhile.
    void drawMasks(const CoverageMask* masks, size_t count, const Box& bounds);

    /// Paints a shape in the current colour, unturned, with its columns and rows at those of the
    /// box. False, with nothing drawn, unless all of the box lies within the clip.
    bool drawShape(const CoverageShape& shape, const Box& box);

  private:
    void resolvePaint();
    bool transparentIsIgnored() const { return ignoresTransparent(kPorterDuff[m_mode]); }
    bool sourceIsOpaque(bool opaque) const { return opaque && m_opacity == 255; }
    void drew(bool sourceOpaque, bool wholeSurface);

    void fillBox(const Box& box);
    void paint(const CoverageShape& shape, int64_t left, int64_t top);

    void place(const Surface& source, const Placement& placement);
    void blit(const Surface& source, const Placement& placement);
    void copyRows(const PixelView& source, const Box& visible, int64_t dx, int64_t dy);
    bool drawKept(const Surface& source, const Placement& placement);
    void drawScaled(const PixelView& source, const Placement& placement);
    void drawRotated(const PixelView& source, const Placement& placement);
    void drawSampled(const PixelView& source, const Placement& placement);
    void drawMask(const CoverageMask& mask);
    void drawRotatedMask(const CoverageMask& mask, const Box& bounds, Rotation& rotation);
    ComposeRow composeRowFor(bool opaqueSource) const;

    uint32_t* pixelsAt(int64_t x, int64_t y) {
        return m_surface->row(static_cast<uint32_t>(y)) + x;
    }
    PixelBlock blockAt(const Box& box) {
        return {pixelsAt(box.left, box.top), m_surface->stride(), static_cast<size_t>(box.width()),
                static_cast<size_t>(box.height())};
    }

    std::shared_ptr<Surface> m_surface;
    std::shared_ptr<CanvasShare> m_share;
    Box m_surfaceBox;
    const Kernels& m_kernels;

    Color m_color{255, 255, 255, 255};
    Rect m_clip;
    uint32_t m_opacity = 255;
    uint32_t m_mode = kSourceOver;
    bool m_rotated = false;
    Point m_direction{1, 0};

    // What follows from the state above, worked out when that is set.
    Box m_bounds;
    uint32_t m_premultiplied = 0xFFFFFFFF;
    uint32_t m_source = 0xFFFFFFFF;
    Fill m_fill;
    bool m_invisible = false;  // the colour changes nothing in this mode

    // Working memory, kept from one operation to the next.
    std::vector<uint32_t> m_line;  // one for each worker
    std::vector<uint8_t> m_coverage;
};

}  // namespace quiravent::desktop
