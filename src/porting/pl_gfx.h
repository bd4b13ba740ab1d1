#pragma once

#include <cstddef>

#include "porting/pl_api.h"

// Canvases, fonts, and drawing. A canvas is a picture with its own drawing state: colour, clip,
// font, text alignment, rotation, opacity and blend mode. One of them, the target, is the screen's
// graphics plane, above all video.
//
// All is measured in pixels from the top left corner. A negative number of the application arrives
// as its two's complement: positions are to be read as signed, so that a shape can begin left of or
// above the canvas; widths, heights and radii are unsigned. What lies outside the canvas or its
// clip isn't drawn, and is no error.
//
// All functions are called on the script thread, but for pl_gfx_LoadImage, pl_gfx_LoadFont and
// pl_gfx_Canvas_GetSize, which are called on pool threads beside it.

/// A rectangle: the pixels x to x + w - 1 and y to y + h - 1; empty when w or h is 0.
struct s_pl_gfx_rect {
    uint32_t x;
    uint32_t y;
    uint32_t w;
    uint32_t h;
};
static_assert(sizeof(s_pl_gfx_rect) == 16 && offsetof(s_pl_gfx_rect, y) == 4 &&
                  offsetof(s_pl_gfx_rect, w) == 8 && offsetof(s_pl_gfx_rect, h) == 12,
              "four words in the order x, y, w, h");

/// A colour, 0 to 255 each, not premultiplied; alpha 255 is opaque. By value it travels as one
/// 32-bit word with red in the low byte.
struct s_pl_gfx_color {
    uint8_t r;
    uint8_t g;
    uint8_t b;
    uint8_t a;
};
static_assert(sizeof(s_pl_gfx_color) == 4 && offsetof(s_pl_gfx_color, g) == 1 &&
                  offsetof(s_pl_gfx_color, b) == 2 && offsetof(s_pl_gfx_color, a) == 3,
              "four bytes in the order r, g, b, a");

/// Graphics memory, in bytes; more than 2147483647 is told as that number.
struct s_pl_gfx_vram_stats {
    int32_t used;
    int32_t free;
};
static_assert(sizeof(s_pl_gfx_vram_stats) == 8 && offsetof(s_pl_gfx_vram_stats, free) == 4,
              "two words in the order used, free");

/// How the source (what is drawn) and the destination (the canvas) are put together: the operators
/// of Porter and Duff, and the sum. Only pixels that the shape or picture covers change.
enum e_pl_fgx_porter_duff : uint32_t {
    e_pl_fgx_porter_duff_default = 0,  ///< as src_over; what an unknown name of a mode selects
    e_pl_fgx_porter_duff_src_over = 1,
    e_pl_fgx_porter_duff_src_atop = 2,
    e_pl_fgx_porter_duff_src_in = 3,
    e_pl_fgx_porter_duff_src_out = 4,
    e_pl_fgx_porter_duff_dst_over = 5,
    e_pl_fgx_porter_duff_dst_atop = 6,
    e_pl_fgx_porter_duff_dst_in = 7,
    e_pl_fgx_porter_duff_dst_out = 8,
    e_pl_fgx_porter_duff_add = 9,
    e_pl_fgx_porter_duff_xor = 10,
    e_pl_fgx_porter_duff_src = 11,
};

/// Where the x of pl_gfx_Canvas_DrawText lies in the text's advance width.
enum e_pl_gfx_text_align_horizontal : uint32_t {
    e_pl_gfx_text_align_left = 0,
    e_pl_gfx_text_align_center = 1,
    e_pl_gfx_text_align_right = 2,
};

/// Where the y of pl_gfx_Canvas_DrawText lies in the line, which reaches from the font's ascent
/// above the baseline to its descent below.
enum e_pl_gfx_text_align_vertical : uint32_t {
    e_pl_gfx_text_align_baseline = 0,
    e_pl_gfx_text_align_top = 1,
    e_pl_gfx_text_align_middle = 2,
    e_pl_gfx_text_align_bottom = 3,
};

enum e_pl_gfx_ellipse_mode : uint32_t {
    e_pl_gfx_ellipse_fill = 0,     ///< of a part only: the sector, up to the centre
    e_pl_gfx_ellipse_outline = 1,  ///< of a part only: the arc, without the radii
};

/// Makes an off-screen canvas, all transparent. Its colour is opaque white, its clip the whole of
/// it, its text alignment left and baseline, its rotation 0, its opacity 1, its blend mode
/// src_over; it has no font. width, height: at least 1. On success *handle is the new canvas, which
/// the caller releases with pl_gfx_ReleaseCanvas.
PL_API int32_t pl_gfx_CreateCanvas(uint32_t width, uint32_t height, uint32_t* handle);

/// Gives the canvas that is the screen, with the start values of pl_gfx_CreateCanvas. The
/// application takes the screen as 1280 by 720, so the canvas should have that size whatever the
/// display's own.
PL_API int32_t pl_gfx_GetTargetCanvas(uint32_t* handle);

/// Releases a canvas that was created, loaded or taken as a thumbnail, with its memory; of the
/// target, the application's claim to it, while the screen keeps its last picture. Called once
/// for each handle.
PL_API int32_t pl_gfx_ReleaseCanvas(uint32_t handle);

/// Gives a canvas's width and height. Called on pool threads too.
PL_API int32_t pl_gfx_Canvas_GetSize(uint32_t handle, uint32_t* w, uint32_t* h);

/// Gives the colour as it was last set.
PL_API int32_t pl_gfx_Canvas_GetColor(uint32_t handle, s_pl_gfx_color* color);

/// Gives the clip as it was last set, also where it reaches beyond the canvas.
PL_API int32_t pl_gfx_Canvas_GetClip(uint32_t handle, s_pl_gfx_rect* clip);

/// Gives the advance width of a text that isn't empty and the height of a line (ascent plus
/// descent) in the canvas's font, each rounded up to whole pixels.
PL_API int32_t pl_gfx_Canvas_MeasureText(uint32_t handle, const char* text, uint32_t* w,
                                         uint32_t* h);

/// Sets the colour of shapes and text. Called only for a change.
PL_API int32_t pl_gfx_Canvas_SetColor(uint32_t handle, s_pl_gfx_color color);

/// Fills a rectangle with the colour, in the blend mode.
PL_API int32_t pl_gfx_Canvas_FillRect(uint32_t handle, const s_pl_gfx_rect* rect);

/// Makes a rectangle fully transparent, whatever colour, opacity and blend mode are; on the target,
/// the video below shows.
PL_API int32_t pl_gfx_Canvas_ClearRect(uint32_t handle, const s_pl_gfx_rect* rect);

/// Draws the outline of a rectangle, 1 pixel wide, inside of it.
PL_API int32_t pl_gfx_Canvas_DrawRect(uint32_t handle, const s_pl_gfx_rect* rect);

/// Draws a line, 1 pixel wide, both ends included.
PL_API int32_t pl_gfx_Canvas_DrawLine(uint32_t handle, uint32_t x1, uint32_t y1, uint32_t x2,
                                      uint32_t y2);

/// Confines all drawing on the canvas, clearing included, to a rectangle; an empty one lets nothing
/// through. Called only for a change.
PL_API int32_t pl_gfx_Canvas_SetClip(uint32_t handle, const s_pl_gfx_rect* clip);

/// Turns pictures that are composed onto this canvas from now on about the centre of the rectangle
/// that they would cover. degrees: clockwise, any finite number.
PL_API int32_t pl_gfx_Canvas_SetRotation(uint32_t handle, double degrees);

/// Sets the opacity of all that is drawn on the canvas from now on, beside the alpha of the colour
/// or picture itself. opacity: 0 (invisible) to 1; beyond these the nearer of them; NaN is an
/// invalid argument.
PL_API int32_t pl_gfx_Canvas_SetOpacity(uint32_t handle, double opacity);

/// Sets the font of text on this canvas. A font may be released while it is set: text calls on the
/// canvas then give an error status until another is set.
PL_API int32_t pl_gfx_Canvas_SetFont(uint32_t handle, uint32_t font);

/// Draws one line of text that isn't empty, in the font and colour, at a place that the text
/// alignment explains.
PL_API int32_t pl_gfx_Canvas_DrawText(uint32_t handle, uint32_t x, uint32_t y, const char* text);

/// Sets the alignment of text: e_pl_gfx_text_align_horizontal, e_pl_gfx_text_align_vertical.
PL_API int32_t pl_gfx_Canvas_SetTextAlign(uint32_t handle, uint32_t horizontal, uint32_t vertical);

/// Draws a part of the canvas source on the canvas handle, its top left corner at x, y. part: null
/// for the whole source; what of it lies beyond the source is transparent. The two canvases may be
/// the same one.
PL_API int32_t pl_gfx_Canvas_Compose(uint32_t handle, uint32_t source, uint32_t x, uint32_t y,
                                     const s_pl_gfx_rect* part);

/// As pl_gfx_Canvas_Compose, scaled smoothly to the destination rectangle. An empty rectangle draws
/// nothing.
PL_API int32_t pl_gfx_Canvas_ComposeScaled(uint32_t handle, uint32_t source,
                                           const s_pl_gfx_rect* destination,
                                           const s_pl_gfx_rect* part);

/// Brings what was drawn on the target to the screen: all, or a rectangle of it. rect: may be null
/// for the whole canvas. Until then the screen keeps its picture. For other canvases nothing is to
/// be done, and the status is success.
PL_API int32_t pl_gfx_Canvas_Flush(uint32_t handle, const s_pl_gfx_rect* rect);

/// Draws an ellipse or a part of one. mode: e_pl_gfx_ellipse_mode. xc, yc: the centre. ang_start,
/// ang_end: in degrees, clockwise, 0 at the right; the part from start to end, the whole ellipse
/// when they span 360 or more or one of them isn't finite.
PL_API int32_t pl_gfx_Canvas_DrawEllipse(uint32_t handle, uint32_t mode, uint32_t xc, uint32_t yc,
                                         uint32_t radiusx, uint32_t radiusy, double ang_start,
                                         double ang_end);

/// Sets the blend mode of all drawing on the canvas but clearing.
PL_API int32_t pl_gfx_Canvas_SetPorterDuff(uint32_t handle, e_pl_fgx_porter_duff mode);

/// Loads a picture into a new canvas of its size. path: a file or whatever else the layer can load.
/// The module looks at *handle alone, which it sets to 0 before, and not at the status: on failure
/// *handle is left as it is. Called on a pool thread; may block.
PL_API int32_t pl_gfx_LoadImage(const char* path, uint32_t* handle);

/// Loads a font. size: the height of the em in pixels, 1 to 255; 0 is an invalid argument. On
/// success the caller releases *handle with pl_gfx_ReleaseFont. Called on a pool thread; may block.
PL_API int32_t pl_gfx_LoadFont(const char* path, uint8_t size, uint32_t* handle);

/// Releases a font. A canvas may still have it set. Called once for each handle.
PL_API int32_t pl_gfx_ReleaseFont(uint32_t handle);

/// Tells the use of graphics memory. e_pl_status_unavailable, and that status alone, means that
/// there are no figures; after any other the module takes the record as filled.
PL_API int32_t pl_gfx_GetVRAMStats(s_pl_gfx_vram_stats* stats);
