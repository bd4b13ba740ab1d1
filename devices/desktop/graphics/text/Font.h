#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/CoverageMask.h"
#include "graphics/text/GlyphStore.h"
#include "graphics/text/TextPlacement.h"
#include "graphics/text/TextShape.h"
#include "graphics/text/TextShaper.h"
#include "resources/Resource.h"
#include "support/HashMix.h"
#include "support/RecentlyUsed.h"
#include "support/Result.h"

namespace quiravent::desktop {

class GlyphRasteriser;

/// The masks of a text, ready to be painted. Keeps their coverage alive, also beyond its font.
class GlyphRun {
  public:
    const std::vector<CoverageMask>& masks() const& { return m_masks; }
    void masks() && = delete;  // the masks and their coverage would be gone at once

  private:
    friend class Font;
    std::vector<CoverageMask> m_masks;
    std::vector<std::shared_ptr<const GlyphStore>> m_stores;
};

/// One face at one size. Texts are UTF-8 on one line: bytes that aren't well-formed show as U+FFFD,
/// control characters and line separators as spaces, characters that the font lacks as its
/// ".notdef" glyph. Glyphs are unhinted, at quarters of a pixel across and whole pixels down.
///
/// Thread-safe by one lock per font. Memory is bounded whatever is drawn: a few megabytes of
/// glyphs, and as much of texts. A text of more than 4096 characters is shaped in pieces, cut at
/// spaces where there are any, and its pieces stand from left to right.
class Font {
  public:
    static constexpr uint32_t kMaxPixelHeight = 255;

    /// From the bytes of a TrueType or OpenType file or of a collection, whose first face is
    /// taken; `pixelHeight`, 1 to kMaxPixelHeight, is that of the em square.
    static Result<std::shared_ptr<Font>> load(Bytes data, uint32_t pixelHeight);

    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    const FontMetrics& metrics() const { return m_metrics; }

    /// Sum of the advances, in 64ths of a pixel.
    int64_t advance(std::string_view text);

    /// The advance, rounded up to whole pixels, and ascent + descent.
    TextSize measure(std::string_view text);

    /// Everything within 2^29 pixels of the surface's corner.
    static constexpr PixelArea kEverywhere{-(1 << 29), -(1 << 29), 1 << 29, 1 << 29};

    /// The glyphs of the text from that origin on whose bitmaps touch the visible area, in the
    /// order of the text. A caller that gives its clip is spared what lies outside.
    GlyphRun layout(std::string_view text, TextOrigin origin,
                    const PixelArea& visible = kEverywhere);

    /// The same for a text aligned about (x, y): see alignedOrigin().
    GlyphRun layout(std::string_view text, int32_t x, int32_t y, TextAlignment alignment,
                    const PixelArea& visible = kEverywhere);

    /// Where the pen starts for that.
    TextOrigin originOf(std::string_view text, int32_t x, int32_t y, TextAlignment alignment);

    /// What layout() gives, put together, from the second time on that a text is asked for at a
    /// place within a pixel. Null the first time, and for texts that are better painted by glyphs.
    std::shared_ptr<const TextShape> repeated(std::string_view text, TextOrigin origin);

  private:
    Font(Bytes data, std::unique_ptr<GlyphRasteriser> rasteriser,
         std::unique_ptr<TextShaper> shaper);

    using Piece = std::shared_ptr<const ShapedText>;
    /// Calls `visit` with the pieces of the text in turn until it returns false.
    template <class Visit>
    void forEachPiece(std::string_view text, const Visit& visit);
    /// What is kept of a text that is short enough to be shaped at once.
    struct Line {
        Piece shaped;
        bool drawn = false;      ///< then what follows is of its place within a pixel
        uint32_t fraction = 0;   ///< of the origin, in 64ths of a pixel
        bool bySingles = false;  ///< the text has no shape
        std::shared_ptr<const TextShape> shape;
    };
    /// Valid until the next call.
    Line& lineOf(std::string_view text);
    std::shared_ptr<const TextShape> assemble(const Line& line);
    static size_t byteSizeOf(std::string_view text, const Line& line);
    void addPiece(const ShapedText& piece, TextOrigin origin, const PixelArea& visible,
                  GlyphRun& run);
    const GlyphBitmap& bitmapFor(GlyphKey key);

    const Bytes m_data;
    std::mutex m_mutex;
    const std::unique_ptr<GlyphRasteriser> m_rasteriser;
    const std::unique_ptr<TextShaper> m_shaper;
    const FontMetrics m_metrics;
    RecentlyUsed<std::string, Line, std::string_view, TextHash> m_lines;
    std::shared_ptr<GlyphStore> m_glyphs;
};

}  // namespace quiravent::desktop
