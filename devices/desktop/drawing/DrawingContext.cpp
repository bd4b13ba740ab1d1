#include "drawing/DrawingContext.h"

#include <cmath>

namespace quiravent::desktop {

namespace {

constexpr int64_t kUnitsPerPixel = 64;

int64_t floorToPixels(int64_t units) {
    return (units >= 0 ? units : units - (kUnitsPerPixel - 1)) / kUnitsPerPixel;
}

/// The rectangle that the text spans, whatever ink its glyphs have: what it is turned about.
Box textBox(const FontMetrics& metrics, TextOrigin origin, int64_t advance) {
    const int64_t left = floorToPixels(origin.x);
    const int64_t right = floorToPixels(origin.x + advance + kUnitsPerPixel - 1);
    return {left, int64_t{origin.baseline} - metrics.ascent, right,
            int64_t{origin.baseline} + metrics.descent};
}

}  // namespace

bool DrawingContext::setRotation(double degrees) {
    if (!m_canvas.setRotation(degrees)) return false;
    m_rotated = std::fmod(degrees, 360.0) != 0.0;
    return true;
}

e_pl_status DrawingContext::measureText(std::string_view text, TextSize& size) const {
    const std::shared_ptr<Font> font = m_font.lock();
    if (!font) return e_pl_status_wrong_state;
    size = font->measure(text);
    return e_pl_status_ok;
}

e_pl_status DrawingContext::drawText(uint32_t x, uint32_t y, std::string_view text) {
    const std::shared_ptr<Font> font = m_font.lock();
    if (!font) return e_pl_status_wrong_state;
    const TextOrigin origin =
        font->originOf(text, static_cast<int32_t>(x), static_cast<int32_t>(y), m_alignment);
    if (!m_rotated && drawRepeated(*font, text, origin)) return e_pl_status_ok;
    const GlyphRun run = font->layout(text, origin, visibleArea());
    const int64_t advance = m_rotated ? font->advance(text) : 0;
    m_canvas.drawMasks(run.masks().data(), run.masks().size(),
                       textBox(font->metrics(), origin, advance));
    return e_pl_status_ok;
}

bool DrawingContext::drawRepeated(Font& font, std::string_view text, TextOrigin origin) {
    const auto shape = font.repeated(text, origin);
    if (!shape) return false;
    const Box box = shape->box.shifted(floorToPixels(origin.x), origin.baseline);
    return m_canvas.drawShape(shape->coverage, box);
}

/// Glyphs outside of it are not laid out. Rotation may bring any glyph onto the surface.
PixelArea DrawingContext::visibleArea() const {
    if (m_rotated) return Font::kEverywhere;
    const Box whole = boxAt(0, 0, surface().width(), surface().height());
    const Box visible = intersection(whole, toBox(m_canvas.clip()));
    if (visible.empty()) return {0, 0, 0, 0};
    return {static_cast<int32_t>(visible.left), static_cast<int32_t>(visible.top),
            static_cast<int32_t>(visible.right), static_cast<int32_t>(visible.bottom)};
}

}  // namespace quiravent::desktop
