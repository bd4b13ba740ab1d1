#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "config/Configuration.h"
#include "display/Screen.h"
#include "drawing/DrawingContext.h"
#include "graphics/Surface.h"
#include "graphics/text/Font.h"
#include "porting/pl_status.h"
#include "resources/Resource.h"
#include "support/HandleTable.h"

namespace quiravent::desktop {

/// All canvases and fonts of the application, known by handles. Thread-safe: drawing goes by one
/// lock, which isn't held while a picture or font is read and decoded. What can't be made is
/// thrown as DeviceError with the reason.
class DrawingService {
  public:
    DrawingService(const Configuration& configuration, Screen& screen);

    /// Handle of a new canvas, all transparent.
    uint32_t createCanvas(uint32_t width, uint32_t height);

    /// Handle of the canvas that is flushed to the screen. It is the same until that handle is
    /// released; then the next call gives a new one, with the drawing state of a new canvas, for
    /// the same pixels.
    uint32_t targetCanvas();

    e_pl_status releaseCanvas(uint32_t handle);

    /// Handle of a new canvas with a surface that make(pool) gives out of the application's memory.
    uint32_t createCanvas(const std::function<std::shared_ptr<Surface>(SurfacePool&)>& make) {
        return addCanvas(make(m_pool));
    }

    /// See readResource() for locations, decodeImage() for formats.
    uint32_t loadImage(const std::string& location);

    /// pixelHeight: 1 to Font::kMaxPixelHeight.
    uint32_t loadFont(const std::string& location, uint32_t pixelHeight);
    e_pl_status releaseFont(uint32_t handle);

    /// Calls use(DrawingContext&), which gives a status, with the drawing lock held.
    template <class Use>
    e_pl_status withCanvas(uint32_t handle, Use use) {
        const auto context = m_canvases.find(handle);
        if (!context) return e_pl_status_invalid_handle;
        const std::lock_guard<std::mutex> lock(m_drawing);
        return m_finished ? e_pl_status_unavailable : use(*context);
    }

    /// The same with another canvas's surface: use(DrawingContext&, const Surface&).
    template <class Use>
    e_pl_status withCanvases(uint32_t handle, uint32_t source, Use use) {
        const auto from = m_canvases.find(source);
        if (!from) return e_pl_status_invalid_handle;
        return withCanvas(handle,
                          [&](DrawingContext& context) { return use(context, from->surface()); });
    }

    /// Doesn't wait for drawing.
    e_pl_status canvasSize(uint32_t handle, uint32_t& width, uint32_t& height) const;

    e_pl_status setFont(uint32_t canvas, uint32_t font);

    /// Brings a part of the target, or all of it, to the screen; of another canvas, nothing.
    e_pl_status flush(uint32_t handle, const Rect* part);

    /// For the end of the process, which takes what texts are shaped with: waits for drawing that
    /// is under way, refuses what comes later, and ends the thread that helps to draw.
    void finish();

    /// Bytes of memory for pictures that are in use, and that are left.
    size_t usedMemory() const { return m_pool.usedBytes(); }
    size_t freeMemory() const { return m_pool.freeBytes(); }

  private:
    std::shared_ptr<Surface> newSurface(uint32_t width, uint32_t height);
    uint32_t addCanvas(std::shared_ptr<Surface> surface);

    Screen& m_screen;
    const ResourceLimits m_limits;
    SurfacePool m_pool;
    const std::shared_ptr<CanvasShare> m_share;  ///< used under the drawing lock
    HandleTable<DrawingContext, HandleKind::canvas> m_canvases;
    HandleTable<Font, HandleKind::font> m_fonts;

    std::mutex m_drawing;  ///< guards all canvases, their surfaces, and what follows
    std::shared_ptr<Surface> m_target;
    uint32_t m_targetHandle = 0;
    bool m_finished = false;
};

}  // namespace quiravent::desktop
