#include "drawing/DrawingService.h"

#include <chrono>
#include <utility>

#include "graphics/KernelSets.h"
#include "graphics/images/ImageLoader.h"
#include "graphics/text/FontLoader.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

ResourceLimits limitsFrom(const Configuration::Network& network) {
    ResourceLimits limits;
    limits.maxBytes = static_cast<size_t>(network.sizeLimitMiB << 20);
    limits.timeout = std::chrono::seconds(network.timeLimitSeconds);
    limits.authorities = network.authorities;
    return limits;
}

/// Before any canvas is made, which keeps the kernels of that time.
void useKernels(const std::string& name) {
    if (name == Configuration::Graphics().kernels || selectKernels(name)) return;
    log::warning("this machine can't draw with ", name, "; ", kernelSets().front().name,
                 " is used instead (graphics.kernels)");
}

uint32_t orTooMany(uint32_t handle, const char* what) {
    if (handle == 0)
        throw DeviceError(e_pl_status_no_memory, joined("too many ", what, " are open"));
    return handle;
}

}  // namespace

DrawingService::DrawingService(const Configuration& configuration, Screen& screen)
    : m_screen(screen),
      m_limits(limitsFrom(configuration.network)),
      m_pool(static_cast<size_t>(configuration.graphics.videoMemory)),
      m_share(
          std::make_shared<CanvasShare>(static_cast<size_t>(configuration.graphics.scaledImages),
                                        static_cast<uint32_t>(configuration.graphics.threads))) {
    useKernels(configuration.graphics.kernels);
}

std::shared_ptr<Surface> DrawingService::newSurface(uint32_t width, uint32_t height) {
    constexpr uint32_t kMaxSide = SurfacePool::kMaxSide;
    if (width == 0 || height == 0 || width > kMaxSide || height > kMaxSide) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("a canvas can't be ", width, " by ", height,
                                 " pixels; each side may be 1 to ", kMaxSide));
    }
    auto surface = m_pool.create(width, height);
    if (!surface) {
        throw DeviceError(
            e_pl_status_no_memory,
            joined("no memory for a canvas of ", width, " by ", height,
                   " pixels: ", m_pool.freeBytes(), " of ", m_pool.freeBytes() + m_pool.usedBytes(),
                   " bytes are free; release canvases, or raise "
                   "graphics.videoMemory"));
    }
    return surface;
}

uint32_t DrawingService::addCanvas(std::shared_ptr<Surface> surface) {
    auto context = std::make_shared<DrawingContext>(std::move(surface), m_share);
    return orTooMany(m_canvases.insert(std::move(context)), "canvases");
}

uint32_t DrawingService::createCanvas(uint32_t width, uint32_t height) {
    return addCanvas(newSurface(width, height));
}

uint32_t DrawingService::targetCanvas() {
    const std::lock_guard<std::mutex> lock(m_drawing);
    if (!m_target) m_target = newSurface(Screen::kWidth, Screen::kHeight);
    if (m_targetHandle == 0) m_targetHandle = addCanvas(m_target);
    return m_targetHandle;
}

e_pl_status DrawingService::releaseCanvas(uint32_t handle) {
    const std::lock_guard<std::mutex> lock(m_drawing);
    if (!m_canvases.remove(handle)) return e_pl_status_invalid_handle;
    if (handle == m_targetHandle) m_targetHandle = 0;
    return e_pl_status_ok;
}

uint32_t DrawingService::loadImage(const std::string& location) {
    auto surface = desktop::loadImage(location, m_pool, m_limits);
    if (!surface) throw DeviceError(e_pl_status_io_error, surface.reason());
    return addCanvas(std::move(*surface));
}

uint32_t DrawingService::loadFont(const std::string& location, uint32_t pixelHeight) {
    if (pixelHeight == 0 || pixelHeight > Font::kMaxPixelHeight) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("a font can't be ", pixelHeight, " pixels high; allowed: 1 to ",
                                 Font::kMaxPixelHeight));
    }
    auto font = desktop::loadFont(location, pixelHeight, m_limits);
    if (!font) throw DeviceError(e_pl_status_io_error, font.reason());
    return orTooMany(m_fonts.insert(std::move(*font)), "fonts");
}

e_pl_status DrawingService::releaseFont(uint32_t handle) {
    return m_fonts.remove(handle) ? e_pl_status_ok : e_pl_status_invalid_handle;
}

e_pl_status DrawingService::canvasSize(uint32_t handle, uint32_t& width, uint32_t& height) const {
    const auto context = m_canvases.find(handle);
    if (!context) return e_pl_status_invalid_handle;
    width = context->surface().width();
    height = context->surface().height();
    return e_pl_status_ok;
}

e_pl_status DrawingService::setFont(uint32_t canvas, uint32_t font) {
    const auto found = m_fonts.find(font);
    if (!found) return e_pl_status_invalid_handle;
    return withCanvas(canvas, [&](DrawingContext& context) {
        context.setFont(found);
        return e_pl_status_ok;
    });
}

void DrawingService::finish() {
    {
        const std::lock_guard<std::mutex> lock(m_drawing);
        m_finished = true;
    }
    m_share->team.stop();
}

e_pl_status DrawingService::flush(uint32_t handle, const Rect* part) {
    return withCanvas(handle, [&](const DrawingContext& context) {
        const Surface& surface = context.surface();
        if (&surface != m_target.get()) return e_pl_status_ok;
        m_screen.present(surface, part != nullptr ? toBox(*part)
                                                  : boxAt(0, 0, surface.width(), surface.height()));
        return e_pl_status_ok;
    });
}

}  // namespace quiravent::desktop
