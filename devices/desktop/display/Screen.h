#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "display/CapturePattern.h"
#include "display/DisplayDriver.h"
#include "display/GraphicsPlane.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// The television's screen: planes, of which the graphics plane is the topmost, over black. Each
/// flush that changes it is a frame with a number, from 1. Thread-safe, but for present().
class Screen {
  public:
    static constexpr uint32_t kWidth = 1280;
    static constexpr uint32_t kHeight = 720;

    Screen(std::unique_ptr<DisplayDriver> driver, CapturePattern capture);

    /// Makes a part of the target, clipped to the screen, the new frame, and captures it where
    /// that is asked for. An empty part makes no frame. The target, of the screen's size, must not
    /// change meanwhile; one call at a time.
    void present(const Surface& target, const Box& part);

    /// Puts a plane, whose owner removes it in time, over those that are there and below the
    /// graphics.
    void addPlane(const Plane& plane);
    /// The same below all others.
    void addBottomPlane(const Plane& plane);
    /// From the return on the plane isn't drawn.
    void removePlane(const Plane& plane);
    /// Shows that planes below the graphics have changed within a part. This makes no frame with a
    /// number of its own, and doesn't wait for a capture.
    void refresh(const Box& part);
    /// What shows the screen.
    const char* driverName() const { return m_driver->name(); }

    /// Has a function called after each frame has been shown, by the thread that flushes, with no
    /// lock held. To be set before the first frame.
    void setFrameListener(std::function<void()> listener) { m_onFrame = std::move(listener); }

    /// Number of the last frame, 0 when there was none.
    uint64_t frameCount() const;

    /// A new opaque picture of the screen as it is.
    std::shared_ptr<Surface> compose() const;

    /// Brings a part of such a picture, which lies within it, up to date.
    void compose(Surface& picture, const Box& part) const;

    /// The process ends: writes the one picture that is due then, and finishes the driver.
    void finish();

  private:
    void show(uint64_t frame, const Box& changed);
    void capture(uint64_t frame) const;

    const CapturePattern m_capture;
    std::function<void()> m_onFrame = [] {};
    mutable SurfacePool m_pool;  ///< the screen's own pictures are none of the application's memory

    std::mutex m_showing;        ///< one call of the driver at a time
    mutable std::mutex m_mutex;  ///< guards what follows
    GraphicsPlane m_graphics;
    std::vector<const Plane*> m_planes;  ///< from the bottom
    uint64_t m_frameCount = 0;

    const std::unique_ptr<DisplayDriver> m_driver;  ///< last: it may be composing until it is gone
};

}  // namespace quiravent::desktop
