#include "GlyphRasteriser.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "graphics/text/textUnits.h"

namespace quiravent::desktop {

namespace {

/// The widest ligatures at the largest size stay far below it; what a broken outline asks for
/// doesn't.
constexpr FT_Pos kMaxBitmapPixels = FT_Pos{4} << 20;
constexpr FT_Pos kMaxBitmapSide = 32000;

/// Font units to pixels, rounded up and never negative.
uint32_t pixelsUp(FT_Face face, FT_Long fontUnits) {
    const FT_Pos scaled = FT_MulFix(std::max(fontUnits, 0L), face->size->metrics.y_scale);
    return static_cast<uint32_t>((scaled + kUnitsPerPixel - 1) / kUnitsPerPixel);
}

FontMetrics metricsOf(FT_Face face) {
    FontMetrics metrics{pixelsUp(face, face->ascender), pixelsUp(face, -FT_Long{face->descender}),
                        pixelsUp(face, face->height)};
    if (metrics.height() == 0) metrics.ascent = face->size->metrics.y_ppem;
    metrics.lineHeight = std::max(metrics.lineHeight, metrics.height());
    return metrics;
}

int32_t reachOf(FT_Face face) {
    const FT_BBox& box = face->bbox;
    const FT_Long farthest = std::max(
        {std::labs(box.xMin), std::labs(box.xMax), std::labs(box.yMin), std::labs(box.yMax)});
    constexpr int32_t kEdges = 2;  // one for the quarter of a pixel, one for rounding
    return static_cast<int32_t>(pixelsUp(face, farthest)) + 2 * face->size->metrics.y_ppem + kEdges;
}

bool fitsBitmap(const FT_Outline& outline) {
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    const FT_Pos width = (box.xMax - box.xMin) / kUnitsPerPixel + 2;
    const FT_Pos height = (box.yMax - box.yMin) / kUnitsPerPixel + 2;
    return width <= kMaxBitmapSide && height <= kMaxBitmapSide &&
           width * height <= kMaxBitmapPixels;
}

GlyphBitmap copyOf(FT_GlyphSlot slot) {
    GlyphBitmap result;
    const FT_Bitmap& bitmap = slot->bitmap;
    if (bitmap.width == 0 || bitmap.rows == 0 || bitmap.pixel_mode != FT_PIXEL_MODE_GRAY)
        return result;
    result.left = slot->bitmap_left;
    result.top = -slot->bitmap_top;
    result.width = bitmap.width;
    result.height = bitmap.rows;
    result.coverage = std::make_unique<uint8_t[]>(size_t{bitmap.width} * bitmap.rows);
    for (uint32_t y = 0; y < bitmap.rows; ++y)
        std::memcpy(result.coverage.get() + size_t{y} * bitmap.width,
                    bitmap.buffer + std::ptrdiff_t{bitmap.pitch} * y, bitmap.width);
    return result;
}

}  // namespace

void GlyphRasteriser::CloseFace::operator()(FT_FaceRec_* face) const { FT_Done_Face(face); }

void GlyphRasteriser::CloseLibrary::operator()(FT_LibraryRec_* library) const {
    FT_Done_FreeType(library);
}

GlyphRasteriser::GlyphRasteriser(Library library, Face face)
    : m_library(std::move(library)),
      m_face(std::move(face)),
      m_metrics(metricsOf(m_face.get())),
      m_reach(reachOf(m_face.get())) {}

Result<std::unique_ptr<GlyphRasteriser>> GlyphRasteriser::create(const uint8_t* data, size_t size,
                                                                 uint32_t pixelHeight) {
    FT_Library rawLibrary = nullptr;
    if (FT_Init_FreeType(&rawLibrary) != FT_Err_Ok) return Failure{"no memory to open the font"};
    Library library(rawLibrary);
    FT_Face rawFace = nullptr;
    const FT_Error error =
        FT_New_Memory_Face(rawLibrary, data, static_cast<FT_Long>(size), 0, &rawFace);
    if (error != FT_Err_Ok)
        return Failure{"broken font data (FreeType error " + std::to_string(error) + ")"};
    Face face(rawFace);
    if (!FT_IS_SCALABLE(rawFace)) return Failure{"the font has no outlines"};
    if (rawFace->num_glyphs <= 0) return Failure{"the font has no glyphs"};
    if (FT_Set_Pixel_Sizes(rawFace, 0, pixelHeight) != FT_Err_Ok)
        return Failure{"the font can't be scaled to " + std::to_string(pixelHeight) + " pixels"};
    return std::unique_ptr<GlyphRasteriser>(
        new GlyphRasteriser(std::move(library), std::move(face)));
}

GlyphBitmap GlyphRasteriser::draw(GlyphKey key) {
    constexpr FT_Int32 kFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;
    if (FT_Load_Glyph(m_face.get(), key.glyph, kFlags) != FT_Err_Ok) return {};
    FT_GlyphSlotRec* slot = m_face->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE || !fitsBitmap(slot->outline)) return {};
    FT_Outline_Translate(&slot->outline, kUnitsPerQuarter * static_cast<FT_Pos>(key.quarter), 0);
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != FT_Err_Ok) return {};
    return copyOf(slot);
}

}  // namespace quiravent::desktop
