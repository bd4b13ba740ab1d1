#pragma once

#include <cstdint>

#include "graphics/Geometry.h"

namespace quiravent::desktop {

class Screen;

/// Brings the screen's picture before somebody's eyes.
class DisplayDriver {
  public:
    virtual ~DisplayDriver() = default;

    /// The name by which the driver is asked for.
    virtual const char* name() const = 0;

    /// Called for each frame by the thread that flushes, one at a time, with no lock of the screen
    /// held. The picture, of which only `changed` differs from the frame before, is had from
    /// Screen::compose. What takes longer than a frame's time is left to a thread of the driver.
    virtual void show(const Screen& screen, uint64_t frame, const Box& changed) = 0;

    /// The process ends: once this has returned, no thread of the driver is at work. show() may
    /// still be called, and does nothing. Called once.
    virtual void finish() {}
};

}  // namespace quiravent::desktop
