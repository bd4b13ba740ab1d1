#pragma once

#include "config/Configuration.h"
#include "display/Screen.h"
#include "drawing/DrawingService.h"
#include "persistence/Persistence.h"

namespace quiravent::desktop {

/// The set-top box of this process. It starts at the first call and stays until the process is
/// gone, since threads may be inside of it while the process ends; what is due at an orderly end
/// (the picture of the screen, the closing of the stores) is done by an exit handler.
class Device {
  public:
    /// Null when it couldn't start; the reason was told on standard error, once.
    static Device* running() noexcept;

    explicit Device(const Configuration& configuration);

    DrawingService& drawing() { return m_drawing; }
    Persistence& persistence() { return m_persistence; }

  private:
    static Device* start() noexcept;
    void finish() noexcept;

    Screen m_screen;
    DrawingService m_drawing;
    Persistence m_persistence;
};

}  // namespace quiravent::desktop
