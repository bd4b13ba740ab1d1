#include "media/SubtitlePainter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/Canvas.h"
#include "graphics/text/FontLoader.h"

namespace quiravent::desktop {

namespace {

constexpr int64_t kLinesInPicture = 18;
/// Lines with places of their own stand in a grid of 15 rows in the middle four fifths.
constexpr int64_t kPlacedLinesInPicture = 22;
constexpr uint32_t kSmallestText = 8;
constexpr Color kText{255, 255, 255, 255};
constexpr Color kEdge{0, 0, 0, 255};
constexpr Color kNoBackground{0, 0, 0, 0};
constexpr uint32_t kAlignCentre = 1;
constexpr uint32_t kAlignBottom = 3;

Rect rectOf(const Box& area, const FilledArea& filled) {
    const auto across = [&](double part) {
        return area.left + std::llround(part * static_cast<double>(area.width()));
    };
    const auto down = [&](double part) {
        return area.top + std::llround(part * static_cast<double>(area.height()));
    };
    const int64_t left = across(filled.left);
    const int64_t top = down(filled.top);
    return {static_cast<uint32_t>(left), static_cast<uint32_t>(top),
            static_cast<uint32_t>(across(filled.right) - left),
            static_cast<uint32_t>(down(filled.bottom) - top)};
}

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
    Canvas canvas(surface);
    for (const FilledArea& filled : cue.areas) {
        canvas.setColor(filled.color);
        canvas.fillRect(rectOf(area, filled));
    }
    for (const SubtitleBitmap& bitmap : cue.bitmaps) paintBitmap(bitmap, cue, surface, area);
    if (!cue.lines.empty() && prepareFont(area, kLinesInPicture))
        paintUsualLines(cue, surface, area);
    if (cue.placedLines.empty() || !prepareFont(area, kPlacedLinesInPicture)) return;
    for (const PlacedLine& line : cue.placedLines) paintPlacedLine(line, surface, area);
}

bool SubtitlePainter::prepareFont(const Box& area, int64_t linesInPicture) {
    const auto height = static_cast<uint32_t>(
        std::clamp<int64_t>(area.height() / linesInPicture, kSmallestText, Font::kMaxPixelHeight));
    return fontOf(height) != nullptr;
}

void SubtitlePainter::paintUsualLines(const SubtitleCue& cue,
                                      const std::shared_ptr<Surface>& surface, const Box& area) {
    Place place{static_cast<int32_t>((area.left + area.right) / 2),
                static_cast<int32_t>(area.bottom - area.height() / 20),
                {kAlignCentre, kAlignBottom}};
    for (auto line = cue.lines.rbegin(); line != cue.lines.rend(); ++line) {
        paintLine({*line, kText, kNoBackground}, surface, place);
        place.bottom -= static_cast<int32_t>(m_font->metrics().lineHeight);
    }
}

void SubtitlePainter::paintPlacedLine(const PlacedLine& line,
                                      const std::shared_ptr<Surface>& surface, const Box& area) {
    int64_t width = 0;
    for (const StyledText& piece : line.pieces) width += m_font->advance(piece.text) / 64;
    int64_t x = area.left + std::llround(line.x * static_cast<double>(area.width()));
    if (line.anchor == PlacedLine::Anchor::centre) x -= width / 2;
    if (line.anchor == PlacedLine::Anchor::right) x -= width;
    // Rather moved than cut off.
    x = std::max(area.left, std::min(x, area.right - width));
    const auto bottom = area.top + std::llround(line.bottom * static_cast<double>(area.height()));
    for (const StyledText& piece : line.pieces) {
        paintLine(piece, surface,
                  {static_cast<int32_t>(x), static_cast<int32_t>(bottom), {0, kAlignBottom}});
        x += m_font->advance(piece.text) / 64;
    }
}

void SubtitlePainter::paintLine(const StyledText& text, const std::shared_ptr<Surface>& surface,
                                const Place& place) {
    Canvas canvas(surface);
    const Box whole{0, 0, surface->width(), surface->height()};
    if (text.background.alpha != 0) {
        const TextSize size = m_font->measure(text.text);
        canvas.setColor(text.background);
        canvas.fillRect({static_cast<uint32_t>(place.x),
                         static_cast<uint32_t>(place.bottom) - size.height, size.width,
                         size.height});
    }
    const auto draw = [&](int32_t dx, int32_t dy) {
        const GlyphRun run =
            m_font->layout(text.text, place.x + dx, place.bottom + dy, place.alignment);
        canvas.drawMasks(run.masks().data(), run.masks().size(), whole);
    };
    const auto edge = static_cast<int32_t>(std::max<uint32_t>(m_pixelHeight / 20, 1));
    canvas.setColor({kEdge.red, kEdge.green, kEdge.blue, text.color.alpha});
    for (int32_t dy = -edge; dy <= edge; dy += edge)
        for (int32_t dx = -edge; dx <= edge; dx += edge)
            if (dx != 0 || dy != 0) draw(dx, dy);
    canvas.setColor(text.color);
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
