#include "media/SubtitlePainter.h"

#include <algorithm>
#include <utility>

#include "graphics/Canvas.h"
#include "graphics/text/FontLoader.h"

namespace quiravent::desktop {

namespace {

constexpr int64_t kLinesInPicture = 18;
constexpr uint32_t kSmallestText = 8;
constexpr Color kText{255, 255, 255, 255};
constexpr Color kEdge{0, 0, 0, 255};
constexpr uint32_t kAlignCentre = 1;
constexpr uint32_t kAlignBottom = 3;

}  // namespace

Font* SubtitlePainter::fontOf(uint32_t pixelHeight) {
    if (m_pixelHeight == pixelHeight) return m_font.get();
    m_pixelHeight = pixelHeight;
    Result<std::shared_ptr<Font>> font = loadFont(m_fontFile, pixelHeight);
    m_font = font ? std::move(*font) : nullptr;
    return m_font.get();
}

void SubtitlePainter::paint(const SubtitleCue& cue, const std::shared_ptr<Surface>& surface,
                            const Box& area) {
    for (const SubtitleBitmap& bitmap : cue.bitmaps) paintBitmap(bitmap, cue, surface, area);
    if (cue.lines.empty()) return;
    const auto height = static_cast<uint32_t>(
        std::clamp<int64_t>(area.height() / kLinesInPicture, kSmallestText, Font::kMaxPixelHeight));
    Font* const font = fontOf(height);
    if (font == nullptr) return;
    const auto centre = static_cast<int32_t>((area.left + area.right) / 2);
    auto bottom = static_cast<int32_t>(area.bottom - area.height() / 20);
    for (auto line = cue.lines.rbegin(); line != cue.lines.rend(); ++line) {
        paintLine(*line, surface, centre, bottom);
        bottom -= static_cast<int32_t>(font->metrics().lineHeight);
    }
}

void SubtitlePainter::paintLine(const std::string& line, const std::shared_ptr<Surface>& surface,
                                int32_t x, int32_t bottom) {
    Canvas canvas(surface);
    const TextAlignment alignment{kAlignCentre, kAlignBottom};
    const Box whole{0, 0, surface->width(), surface->height()};
    const auto draw = [&](int32_t dx, int32_t dy) {
        const GlyphRun run = m_font->layout(line, x + dx, bottom + dy, alignment);
        canvas.drawMasks(run.masks().data(), run.masks().size(), whole);
    };
    const auto edge = static_cast<int32_t>(std::max<uint32_t>(m_pixelHeight / 20, 1));
    canvas.setColor(kEdge);
    for (int32_t dy = -edge; dy <= edge; dy += edge)
        for (int32_t dx = -edge; dx <= edge; dx += edge)
            if (dx != 0 || dy != 0) draw(dx, dy);
    canvas.setColor(kText);
    draw(0, 0);
}

void SubtitlePainter::paintBitmap(const SubtitleBitmap& bitmap, const SubtitleCue& cue,
                                  const std::shared_ptr<Surface>& surface, const Box& area) {
    const std::shared_ptr<Surface> source = m_pool.create(bitmap.width, bitmap.height);
    if (!source) return;
    for (uint32_t y = 0; y < bitmap.height; ++y)
        std::copy_n(bitmap.pixels.data() + size_t{y} * bitmap.width, bitmap.width, source->row(y));
    const int64_t width = cue.areaWidth != 0 ? cue.areaWidth : area.width();
    const int64_t height = cue.areaHeight != 0 ? cue.areaHeight : area.height();
    const auto across = [&](int64_t x) { return area.left + x * area.width() / width; };
    const auto down = [&](int64_t y) { return area.top + y * area.height() / height; };
    const int64_t left = across(bitmap.x);
    const int64_t top = down(bitmap.y);
    const Rect destination{static_cast<uint32_t>(left), static_cast<uint32_t>(top),
                           static_cast<uint32_t>(across(bitmap.x + bitmap.width) - left),
                           static_cast<uint32_t>(down(bitmap.y + bitmap.height) - top)};
    Canvas(surface).composeScaled(*source, destination);
}

}  // namespace quiravent::desktop
