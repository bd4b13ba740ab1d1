#include "TextShaper.h"

#include <hb.h>

#include <utility>

#include "graphics/text/textUnits.h"

namespace quiravent::desktop {

namespace {

void shapeWith(hb_font_t* font, hb_buffer_t* buffer, const std::u32string& characters) {
    hb_buffer_clear_contents(buffer);
    const auto count = static_cast<int>(characters.size());
    hb_buffer_add_utf32(buffer, reinterpret_cast<const uint32_t*>(characters.data()), count, 0,
                        count);
    static const hb_language_t kNoLanguage = hb_language_from_string("und", -1);
    hb_buffer_set_language(buffer, kNoLanguage);
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(font, buffer, nullptr, 0);
}

ShapedText placedGlyphs(hb_buffer_t* buffer) {
    ShapedText text;
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    text.glyphs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        text.glyphs.push_back(
            {infos[i].codepoint, -positions[i].y_offset, text.advance + positions[i].x_offset});
        text.advance += positions[i].x_advance;
    }
    return text;
}

}  // namespace

void TextShaper::Destroy::operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }

void TextShaper::Destroy::operator()(hb_font_t* font) const { hb_font_destroy(font); }

TextShaper::TextShaper(HarfBuzzFont font, Buffer buffer)
    : m_font(std::move(font)), m_buffer(std::move(buffer)) {}

Result<std::unique_ptr<TextShaper>> TextShaper::create(const uint8_t* data, size_t size,
                                                       uint32_t pixelHeight) {
    hb_blob_t* blob =
        hb_blob_create(reinterpret_cast<const char*>(data), static_cast<unsigned>(size),
                       HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    hb_face_t* face = hb_face_create(blob, 0);
    hb_blob_destroy(blob);
    HarfBuzzFont font(hb_font_create(face));
    const unsigned glyphs = hb_face_get_glyph_count(face);
    hb_face_destroy(face);
    if (glyphs == 0) return Failure{"broken font data: it can't be shaped with"};
    const int scale = static_cast<int>(pixelHeight * kUnitsPerPixel);
    hb_font_set_scale(font.get(), scale, scale);
    return std::unique_ptr<TextShaper>(new TextShaper(std::move(font), Buffer(hb_buffer_create())));
}

void TextShaper::prepare() {
    const HarfBuzzFont font(hb_font_create(hb_face_get_empty()));
    const Buffer buffer(hb_buffer_create());
    shapeWith(font.get(), buffer.get(), U"a");
}

ShapedText TextShaper::shape(const std::u32string& characters) {
    hb_buffer_t* buffer = m_buffer.get();
    shapeWith(m_font.get(), buffer, characters);
    if (hb_buffer_allocation_successful(buffer) == 0) return {};
    return placedGlyphs(buffer);
}

}  // namespace quiravent::desktop
