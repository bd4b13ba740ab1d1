#pragma once

#include <memory>
#include <string_view>

#include "graphics/Canvas.h"
#include "graphics/text/Font.h"
#include "porting/pl_status.h"

namespace quiravent::desktop {

/// What a canvas handle stands for: a surface with its drawing state, that of text included. Not
/// thread-safe.
class DrawingContext {
  public:
    /// See Canvas.
    DrawingContext(std::shared_ptr<Surface> surface, std::shared_ptr<CanvasShare> share)
        : m_canvas(std::move(surface), std::move(share)) {}

    Canvas& canvas() { return m_canvas; }
    const Surface& surface() const { return *m_canvas.surface(); }

    /// See Canvas::setRotation.
    bool setRotation(double degrees);

    /// The font isn't kept: once it is released text calls give e_pl_status_wrong_state, as they
    /// do before there is one.
    void setFont(const std::shared_ptr<Font>& font) { m_font = font; }
    void setTextAlignment(TextAlignment alignment) { m_alignment = alignment; }

    e_pl_status measureText(std::string_view text, TextSize& size) const;

    /// x, y: where the alignment puts the text; signed as in Rect.
    e_pl_status drawText(uint32_t x, uint32_t y, std::string_view text);

  private:
    PixelArea visibleArea() const;
    /// Draws a text at once that is drawn again; false if it isn't, or not all of it is visible.
    bool drawRepeated(Font& font, std::string_view text, TextOrigin origin);

    Canvas m_canvas;
    std::weak_ptr<Font> m_font;
    TextAlignment m_alignment;
    bool m_rotated = false;
};

}  // namespace quiravent::desktop
