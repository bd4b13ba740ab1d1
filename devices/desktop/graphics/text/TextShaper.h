#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/Result.h"

struct hb_buffer_t;
struct hb_font_t;

namespace quiravent::desktop {

/// A glyph and its pen position from the start of the text on the baseline, in 64ths of a pixel.
struct ShapedGlyph {
    uint32_t glyph;
    int32_t y;  ///< downwards
    int64_t x;
};

/// The glyphs of a text in the order in which they stand from left to right.
struct ShapedText {
    std::vector<ShapedGlyph> glyphs;
    int64_t advance = 0;  ///< 64ths of a pixel
};

/// Turns characters into placed glyphs: kerning, ligatures, marks. Direction, script and language
/// are those of the first character that has any, for the whole text; language-specific forms are
/// not chosen, so that the result doesn't depend on the locale. Not thread-safe.
class TextShaper {
  public:
    /// The data is that of a whole font file, of which the first face counts; read for as long as
    /// the shaper lives, and belonging to the caller.
    static Result<std::unique_ptr<TextShaper>> create(const uint8_t* data, size_t size,
                                                      uint32_t pixelHeight);

    /// Has the shaping library make what all shapers share. It frees that when the process exits:
    /// after whatever is registered for the exit behind this call, which can end all shaping first.
    static void prepare();

    /// A text that memory doesn't suffice for has no glyphs.
    ShapedText shape(const std::u32string& characters);

  private:
    struct Destroy {
        void operator()(hb_buffer_t* buffer) const;
        void operator()(hb_font_t* font) const;
    };
    using HarfBuzzFont = std::unique_ptr<hb_font_t, Destroy>;
    using Buffer = std::unique_ptr<hb_buffer_t, Destroy>;

    TextShaper(HarfBuzzFont font, Buffer buffer);

    HarfBuzzFont m_font;
    Buffer m_buffer;
};

}  // namespace quiravent::desktop
