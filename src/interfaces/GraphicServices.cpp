#include "GraphicServices.h"

#include "Canvas.h"
#include "Font.h"
#include "MakeOrNull.h"
#include "porting/pl_gfx.h"

namespace {

constexpr uint32_t kTargetWidth = 1280;
constexpr uint32_t kTargetHeight = 720;
constexpr int32_t kNoStats = 0xFFFF;

}  // namespace

Canvas* GraphicServices::GetTargetCanvas() {
    if (Canvas::s_target != nullptr) return Canvas::s_target;
    return quiravent::MakeOrNull<Canvas>(kTargetWidth, kTargetHeight,
                                         e_GraphicServices_CanvasType_Target, 0U);
}

Canvas* GraphicServices::CreateCanvas(unsigned int width, unsigned int height) {
    return quiravent::MakeOrNull<Canvas>(width, height, e_GraphicServices_CanvasType_Offscreen, 0U);
}

Canvas* GraphicServices::LoadImage(const std::string& path) {
    uint32_t handle = 0;
    // The handle alone decides.
    (void)pl_gfx_LoadImage(path.c_str(), &handle);
    if (handle == 0) return nullptr;
    uint32_t width = 0;
    uint32_t height = 0;
    const int32_t status = pl_gfx_Canvas_GetSize(handle, &width, &height);
    // On this path the handle deliberately stays with the device.
    if (status != 0 || width == 0 || height == 0) return nullptr;
    return quiravent::MakeOrNull<Canvas>(width, height, e_GraphicServices_CanvasType_Adopted,
                                         handle);
}

Font* GraphicServices::LoadFont(const std::string& path, unsigned int size) {
    return quiravent::MakeOrNull<Font>(path, size);
}

int32_t GraphicServices::GetVRAMStats(int* used, int* free) {
    *used = 0;
    *free = 0;
    s_pl_gfx_vram_stats stats = {};
    const int32_t status = pl_gfx_GetVRAMStats(&stats);
    if (status == kNoStats) return status;
    *used = stats.used;
    *free = stats.free;
    return status;
}
