#include <cstring>

#include "FakeDevice.h"
#include "Fulfil.h"

namespace quiravent::recorder {
namespace {

/// The canvas of that handle; for an unknown one the answer is made to fail.
FakeDevice::Canvas known(Answer& answer, uint32_t handle) {
    const auto canvas = device().canvas(handle);
    if (!canvas) answer.fail(e_pl_status_invalid_handle);
    return canvas.value_or(FakeDevice::Canvas{});
}

}  // namespace

void Fulfil::operator()(Fn<&pl_gfx_CreateCanvas>, Answer& answer, uint32_t width, uint32_t height,
                        uint32_t* handle) const {
    answer.put("handle", handle, [&] { return device().addCanvas(width, height); });
}

void Fulfil::operator()(Fn<&pl_gfx_GetTargetCanvas>, Answer& answer, uint32_t* handle) const {
    answer.put("handle", handle, [] {
        return device().addCanvas(FakeDevice::kScreenWidth, FakeDevice::kScreenHeight);
    });
}

void Fulfil::operator()(Fn<&pl_gfx_ReleaseCanvas>, Answer& answer, uint32_t handle) const {
    known(answer, handle);
    if (answer.succeeds()) device().removeCanvas(handle);
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_GetSize>, Answer& answer, uint32_t handle, uint32_t* w,
                        uint32_t* h) const {
    const FakeDevice::Canvas canvas = known(answer, handle);
    answer.put("w", w, [&] { return canvas.width; });
    answer.put("h", h, [&] { return canvas.height; });
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_GetColor>, Answer& answer, uint32_t handle,
                        s_pl_gfx_color* color) const {
    const FakeDevice::Canvas canvas = known(answer, handle);
    answer.put("r", &color->r, [&] { return canvas.color.r; });
    answer.put("g", &color->g, [&] { return canvas.color.g; });
    answer.put("b", &color->b, [&] { return canvas.color.b; });
    answer.put("a", &color->a, [&] { return canvas.color.a; });
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_GetClip>, Answer& answer, uint32_t handle,
                        s_pl_gfx_rect* clip) const {
    const FakeDevice::Canvas canvas = known(answer, handle);
    answer.put("x", &clip->x, [&] { return canvas.clip.x; });
    answer.put("y", &clip->y, [&] { return canvas.clip.y; });
    answer.put("w", &clip->w, [&] { return canvas.clip.w; });
    answer.put("h", &clip->h, [&] { return canvas.clip.h; });
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_MeasureText>, Answer& answer, uint32_t handle,
                        const char* text, uint32_t* w, uint32_t* h) const {
    known(answer, handle);
    answer.put("w", w, [&] { return static_cast<uint32_t>(10 * std::strlen(text)); });
    answer.put("h", h, [] { return 20U; });
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_SetColor>, Answer& answer, uint32_t handle,
                        s_pl_gfx_color color) const {
    if (!answer.succeeds()) return;
    device().changeCanvas(handle, [&](FakeDevice::Canvas& canvas) { canvas.color = color; });
}

void Fulfil::operator()(Fn<&pl_gfx_Canvas_SetClip>, Answer& answer, uint32_t handle,
                        const s_pl_gfx_rect* clip) const {
    if (!answer.succeeds()) return;
    device().changeCanvas(handle, [&](FakeDevice::Canvas& canvas) { canvas.clip = *clip; });
}

void Fulfil::operator()(Fn<&pl_gfx_LoadImage>, Answer& answer, const char*,
                        uint32_t* handle) const {
    answer.put("handle", handle, [] { return device().addCanvas(64, 32); });
}

void Fulfil::operator()(Fn<&pl_gfx_LoadFont>, Answer& answer, const char*, uint8_t,
                        uint32_t* handle) const {
    answer.put("handle", handle, [] { return device().nextFont(); });
}

void Fulfil::operator()(Fn<&pl_gfx_GetVRAMStats>, Answer& answer,
                        s_pl_gfx_vram_stats* stats) const {
    answer.put("used", &stats->used, [] { return 1000; });
    answer.put("free", &stats->free, [] { return 2000; });
}

}  // namespace quiravent::recorder
