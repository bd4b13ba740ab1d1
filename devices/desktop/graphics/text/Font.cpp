#include "Font.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "graphics/text/GlyphRasteriser.h"
#include "graphics/text/SfntDirectory.h"
#include "graphics/text/TextPieces.h"
#include "graphics/text/textUnits.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kGlyphBudgetBytes = size_t{4} << 20;
constexpr size_t kLineBudgetBytes = size_t{4} << 20;

int64_t floorDivided(int64_t value, int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

int64_t nearest(int64_t value, int64_t divisor) {
    return floorDivided(value + divisor / 2, divisor);
}

PixelArea withinLimits(const PixelArea& area) {
    const PixelArea& limits = Font::kEverywhere;
    return {std::max(area.left, limits.left), std::max(area.top, limits.top),
            std::min(area.right, limits.right), std::min(area.bottom, limits.bottom)};
}

bool overlaps(int64_t begin, int64_t length, int32_t visibleBegin, int32_t visibleEnd) {
    return begin < visibleEnd && begin + length > visibleBegin;
}

/// The pen of a glyph: a pixel, and a quarter of one across.
struct Pen {
    Pen(TextOrigin origin, const ShapedGlyph& glyph)
        : Pen(nearest(origin.x + glyph.x, kUnitsPerQuarter),
              origin.baseline + nearest(glyph.y, kUnitsPerPixel)) {}
    Pen(int64_t quarters, int64_t line)
        : x(floorDivided(quarters, 4)), y(line), quarter(static_cast<uint32_t>(quarters - x * 4)) {}

    bool isWithin(int32_t reach, const PixelArea& area) const {
        return overlaps(x - reach, 2 * int64_t{reach}, area.left, area.right) &&
               overlaps(y - reach, 2 * int64_t{reach}, area.top, area.bottom);
    }

    int64_t x;
    int64_t y;
    uint32_t quarter;
};

bool isVisible(const Pen& pen, const GlyphBitmap& bitmap, const PixelArea& area) {
    return bitmap.height > 0 &&
           overlaps(pen.x + bitmap.left, bitmap.width, area.left, area.right) &&
           overlaps(pen.y + bitmap.top, bitmap.height, area.top, area.bottom);
}

/// Only for what is visible, whose coordinates thus fit.
CoverageMask maskAt(const Pen& pen, const GlyphBitmap& bitmap) {
    return {static_cast<int32_t>(pen.x + bitmap.left),
            static_cast<int32_t>(pen.y + bitmap.top),
            bitmap.width,
            bitmap.height,
            bitmap.width,
            bitmap.coverage.get()};
}

}  // namespace

Result<std::shared_ptr<Font>> Font::load(Bytes data, uint32_t pixelHeight) {
    if (pixelHeight == 0 || pixelHeight > kMaxPixelHeight)
        return Failure{"a font of " + std::to_string(pixelHeight) + " pixels; possible are 1 to " +
                       std::to_string(kMaxPixelHeight)};
    if (const auto fault = findSfntFault(data.data(), data.size())) return *fault;
    auto rasteriser = GlyphRasteriser::create(data.data(), data.size(), pixelHeight);
    if (!rasteriser) return Failure{rasteriser.reason()};
    auto shaper = TextShaper::create(data.data(), data.size(), pixelHeight);
    if (!shaper) return Failure{shaper.reason()};
    // Moving the bytes leaves them where they are, and thus the pointers of the two valid.
    return std::shared_ptr<Font>(
        new Font(std::move(data), std::move(*rasteriser), std::move(*shaper)));
}

Font::Font(Bytes data, std::unique_ptr<GlyphRasteriser> rasteriser,
           std::unique_ptr<TextShaper> shaper)
    : m_data(std::move(data)),
      m_rasteriser(std::move(rasteriser)),
      m_shaper(std::move(shaper)),
      m_metrics(m_rasteriser->metrics()),
      m_lines(kLineBudgetBytes),
      m_glyphs(std::make_shared<GlyphStore>()) {}

Font::~Font() = default;

template <class Visit>
void Font::forEachPiece(std::string_view text, const Visit& visit) {
    if (text.empty()) return;
    if (text.size() <= kMaxPieceLength) {
        visit(lineOf(text).shaped);
        return;
    }
    // Long texts are seldom drawn twice and would drive everything else out of the cache.
    while (!text.empty())
        if (!visit(std::make_shared<const ShapedText>(m_shaper->shape(takePiece(text))))) return;
}

int64_t Font::advance(std::string_view text) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    int64_t sum = 0;
    forEachPiece(text, [&sum](const Piece& piece) {
        sum += piece->advance;
        return true;
    });
    return sum;
}

TextSize Font::measure(std::string_view text) {
    const int64_t pixels = -floorDivided(-advance(text), kUnitsPerPixel);
    constexpr int64_t kWidest = std::numeric_limits<uint32_t>::max();
    return {static_cast<uint32_t>(std::clamp<int64_t>(pixels, 0, kWidest)), m_metrics.height()};
}

GlyphRun Font::layout(std::string_view text, TextOrigin origin, const PixelArea& visible) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const PixelArea area = withinLimits(visible);
    GlyphRun run;
    forEachPiece(text, [&](const Piece& piece) {
        addPiece(*piece, origin, area, run);
        origin.x += piece->advance;
        return floorDivided(origin.x, kUnitsPerPixel) - m_rasteriser->reach() < area.right;
    });
    return run;
}

GlyphRun Font::layout(std::string_view text, int32_t x, int32_t y, TextAlignment alignment,
                      const PixelArea& visible) {
    return layout(text, originOf(text, x, y, alignment), visible);
}

TextOrigin Font::originOf(std::string_view text, int32_t x, int32_t y, TextAlignment alignment) {
    const bool dependsOnWidth = alignment.horizontal == 1 || alignment.horizontal == 2;
    const int64_t width = dependsOnWidth ? advance(text) : 0;
    return alignedOrigin(m_metrics, width, x, y, alignment);
}

std::shared_ptr<const TextShape> Font::repeated(std::string_view text, TextOrigin origin) {
    if (text.empty() || text.size() > kMaxPieceLength) return nullptr;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Line& line = lineOf(text);
    const auto fraction = static_cast<uint32_t>(origin.x & (kUnitsPerPixel - 1));
    if (!line.drawn || line.fraction != fraction) {
        line = {line.shaped, true, fraction, false, nullptr};
        m_lines.resizeLast(byteSizeOf(text, line));
        return nullptr;
    }
    if (line.shape || line.bySingles) return line.shape;
    auto shape = assemble(line);
    line.shape = shape;
    line.bySingles = !shape;
    m_lines.resizeLast(byteSizeOf(text, line));
    return shape;
}

std::shared_ptr<const TextShape> Font::assemble(const Line& line) {
    GlyphRun run;
    addPiece(*line.shaped, {line.fraction, 0}, kEverywhere, run);
    return textShapeOf(run.masks());
}

Font::Line& Font::lineOf(std::string_view text) {
    if (Line* known = m_lines.find(text)) return *known;
    std::string_view rest = text;
    Line line;
    line.shaped = std::make_shared<const ShapedText>(m_shaper->shape(takePiece(rest)));
    const size_t byteSize = byteSizeOf(text, line);
    return m_lines.add(std::string(text), std::move(line), byteSize);
}

size_t Font::byteSizeOf(std::string_view text, const Line& line) {
    const size_t glyphs = line.shaped->glyphs.capacity() * sizeof(ShapedGlyph);
    return text.size() + glyphs + (line.shape ? line.shape->coverage.byteSize() : 0);
}

void Font::addPiece(const ShapedText& piece, TextOrigin origin, const PixelArea& visible,
                    GlyphRun& run) {
    for (const ShapedGlyph& glyph : piece.glyphs) {
        const Pen pen(origin, glyph);
        if (!pen.isWithin(m_rasteriser->reach(), visible)) continue;
        const GlyphBitmap& bitmap = bitmapFor({glyph.glyph, pen.quarter});
        if (!isVisible(pen, bitmap, visible)) continue;
        run.m_masks.push_back(maskAt(pen, bitmap));
        if (run.m_stores.empty() || run.m_stores.back() != m_glyphs)
            run.m_stores.push_back(m_glyphs);
    }
}

const GlyphBitmap& Font::bitmapFor(GlyphKey key) {
    if (const GlyphBitmap* known = m_glyphs->find(key)) return *known;
    // Runs that still point into the full store keep it alive.
    if (m_glyphs->byteSize() > kGlyphBudgetBytes) m_glyphs = std::make_shared<GlyphStore>();
    return m_glyphs->add(key, m_rasteriser->draw(key));
}

}  // namespace quiravent::desktop
