#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "graphics/text/GlyphStore.h"
#include "graphics/text/TextPlacement.h"
#include "support/Result.h"

struct FT_FaceRec_;
struct FT_LibraryRec_;

namespace quiravent::desktop {

/// Draws unhinted, anti-aliased glyphs of one face at one size. Has a FreeType library of its own,
/// so that fonts share nothing; not thread-safe.
class GlyphRasteriser {
  public:
    /// The data is read for as long as the rasteriser lives, and belongs to the caller.
    static Result<std::unique_ptr<GlyphRasteriser>> create(const uint8_t* data, size_t size,
                                                           uint32_t pixelHeight);

    const FontMetrics& metrics() const { return m_metrics; }

    /// Pixels that no glyph's ink reaches beyond, measured from its pen in any direction, as the
    /// font declares.
    int32_t reach() const { return m_reach; }

    /// A glyph that is broken, has no ink, or would be absurdly large, is an empty bitmap.
    GlyphBitmap draw(GlyphKey key);

  private:
    struct CloseFace {
        void operator()(FT_FaceRec_* face) const;
    };
    struct CloseLibrary {
        void operator()(FT_LibraryRec_* library) const;
    };
    using Library = std::unique_ptr<FT_LibraryRec_, CloseLibrary>;
    using Face = std::unique_ptr<FT_FaceRec_, CloseFace>;

    GlyphRasteriser(Library library, Face face);

    Library m_library;
    Face m_face;
    FontMetrics m_metrics;
    int32_t m_reach;
};

}  // namespace quiravent::desktop
