#include "Font.h"

#include "Canvas.h"
#include "NativeError.h"
#include "porting/pl_gfx.h"
#include "support/InitOrder.h"

std::set<const Font*> Font::s_set __attribute__((init_priority(quiravent::kFonts)));
std::recursive_mutex Font::s_set_mutex;
std::set<Canvas*> Font::s_set_canvas __attribute__((init_priority(quiravent::kCanvasesWithFont)));
std::recursive_mutex Font::s_set_canvas_mutex;

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr int kLoadLine = 18;

}  // namespace

Font::Font(const std::string& path, unsigned int size) : m_size(size) {
    const int32_t status =
        pl_gfx_LoadFont(path.c_str(), static_cast<uint8_t>(size & 0xFF), &m_handle);
    if (status != 0) {
        throw quiravent::NativeError(
            "Font", kLoadLine,
            "pl_gfx_LoadFont(path='" + path + "') failed! (err=" + std::to_string(status) + ")");
    }
    const Lock lock(s_set_mutex);
    s_set.insert(this);
}

Font::~Font() {
    bool registered = false;
    {
        const Lock lock(s_set_mutex);
        const Lock canvasLock(s_set_canvas_mutex);
        // Unbinding takes the canvas out of the set.
        while (!s_set_canvas.empty()) (*s_set_canvas.begin())->SetFont(nullptr);
        registered = s_set.erase(this) != 0;
    }
    if (registered) (void)pl_gfx_ReleaseFont(m_handle);
}

bool Font::IsInvalid() const {
    const Lock lock(s_set_mutex);
    return s_set.count(this) == 0;
}

void Font::BindCanvas(Canvas* canvas) {
    if (IsInvalid()) return;
    const Lock lock(s_set_canvas_mutex);
    s_set_canvas.insert(canvas);
}

void Font::UnbindCanvas(Canvas* canvas) {
    if (IsInvalid()) return;
    const Lock lock(s_set_canvas_mutex);
    s_set_canvas.erase(canvas);
}

void Font::CleanUp() {
    const Lock lock(s_set_mutex);
    while (!s_set.empty()) delete *s_set.begin();
}
