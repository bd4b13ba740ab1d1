#include "porting/pl_gfx.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "boundary.h"

namespace {

using namespace quiravent::desktop;

Rect toRect(const s_pl_gfx_rect& rect) { return {rect.x, rect.y, rect.w, rect.h}; }

/// Calls body(DrawingContext&) under the drawing lock; nothing can go wrong in it.
template <class Body>
int32_t draw(const char* function, uint32_t handle, const Required& required, Body body) {
    return answer(function, required, [&](Device& device) {
        return device.drawing().withCanvas(handle, [&](DrawingContext& context) {
            body(context);
            return e_pl_status_ok;
        });
    });
}

/// Calls body(DrawingContext&), which gives a status, under the drawing lock.
template <class Body>
int32_t tryDraw(const char* function, uint32_t handle, const Required& required, Body body) {
    return answer(function, required,
                  [&](Device& device) { return device.drawing().withCanvas(handle, body); });
}

e_pl_status validOr(bool valid) { return valid ? e_pl_status_ok : e_pl_status_invalid_argument; }

int32_t clamped(size_t bytes) {
    constexpr size_t kMost = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min(bytes, kMost));
}

}  // namespace

int32_t pl_gfx_CreateCanvas(uint32_t width, uint32_t height, uint32_t* handle) {
    return answer(__func__, Required(handle), [&](Device& device) {
        *handle = device.drawing().createCanvas(width, height);
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_GetTargetCanvas(uint32_t* handle) {
    return answer(__func__, Required(handle), [&](Device& device) {
        *handle = device.drawing().targetCanvas();
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_ReleaseCanvas(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.drawing().releaseCanvas(handle); });
}

int32_t pl_gfx_LoadImage(const char* path, uint32_t* handle) {
    return answer(__func__, Required(path, handle), [&](Device& device) {
        *handle = device.drawing().loadImage(path);
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_LoadFont(const char* path, uint8_t size, uint32_t* handle) {
    return answer(__func__, Required(path, handle), [&](Device& device) {
        *handle = device.drawing().loadFont(path, size);
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_ReleaseFont(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.drawing().releaseFont(handle); });
}

int32_t pl_gfx_GetVRAMStats(s_pl_gfx_vram_stats* stats) {
    return answer(__func__, Required(stats), [&](Device& device) {
        stats->used = clamped(device.drawing().usedMemory());
        stats->free = clamped(device.drawing().freeMemory());
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_Canvas_GetSize(uint32_t handle, uint32_t* w, uint32_t* h) {
    return answer(__func__, Required(w, h),
                  [&](Device& device) { return device.drawing().canvasSize(handle, *w, *h); });
}

int32_t pl_gfx_Canvas_GetColor(uint32_t handle, s_pl_gfx_color* color) {
    return draw(__func__, handle, Required(color), [&](DrawingContext& context) {
        const Color& current = context.canvas().color();
        *color = {current.red, current.green, current.blue, current.alpha};
    });
}

int32_t pl_gfx_Canvas_SetColor(uint32_t handle, s_pl_gfx_color color) {
    return draw(__func__, handle, Required(), [&](DrawingContext& context) {
        context.canvas().setColor({color.r, color.g, color.b, color.a});
    });
}

int32_t pl_gfx_Canvas_GetClip(uint32_t handle, s_pl_gfx_rect* clip) {
    return draw(__func__, handle, Required(clip), [&](DrawingContext& context) {
        const Rect& current = context.canvas().clip();
        *clip = {current.x, current.y, current.width, current.height};
    });
}

int32_t pl_gfx_Canvas_SetClip(uint32_t handle, const s_pl_gfx_rect* clip) {
    return draw(__func__, handle, Required(clip),
                [&](DrawingContext& context) { context.canvas().setClip(toRect(*clip)); });
}

int32_t pl_gfx_Canvas_SetRotation(uint32_t handle, double degrees) {
    return tryDraw(__func__, handle, Required(),
                   [&](DrawingContext& context) { return validOr(context.setRotation(degrees)); });
}

int32_t pl_gfx_Canvas_SetOpacity(uint32_t handle, double opacity) {
    return tryDraw(__func__, handle, Required(), [&](DrawingContext& context) {
        return validOr(context.canvas().setOpacity(opacity));
    });
}

int32_t pl_gfx_Canvas_SetPorterDuff(uint32_t handle, e_pl_fgx_porter_duff mode) {
    return tryDraw(__func__, handle, Required(), [&](DrawingContext& context) {
        if (mode > e_pl_fgx_porter_duff_src) return e_pl_status_invalid_argument;
        context.canvas().setPorterDuff(mode);
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_Canvas_FillRect(uint32_t handle, const s_pl_gfx_rect* rect) {
    return draw(__func__, handle, Required(rect),
                [&](DrawingContext& context) { context.canvas().fillRect(toRect(*rect)); });
}

int32_t pl_gfx_Canvas_ClearRect(uint32_t handle, const s_pl_gfx_rect* rect) {
    return draw(__func__, handle, Required(rect),
                [&](DrawingContext& context) { context.canvas().clearRect(toRect(*rect)); });
}

int32_t pl_gfx_Canvas_DrawRect(uint32_t handle, const s_pl_gfx_rect* rect) {
    return draw(__func__, handle, Required(rect),
                [&](DrawingContext& context) { context.canvas().drawRect(toRect(*rect)); });
}

int32_t pl_gfx_Canvas_DrawLine(uint32_t handle, uint32_t x1, uint32_t y1, uint32_t x2,
                               uint32_t y2) {
    return draw(__func__, handle, Required(),
                [&](DrawingContext& context) { context.canvas().drawLine(x1, y1, x2, y2); });
}

int32_t pl_gfx_Canvas_DrawEllipse(uint32_t handle, uint32_t mode, uint32_t xc, uint32_t yc,
                                  uint32_t radiusx, uint32_t radiusy, double ang_start,
                                  double ang_end) {
    return tryDraw(__func__, handle, Required(), [&](DrawingContext& context) {
        if (mode > e_pl_gfx_ellipse_outline) return e_pl_status_invalid_argument;
        const auto style =
            mode == e_pl_gfx_ellipse_outline ? EllipseStyle::outline : EllipseStyle::fill;
        const bool whole = !std::isfinite(ang_start) || !std::isfinite(ang_end);
        context.canvas().drawEllipse(style, xc, yc, radiusx, radiusy, whole ? 0 : ang_start,
                                     whole ? 360 : ang_end);
        return e_pl_status_ok;
    });
}

int32_t pl_gfx_Canvas_SetFont(uint32_t handle, uint32_t font) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.drawing().setFont(handle, font); });
}

int32_t pl_gfx_Canvas_SetTextAlign(uint32_t handle, uint32_t horizontal, uint32_t vertical) {
    return tryDraw(__func__, handle, Required(), [&](DrawingContext& context) {
        const bool known =
            horizontal <= e_pl_gfx_text_align_right && vertical <= e_pl_gfx_text_align_bottom;
        if (known) context.setTextAlignment({horizontal, vertical});
        return validOr(known);
    });
}

int32_t pl_gfx_Canvas_MeasureText(uint32_t handle, const char* text, uint32_t* w, uint32_t* h) {
    return tryDraw(__func__, handle, Required(text, w, h), [&](const DrawingContext& context) {
        TextSize size{};
        const e_pl_status status = context.measureText(text, size);
        if (status != e_pl_status_ok) return status;
        *w = size.width;
        *h = size.height;
        return status;
    });
}

int32_t pl_gfx_Canvas_DrawText(uint32_t handle, uint32_t x, uint32_t y, const char* text) {
    return tryDraw(__func__, handle, Required(text),
                   [&](DrawingContext& context) { return context.drawText(x, y, text); });
}

int32_t pl_gfx_Canvas_Compose(uint32_t handle, uint32_t source, uint32_t x, uint32_t y,
                              const s_pl_gfx_rect* part) {
    return answer(__func__, Required(), [&](Device& device) {
        const Rect rect = part != nullptr ? toRect(*part) : Rect{};
        return device.drawing().withCanvases(
            handle, source, [&](DrawingContext& context, const Surface& from) {
                context.canvas().compose(from, x, y, part != nullptr ? &rect : nullptr);
                return e_pl_status_ok;
            });
    });
}

int32_t pl_gfx_Canvas_ComposeScaled(uint32_t handle, uint32_t source,
                                    const s_pl_gfx_rect* destination, const s_pl_gfx_rect* part) {
    return answer(__func__, Required(destination, part), [&](Device& device) {
        const Rect rect = toRect(*part);
        return device.drawing().withCanvases(
            handle, source, [&](DrawingContext& context, const Surface& from) {
                context.canvas().composeScaled(from, toRect(*destination), &rect);
                return e_pl_status_ok;
            });
    });
}

int32_t pl_gfx_Canvas_Flush(uint32_t handle, const s_pl_gfx_rect* rect) {
    return answer(__func__, Required(), [&](Device& device) {
        const Rect part = rect != nullptr ? toRect(*rect) : Rect{};
        return device.drawing().flush(handle, rect != nullptr ? &part : nullptr);
    });
}
