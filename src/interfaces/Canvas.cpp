#include "Canvas.h"

#include <array>

#include "Font.h"
#include "NativeError.h"
#include "support/InitOrder.h"

Canvas* Canvas::s_target = nullptr;
std::set<const Canvas*> Canvas::s_set __attribute__((init_priority(quiravent::kCanvases)));
std::recursive_mutex Canvas::s_set_mutex;

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr int kDimensionsLine = 87;
constexpr int kHandleLine = 104;

/// What every operation answers on a canvas that is gone or released.
constexpr int32_t kInvalid = 1;

/// The place of a word in its row; 0, the first place, for a word that isn't in it.
template <size_t count>
uint32_t CodeOf(const std::string& word, const std::array<const char*, count>& words) {
    for (uint32_t code = 0; code < count; ++code) {
        if (word == words[code]) return code;
    }
    return 0;
}

constexpr std::array<const char*, 3> kHorizontal = {"left", "center", "right"};
constexpr std::array<const char*, 4> kVertical = {"baseline", "top", "middle", "bottom"};
constexpr std::array<const char*, 2> kEllipseModes = {"fill", "outline"};

void CheckDimensions(uint32_t width, uint32_t height) {
    if (width * height != 0) return;
    throw quiravent::NativeError("Canvas", kDimensionsLine,
                                 "Invalid dimensions (width=" + std::to_string(width) +
                                     ", height=" + std::to_string(height) + ")");
}

uint32_t NewHandle(uint32_t width, uint32_t height, e_GraphicServices_CanvasType type) {
    uint32_t handle = 0;
    const int32_t status = type == e_GraphicServices_CanvasType_Target
                               ? pl_gfx_GetTargetCanvas(&handle)
                               : pl_gfx_CreateCanvas(width, height, &handle);
    if (status == 0) return handle;
    // The text deliberately names the one function for both calls.
    throw quiravent::NativeError("Canvas", kHandleLine,
                                 "pl_gfx_GetTargetCanvas(width=" + std::to_string(width) +
                                     ",height=" + std::to_string(height) +
                                     ",type=" + std::to_string(type) +
                                     ") failed! (err=" + std::to_string(status) + ")");
}

}  // namespace

Canvas::Canvas(unsigned int width, unsigned int height, e_GraphicServices_CanvasType type,
               unsigned int handle)
    : m_width(width), m_height(height), m_type(type) {
    CheckDimensions(width, height);
    m_handle = handle != 0 ? handle : NewHandle(width, height, type);
    const Lock lock(s_set_mutex);
    s_set.insert(this);
    if (m_type == e_GraphicServices_CanvasType_Target) s_target = this;
}

Canvas::~Canvas() {
    const Lock lock(s_set_mutex);
    if (s_set.count(this) == 0) return;
    if (IsTarget()) s_target = nullptr;
    Release();
    s_set.erase(this);
}

bool Canvas::IsTarget() const {
    const Lock lock(s_set_mutex);
    return s_set.count(this) != 0 && m_type == e_GraphicServices_CanvasType_Target;
}

bool Canvas::IsInvalid() const {
    const Lock lock(s_set_mutex);
    return s_set.count(this) == 0 || m_handle == 0;
}

int32_t Canvas::GetSize(unsigned int* w, unsigned int* h) const {
    *w = 0;
    *h = 0;
    if (IsInvalid()) return kInvalid;
    uint32_t width = 0;
    uint32_t height = 0;
    const int32_t status = pl_gfx_Canvas_GetSize(m_handle, &width, &height);
    if (status != 0) return status;
    *w = width;
    *h = height;
    return status;
}

int32_t Canvas::GetColor(unsigned char* r, unsigned char* g, unsigned char* b,
                         unsigned char* a) const {
    *r = *g = *b = *a = 0;
    if (IsInvalid()) return kInvalid;
    s_pl_gfx_color color = {};
    const int32_t status = pl_gfx_Canvas_GetColor(m_handle, &color);
    if (status != 0) return status;
    *r = color.r;
    *g = color.g;
    *b = color.b;
    *a = color.a;
    return status;
}

int32_t Canvas::GetClip(unsigned int* x, unsigned int* y, unsigned int* w, unsigned int* h) const {
    *x = *y = *w = *h = 0;
    if (IsInvalid()) return kInvalid;
    s_pl_gfx_rect clip = {};
    const int32_t status = pl_gfx_Canvas_GetClip(m_handle, &clip);
    if (status != 0) return status;
    *x = clip.x;
    *y = clip.y;
    *w = clip.w;
    *h = clip.h;
    return status;
}

int32_t Canvas::MeasureText(const std::string& text, unsigned int* w, unsigned int* h) const {
    *w = 0;
    *h = 0;
    if (IsInvalid()) return kInvalid;
    if (m_font == nullptr || text.empty()) return 0;
    uint32_t width = 0;
    uint32_t height = 0;
    const int32_t status = pl_gfx_Canvas_MeasureText(m_handle, text.c_str(), &width, &height);
    if (status != 0) return status;
    *w = width;
    *h = height;
    return status;
}

void Canvas::SetColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (IsInvalid()) return;
    const s_pl_gfx_color color = {r, g, b, a};
    if (IsSame(color, m_color)) return;
    if (pl_gfx_Canvas_SetColor(m_handle, color) == 0) m_color = color;
}

int32_t Canvas::FillRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    if (IsInvalid()) return kInvalid;
    const s_pl_gfx_rect rect = {x, y, w, h};
    return pl_gfx_Canvas_FillRect(m_handle, &rect);
}

int32_t Canvas::ClearRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    if (IsInvalid()) return kInvalid;
    const s_pl_gfx_rect rect = {x, y, w, h};
    return pl_gfx_Canvas_ClearRect(m_handle, &rect);
}

int32_t Canvas::DrawRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    if (IsInvalid()) return kInvalid;
    const s_pl_gfx_rect rect = {x, y, w, h};
    return pl_gfx_Canvas_DrawRect(m_handle, &rect);
}

int32_t Canvas::DrawLine(unsigned int x1, unsigned int y1, unsigned int x2, unsigned int y2) {
    if (IsInvalid()) return kInvalid;
    return pl_gfx_Canvas_DrawLine(m_handle, x1, y1, x2, y2);
}

void Canvas::SetClip(unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    if (IsInvalid()) return;
    const s_pl_gfx_rect clip = {x, y, w, h};
    if (IsSame(clip, m_clip)) return;
    if (pl_gfx_Canvas_SetClip(m_handle, &clip) == 0) m_clip = clip;
}

int32_t Canvas::SetRotation(double value) {
    return IsInvalid() ? kInvalid : pl_gfx_Canvas_SetRotation(m_handle, value);
}

int32_t Canvas::SetOpacity(double value) {
    return IsInvalid() ? kInvalid : pl_gfx_Canvas_SetOpacity(m_handle, value);
}

void Canvas::SetFont(Font* font) {
    if (IsInvalid() || font == m_font) return;
    if (font == nullptr) {
        m_font->UnbindCanvas(this);
        m_font = nullptr;
        return;
    }
    if (font->IsInvalid()) return;
    if (pl_gfx_Canvas_SetFont(m_handle, font->Handle()) != 0) return;
    if (m_font != nullptr) m_font->UnbindCanvas(this);
    font->BindCanvas(this);
    m_font = font;
}

int32_t Canvas::DrawText(const std::string& text, unsigned int x, unsigned int y) {
    if (IsInvalid()) return kInvalid;
    if (m_font == nullptr || text.empty()) return 0;
    return pl_gfx_Canvas_DrawText(m_handle, x, y, text.c_str());
}

int32_t Canvas::SetTextAlign(const std::string& h, const std::string& v) {
    if (IsInvalid()) return kInvalid;
    if (m_font == nullptr || (h == m_align_h && v == m_align_v)) return 0;
    const int32_t status =
        pl_gfx_Canvas_SetTextAlign(m_handle, CodeOf(h, kHorizontal), CodeOf(v, kVertical));
    if (status != 0) return status;
    m_align_h = h;
    m_align_v = v;
    return status;
}

int32_t Canvas::Compose(Canvas* source, unsigned int x, unsigned int y) {
    if (IsInvalid() || source->IsInvalid()) return kInvalid;
    return pl_gfx_Canvas_Compose(m_handle, source->m_handle, x, y, nullptr);
}

int32_t Canvas::Compose(Canvas* source, unsigned int sx, unsigned int sy, unsigned int sw,
                        unsigned int sh, unsigned int x, unsigned int y) {
    if (IsInvalid() || source->IsInvalid()) return kInvalid;
    const s_pl_gfx_rect part = {sx, sy, sw, sh};
    return pl_gfx_Canvas_Compose(m_handle, source->m_handle, x, y, &part);
}

int32_t Canvas::ComposeScaled(Canvas* source, unsigned int dx, unsigned int dy, unsigned int dw,
                              unsigned int dh, unsigned int sx, unsigned int sy, unsigned int sw,
                              unsigned int sh) {
    if (IsInvalid() || source->IsInvalid()) return kInvalid;
    const s_pl_gfx_rect destination = {dx, dy, dw, dh};
    const s_pl_gfx_rect part = {sx, sy, sw, sh};
    return pl_gfx_Canvas_ComposeScaled(m_handle, source->m_handle, &destination, &part);
}

int32_t Canvas::Flush() { return IsInvalid() ? kInvalid : pl_gfx_Canvas_Flush(m_handle, nullptr); }

int32_t Canvas::Flush(unsigned int x, unsigned int y, unsigned int w, unsigned int h) {
    if (IsInvalid()) return kInvalid;
    const s_pl_gfx_rect rect = {x, y, w, h};
    return pl_gfx_Canvas_Flush(m_handle, &rect);
}

int32_t Canvas::DrawEllipse(const std::string& mode, unsigned int xc, unsigned int yc,
                            unsigned int radiusx, unsigned int radiusy, double ang_start,
                            double ang_end) {
    if (IsInvalid()) return kInvalid;
    return pl_gfx_Canvas_DrawEllipse(m_handle, CodeOf(mode, kEllipseModes), xc, yc, radiusx,
                                     radiusy, ang_start, ang_end);
}

void Canvas::Release() {
    uint32_t handle = 0;
    {
        const Lock lock(s_set_mutex);
        if (IsInvalid()) return;
        handle = m_handle;
        SetFont(nullptr);
        m_handle = 0;
    }
    (void)pl_gfx_ReleaseCanvas(handle);
}

void Canvas::CleanUp() {
    const Lock lock(s_set_mutex);
    while (!s_set.empty()) delete *s_set.begin();
}
